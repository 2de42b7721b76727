#!/usr/bin/env bash
# Measures kalvor against its physical floors: builds the benchmarks in a
# release build of their own and runs each hot path beside its floor, five
# times, then prints the table of ratios (median of the five runs).
#
#   tools/bench.sh                          # everything; files of 10 and 50 MB
#   tools/bench.sh --benchmark_filter=update
#   KALVOR_BENCH_MB=10 tools/bench.sh       # files of one size only
#
# Every file reader is compared with the streaming floor (the same file read
# front to back in 64 KiB blocks, every byte touched) at each size.
#
# Arguments go to the benchmark program (Google Benchmark's options).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${KALVOR_BENCH_BUILD:-$root/build-bench}
if ! dpkg -s libbenchmark-dev >/dev/null 2>&1; then
  echo "== installing libbenchmark-dev"
  sudo=""
  [ "$(id -u)" -ne 0 ] && sudo=sudo
  $sudo apt-get -o DPkg::Lock::Timeout=600 update -qq  # waits for another install's lock
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq -o DPkg::Lock::Timeout=600 \
    --no-install-recommends libbenchmark-dev >/dev/null
fi
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF >/dev/null
cmake --build "$build" -j "${KALVOR_JOBS:-2}" --target bench
LD_LIBRARY_PATH="$build/transports/null" "$build/bench/kalvor_bench" \
  --benchmark_repetitions=5 --benchmark_report_aggregates_only=true "$@"
# The live preview's cost to a host, beside the virtual scanner's (Linux, with CivetWeb).
if cmake --build "$build" -j "${KALVOR_JOBS:-2}" --target bench_preview >/dev/null 2>&1; then
  "$build/bench/preview/kalvor_bench_preview" "$build/transports" 5 2>/dev/null
fi
