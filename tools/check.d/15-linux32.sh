# The whole native test suite in a 32-bit Linux build (-m32, in Release), with
# the flags of the i686 DLL (cmake/toolchain-linux-i686.cmake): 4-byte
# pointers, the records' layout and SSE2 double arithmetic, on every run, where
# no 32-bit Wine can run the i686 DLL's own tests. GoogleTest is built from
# Debian's sources for it. Set KALVOR_SKIP_LINUX32=1 to skip the stage.
set -euo pipefail
if [ "${KALVOR_SKIP_LINUX32:-0}" = 1 ]; then
  echo "32-bit Linux build skipped (KALVOR_SKIP_LINUX32=1)"
  exit 0
fi
need_packages cmake ninja-build gcc-multilib g++-multilib googletest libcli11-dev python3 file

build="$KALVOR_ROOT/build-linux32"
cmake -S "$KALVOR_ROOT" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
  "-DCMAKE_TOOLCHAIN_FILE=$KALVOR_ROOT/cmake/toolchain-linux-i686.cmake" >/dev/null
cmake --build "$build" -j "${KALVOR_JOBS:-2}"
file -L "$build/libkalvor.so" | grep -q 'ELF 32-bit' || { echo "libkalvor.so is not a 32-bit library"; exit 1; }
ctest --test-dir "$build" -j "${KALVOR_JOBS:-2}" --output-on-failure --no-tests=error
