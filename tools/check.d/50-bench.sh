# The benchmarks, built and run once each on small generated files, as a
# smoke test: they must run, send and write the bytes they expect, and find
# no heap allocation on a command path. Times are not judged here; see
# tools/bench.sh for the measurement. Set KALVOR_SKIP_BENCH=1 to skip.
set -euo pipefail
if [ "${KALVOR_SKIP_BENCH:-0}" = 1 ]; then
  echo "benchmarks skipped (KALVOR_SKIP_BENCH=1)"
  exit 0
fi
need_packages cmake ninja-build g++ libbenchmark-dev libcivetweb-dev

build="$KALVOR_ROOT/build"
cmake -S "$KALVOR_ROOT" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build "$build" -j "${KALVOR_JOBS:-2}" --target bench bench_preview
echo "-- one iteration each: the times and ratios below mean nothing here"
KALVOR_BENCH_MB=1 LD_LIBRARY_PATH="$build/transports/null" \
  "$build/bench/kalvor_bench" --benchmark_min_time=0
"$build/bench/preview/kalvor_bench_preview" "$build/transports" 1 2>/dev/null
