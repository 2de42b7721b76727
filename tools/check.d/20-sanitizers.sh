# The whole test suite under AddressSanitizer and UndefinedBehaviorSanitizer,
# then the thread test under ThreadSanitizer. Any report fails the stage: the
# first error halts the program (halt_on_error, -fno-sanitize-recover).
# Set KALVOR_SKIP_SANITIZERS=1 to skip the stage.
set -euo pipefail
if [ "${KALVOR_SKIP_SANITIZERS:-0}" = 1 ]; then
  echo "sanitizers skipped (KALVOR_SKIP_SANITIZERS=1)"
  exit 0
fi
need_packages cmake ninja-build g++ libgtest-dev libgmock-dev pkg-config

jobs=${KALVOR_JOBS:-2}
build_with() {  # build folder, sanitizer flags, cmake target (or "all")
  local dir=$1 flags=$2 target=$3
  cmake -S "$KALVOR_ROOT" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
    -DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++ \
    "-DCMAKE_C_FLAGS=$flags" "-DCMAKE_CXX_FLAGS=$flags" \
    "-DCMAKE_EXE_LINKER_FLAGS=$flags" "-DCMAKE_SHARED_LINKER_FLAGS=$flags" >/dev/null
  cmake --build "$dir" -j "$jobs" --target "$target"
}

common="-O1 -g -fno-omit-frame-pointer -fno-sanitize-recover=all"

echo "-- AddressSanitizer + UndefinedBehaviorSanitizer: every test"
build_with "$KALVOR_ROOT/build-asan" "$common -fsanitize=address,undefined" all
ASAN_OPTIONS=halt_on_error=1:abort_on_error=1:detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:check_initialization_order=1 \
UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
  ctest --test-dir "$KALVOR_ROOT/build-asan" -j "$jobs" --output-on-failure

echo "-- ThreadSanitizer: 20 scanners from 20 threads"
build_with "$KALVOR_ROOT/build-tsan" "$common -fsanitize=thread" kalvor_tests_threads
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
  ctest --test-dir "$KALVOR_ROOT/build-tsan" -R '^Threads\.' --output-on-failure --no-tests=error
