// The benchmark program: runs the benchmarks, prints the usual results and
// then the table of each benchmark against its floor. Exits with 1 when a
// benchmark failed its own check (wrong bytes sent or written, no null
// transport), when a command path allocated heap memory, or when the
// allocation counter itself does not work (a counter that always reads 0
// would prove nothing). Times are never judged here.
#include <cstdio>
#include <memory>

#include "support.h"

int main(int argc, char** argv) {
  if (kb::counting_allocations()) {
    uint64_t before = kb::allocations();
    auto probe = std::make_unique<int>(1);
    benchmark::DoNotOptimize(probe.get());
    if (kb::allocations() == before) {
      std::fprintf(stderr, "kalvor_bench: the allocation counter missed an allocation\n");
      return 1;
    }
  }
  kb::register_file_benchmarks();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  kb::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  if (reporter.failed()) {
    std::fprintf(stderr, "kalvor_bench: a benchmark failed\n");
    return 1;
  }
  if (kb::allocation_target_missed()) {
    std::fprintf(stderr, "kalvor_bench: a command path allocated heap memory (see \"allocs\")\n");
    return 1;
  }
  return 0;
}
