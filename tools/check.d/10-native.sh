# The library and its test suite, built natively and run with ctest.
set -euo pipefail
need_packages cmake ninja-build g++ libgtest-dev libgmock-dev pkg-config libcli11-dev python3 libcairo2-dev librsvg2-bin tshark \
  libcivetweb-dev
cmake -S "$KALVOR_ROOT" -B "$KALVOR_ROOT/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build "$KALVOR_ROOT/build" -j "$KALVOR_JOBS"
ctest --test-dir "$KALVOR_ROOT/build" -j "$KALVOR_JOBS" --output-on-failure
