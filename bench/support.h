// Shared pieces of the benchmark program: the null transport seen from the
// benchmarks, heap-allocation counting, generated data files, the floors that
// every benchmark is compared with, and the table of those comparisons.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kb {

// ---- the null transport ----------------------------------------------------

using CommandFn = uint32_t (*)(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply);

// The LASER.DLL that kalvor bound (the null transport, found on the loader's
// search path). `ok` is false when another transport or none was found.
struct NullTransport {
  bool ok = false;
  CommandFn command = nullptr;  // its NetScanCommand
  void (*reset)() = nullptr;
  uint64_t (*commands)() = nullptr;
  uint64_t (*bytes)() = nullptr;
  void (*keep_pictures)(int) = nullptr;
};
NullTransport& null_transport();

// Starts a benchmark from a freshly initialised library and an empty null
// transport. Returns false (and marks the benchmark failed) when the null
// transport is not the bound one.
bool start(benchmark::State& state);

// ---- heap allocations --------------------------------------------------------

// Whether this build counts heap allocations (not under sanitizers, which
// bring their own allocator).
bool counting_allocations();
// Number of malloc/calloc/realloc/new calls of the whole process so far.
uint64_t allocations();
// Reports the allocations since `before` as the counter "allocs" (per
// iteration); any allocation marks the run as a failure of the zero target.
void report_allocations(benchmark::State& state, uint64_t before);
// True once any command-path benchmark has counted an allocation.
bool allocation_target_missed();

// ---- generated data ----------------------------------------------------------

// Sizes of the generated data files, in megabytes: the comma-separated list
// in KALVOR_BENCH_MB (default "10,50"). Every file benchmark runs once per size.
std::vector<uint32_t> data_sizes();
// The same in bytes.
inline uint64_t megabytes(uint32_t mb) { return uint64_t{mb} << 20; }
// A path in the program's temporary folder, removed at exit.
std::string temp_file(const std::string& name);
// Size of a file in bytes (0 when missing).
uint64_t file_size(const std::string& path);

// ---- floors ------------------------------------------------------------------

// The readers' floor: reads the file front to back in blocks of the readers'
// own size (64 KiB) and touches every byte, so its cost per byte does not
// depend on the file's size. Items: `items` per pass (the points the file
// holds), so that the rate compares with a reader's points per second.
void floor_stream(benchmark::State& state, const std::string& path, uint64_t items);
inline constexpr uint32_t kReaderBlock = 64 * 1024;
// Reads the file with one unbuffered read per record of `record_size` bytes,
// over at most its first 8 MB. Items: records read.
void floor_read_per_record(benchmark::State& state, const std::string& path, uint32_t record_size);
// Writes `bytes` bytes to a new file in 64 KiB blocks. Items: `items` per pass.
void floor_write(benchmark::State& state, uint64_t bytes, uint64_t items);
// Writes records of `record_size` bytes, one unbuffered write each, 8 MB in
// all. Items: records written.
void floor_write_per_record(benchmark::State& state, uint32_t record_size);

// ---- the comparison table ----------------------------------------------------

enum class Goal {
  within,    // kalvor's cost per item at most `target` times the floor's
  faster,    // kalvor at least `target` times faster than the floor
  measured,  // no target: the ratio is shown for information
};

// Registers one row of the table: benchmark `name` against benchmark `floor`
// (full benchmark names, arguments included).
void compare(const std::string& label, const std::string& name, const std::string& floor, Goal goal,
             double target = 0);

// Registers the picture file benchmarks, one set per data size.
void register_file_benchmarks();

// Console reporter (plain text, counters in columns) that also prints the
// comparison table at the end.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter() : ConsoleReporter(OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;
  // True when any benchmark failed (its check or its setup).
  bool failed() const { return failed_; }

 private:
  bool failed_ = false;
};

}  // namespace kb
