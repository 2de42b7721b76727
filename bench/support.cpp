#include "support.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <vector>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>
#endif

#include "kalvor/kalvor.h"

namespace kb {

// ---- the null transport ----------------------------------------------------

namespace {

void* find(void* module, const char* name) {
#if defined(_WIN32)
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
#else
  return dlsym(module, name);
#endif
}

// Our own reference to LASER.DLL keeps it loaded across DisplayExit, so the
// entry addresses below stay valid for the whole run.
NullTransport load_null_transport() {
  NullTransport t;
#if defined(_WIN32)
  void* module = LoadLibraryA("LASER.DLL");
#else
  void* module = dlopen("LASER.DLL", RTLD_NOW);
#endif
  if (!module) return t;
  t.command = reinterpret_cast<CommandFn>(find(module, "NetScanCommand"));
  t.reset = reinterpret_cast<void (*)()>(find(module, "null_reset"));
  t.commands = reinterpret_cast<uint64_t (*)()>(find(module, "null_commands"));
  t.bytes = reinterpret_cast<uint64_t (*)()>(find(module, "null_bytes"));
  t.keep_pictures = reinterpret_cast<void (*)(int)>(find(module, "null_keep_pictures"));
  t.ok = t.command && t.reset && t.commands && t.bytes && t.keep_pictures;
  return t;
}

}  // namespace

NullTransport& null_transport() {
  static NullTransport t = load_null_transport();
  return t;
}

bool start(benchmark::State& state) {
  NullTransport& t = null_transport();
  DisplayExit();
  DisplayInit();
  if (t.ok) {
    t.reset();
    DisplaySetMaxScanner(1, 0);  // must reach the null transport
    if (t.commands() == 1) {
      t.reset();
      return true;
    }
  }
  state.SkipWithError("the null transport is not bound: put its folder on the loader path");
  return false;
}

// ---- heap allocations --------------------------------------------------------

namespace {
bool g_allocation_target_missed = false;
}

void report_allocations(benchmark::State& state, uint64_t before) {
  if (!counting_allocations()) return;
  uint64_t n = allocations() - before;
  state.counters["allocs"] = benchmark::Counter(static_cast<double>(n), benchmark::Counter::kAvgIterations);
  if (n > 0) g_allocation_target_missed = true;
}

bool allocation_target_missed() { return g_allocation_target_missed; }

// ---- generated data ----------------------------------------------------------

namespace {

struct TempFolder {
  std::filesystem::path path;
  TempFolder() {
    auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    path = std::filesystem::temp_directory_path() / ("kalvor-bench-" + std::to_string(stamp));
    std::filesystem::create_directories(path);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
};

constexpr uint64_t kPerRecordLimit = 8u << 20;

}  // namespace

std::vector<uint32_t> data_sizes() {
  const char* list = std::getenv("KALVOR_BENCH_MB");
  std::vector<uint32_t> sizes;
  for (const char* p = list ? list : ""; *p;) {
    char* end = nullptr;
    unsigned long mb = std::strtoul(p, &end, 10);
    if (end == p) break;
    if (mb > 0 && mb <= 1024) sizes.push_back(static_cast<uint32_t>(mb));
    p = *end == ',' ? end + 1 : end;
  }
  if (sizes.empty()) sizes = {10, 50};
  return sizes;
}

std::string temp_file(const std::string& name) {
  static TempFolder folder;
  return (folder.path / name).string();
}

uint64_t file_size(const std::string& path) {
  std::error_code error;
  uint64_t n = std::filesystem::file_size(path, error);
  return error ? 0 : n;
}

// ---- floors ------------------------------------------------------------------

namespace {

#if defined(_WIN32)
int open_for_reading(const char* path) { return _open(path, _O_RDONLY | _O_BINARY); }
int create_for_writing(const char* path) {
  return _open(path, _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY, _S_IREAD | _S_IWRITE);
}
long read_some(int fd, void* buffer, uint32_t size) { return _read(fd, buffer, size); }
long write_some(int fd, const void* buffer, uint32_t size) { return _write(fd, buffer, size); }
void close_file(int fd) { _close(fd); }
#else
int open_for_reading(const char* path) { return open(path, O_RDONLY); }
int create_for_writing(const char* path) { return open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600); }
long read_some(int fd, void* buffer, uint32_t size) { return read(fd, buffer, size); }
long write_some(int fd, const void* buffer, uint32_t size) { return write(fd, buffer, size); }
void close_file(int fd) { close(fd); }
#endif

}  // namespace

void floor_stream(benchmark::State& state, const std::string& path, uint64_t items) {
  alignas(64) static uint8_t block[kReaderBlock];
  for (auto _ : state) {
    int fd = open_for_reading(path.c_str());
    if (fd < 0) {
      state.SkipWithError("cannot open the data file");
      return;
    }
    // 64 bytes a step into eight independent sums, so that the floor is
    // bound by the reading and not by its own arithmetic.
    uint64_t sum = 0;
    for (long n; (n = read_some(fd, block, sizeof block)) > 0;) {
      uint64_t lanes[8] = {};
      long whole = n / 64 * 64;
      for (long i = 0; i < whole; i += 64) {
        uint64_t words[8];
        std::memcpy(words, block + i, sizeof words);
        for (int k = 0; k < 8; ++k) lanes[k] += words[k];
      }
      for (long i = whole; i < n; ++i) sum += block[i];
      for (uint64_t lane : lanes) sum += lane;
    }
    close_file(fd);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * items));
}

// One unbuffered call per record over at most the first 8 MB of the file
// that `open` opens; `transfer` moves one record and says whether it could.
template <typename Open, typename Transfer>
void per_record(benchmark::State& state, uint32_t record_size, Open open, Transfer transfer) {
  uint8_t record[64] = {};
  if (record_size == 0 || record_size > sizeof record) {
    state.SkipWithError("record size out of range");
    return;
  }
  uint64_t records = 0;
  for (auto _ : state) {
    int fd = open();
    if (fd < 0) {
      state.SkipWithError("cannot open the file");
      return;
    }
    for (uint64_t done = 0; done + record_size <= kPerRecordLimit; done += record_size) {
      if (!transfer(fd, record)) break;
      ++records;
    }
    close_file(fd);
  }
  state.SetItemsProcessed(static_cast<int64_t>(records));
}

void floor_read_per_record(benchmark::State& state, const std::string& path, uint32_t record_size) {
  per_record(
      state, record_size, [&] { return open_for_reading(path.c_str()); },
      [&](int fd, uint8_t* record) { return read_some(fd, record, record_size) == static_cast<long>(record_size); });
}

void floor_write(benchmark::State& state, uint64_t bytes, uint64_t items) {
  std::vector<uint8_t> block(64 * 1024, 0x5A);
  std::string path = temp_file("floor-write.bin");
  for (auto _ : state) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) {
      state.SkipWithError("cannot create a file");
      return;
    }
    for (uint64_t left = bytes; left > 0;) {
      size_t n = left < block.size() ? static_cast<size_t>(left) : block.size();
      std::fwrite(block.data(), 1, n, f);
      left -= n;
    }
    std::fclose(f);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * items));
}

void floor_write_per_record(benchmark::State& state, uint32_t record_size) {
  std::string path = temp_file("floor-write-records.bin");
  per_record(
      state, record_size, [&] { return create_for_writing(path.c_str()); },
      [&](int fd, uint8_t* record) { return write_some(fd, record, record_size) == static_cast<long>(record_size); });
}

// ---- the comparison table ----------------------------------------------------

namespace {

struct Row {
  std::string label;
  std::string name, floor;
  Goal goal;
  double target;
};

std::vector<Row>& rows() {
  static std::vector<Row> r;
  return r;
}

struct Result {
  double rate = 0;  // items per second
  double allocs = -1;
  bool failed = false;
  bool median = false;
};

std::map<std::string, Result>& results() {
  static std::map<std::string, Result> r;
  return r;
}

// Cost of one item in a readable unit.
std::string cost(double rate) {
  char text[32];
  double ns = 1e9 / rate;
  if (ns >= 1e6)
    std::snprintf(text, sizeof text, "%.2f ms", ns / 1e6);
  else if (ns >= 1e3)
    std::snprintf(text, sizeof text, "%.2f us", ns / 1e3);
  else
    std::snprintf(text, sizeof text, "%.2f ns", ns);
  return text;
}

}  // namespace

void compare(const std::string& label, const std::string& name, const std::string& floor, Goal goal, double target) {
  rows().push_back(Row{label, name, floor, goal, target});
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.error_occurred) failed_ = true;
    bool median = run.run_type == Run::RT_Aggregate;
    if (median && run.aggregate_name != "median") continue;
    Result& r = results()[run.run_name.str()];
    if (r.median && !median) continue;  // keep the median of repetitions
    r.median = median;
    r.failed = run.error_occurred;
    auto rate = run.counters.find("items_per_second");
    r.rate = rate == run.counters.end() ? 0 : rate->second.value;
    auto allocs = run.counters.find("allocs");
    r.allocs = allocs == run.counters.end() ? -1 : allocs->second.value;
  }
}

void RatioReporter::Finalize() {
  std::ostream& out = GetOutputStream();
  out << "\n| What | kalvor, per item | floor, per item | ratio | target | met |\n"
      << "|---|---:|---:|---:|---|---|\n";
  for (const Row& row : rows()) {
    auto a = results().find(row.name), b = results().find(row.floor);
    if (a == results().end() || b == results().end()) continue;  // filtered out
    const Result &k = a->second, &f = b->second;
    char ratio[32] = "-", target[32] = "-";
    const char* met = "-";
    if (!k.failed && !f.failed && k.rate > 0 && f.rate > 0) {
      double slower = f.rate / k.rate;
      switch (row.goal) {
        case Goal::within:
          std::snprintf(ratio, sizeof ratio, "%.2fx the floor", slower);
          std::snprintf(target, sizeof target, "at most %gx", row.target);
          met = slower <= row.target ? "yes" : "NO";
          break;
        case Goal::faster:
          std::snprintf(ratio, sizeof ratio, "%.0fx faster", 1 / slower);
          std::snprintf(target, sizeof target, "at least %gx faster", row.target);
          met = 1 / slower >= row.target ? "yes" : "NO";
          break;
        case Goal::measured:
          std::snprintf(ratio, sizeof ratio, "%.2fx the floor", slower);
          break;
      }
    }
    out << "| " << row.label << " | " << (k.rate > 0 ? cost(k.rate) : "failed") << " | "
        << (f.rate > 0 ? cost(f.rate) : "failed") << " | " << ratio << " | " << target << " | " << met << " |\n";
  }
  bool any_counted = false;
  for (auto& [name, r] : results()) {
    if (r.allocs < 0) continue;
    if (!any_counted) out << "\nHeap allocations per call on command paths:\n";
    any_counted = true;
    out << "  " << name << ": " << r.allocs << "\n";
  }
  if (!counting_allocations()) out << "\nHeap allocations are not counted in this build (sanitizer).\n";
  ConsoleReporter::Finalize();
}

}  // namespace kb
