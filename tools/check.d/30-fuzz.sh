# Every file reader and IDN parser under libFuzzer (clang, AddressSanitizer and
# UndefinedBehaviorSanitizer), each for a bounded time, starting from the seed
# inputs, the corpus of earlier runs (fuzz/corpus), the inputs that once failed
# and the shared ILDA files. An input that makes a fuzzer fail is kept under
# build-fuzz/artifacts/<reader>/: copy it to fuzz/regressions/<reader>/ once
# fixed, so that ctest replays it in every build.
# KALVOR_FUZZ_SECONDS sets the time per fuzzer (default 30; 0 skips the stage).
set -euo pipefail
seconds=${KALVOR_FUZZ_SECONDS:-30}
if [ "$seconds" = 0 ]; then
  echo "fuzzing skipped (KALVOR_FUZZ_SECONDS=0)"
  exit 0
fi
need_packages cmake ninja-build clang libclang-rt-14-dev llvm-14 libgtest-dev libgmock-dev

build="$KALVOR_ROOT/build-fuzz"
cmake -S "$KALVOR_ROOT" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DKALVOR_FUZZ=ON >/dev/null
cmake --build "$build" -j "${KALVOR_JOBS:-2}" --target kalvor_fuzzers

readers=$(sed -n 's/^set(KALVOR_FUZZ_\(READERS\|IDN_PARSERS\) \(.*\))$/\2/p' "$KALVOR_ROOT/fuzz/CMakeLists.txt")
fixtures="$KALVOR_ROOT/../shared/fixtures/ilda"
export ASAN_OPTIONS=halt_on_error=1:abort_on_error=1:detect_leaks=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
export LD_LIBRARY_PATH="$build/transports/recorder"
failed=0
for reader in $readers; do
  corpus="$build/corpus/$reader"
  artifacts="$build/artifacts/$reader/"
  mkdir -p "$corpus" "$artifacts"
  cp -n "$KALVOR_ROOT/fuzz/seeds/$reader/"* "$KALVOR_ROOT/fuzz/corpus/$reader/"* "$corpus/" 2>/dev/null || true
  cp -n "$KALVOR_ROOT/fuzz/regressions/$reader/"* "$corpus/" 2>/dev/null || true
  case $reader in ilda*) cp -n "$fixtures/ildatest.ild" "$corpus/" 2>/dev/null || true ;; esac
  log="$build/fuzz-$reader.log"
  if "$build/fuzz/fuzz_$reader" "$corpus" -max_total_time="$seconds" -max_len=16384 -timeout=20 \
      -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$artifacts" >"$log" 2>&1; then
    echo "$reader: $(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -1),\
 $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") runs, no fault"
  else
    echo "$reader: FAULT, input kept in $artifacts"
    tail -60 "$log"
    failed=1
  fi
done
exit $failed
