# kalvor.dll for 64- and 32-bit Windows, cross-built with mingw-w64.
# - x86_64: the whole test suite runs under Wine (prefix kept in the build
#   folder), with the export and import checks and the C host compared with
#   the same host on Linux (the native stage's build), and generated profile
#   files read by kalvor.dll (Windows's profile functions) and by the Linux
#   build (kalvor's own reader), which must agree on every result.
# - i686: kalvor.dll, the recorders and the C host are built and their export
#   and import tables checked; every export must be caller-cleans. Its
#   programs run only where a 32-bit Wine is installed (then all tests run).
# Set RUN_WINDOWS_TESTS=0 to skip the stage.
set -euo pipefail
if [ "${RUN_WINDOWS_TESTS:-1}" = 0 ]; then
  echo "Windows builds skipped (RUN_WINDOWS_TESTS=0)"
  exit 0
fi
need_packages cmake ninja-build gcc g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix \
  binutils-mingw-w64-x86-64 binutils-mingw-w64-i686 googletest wine64 python3

root=$KALVOR_ROOT
jobs=${KALVOR_JOBS:-2}
native="$root/build"
[ -f "$native/build.ninja" ] || { echo "no native build in $native: run the native stage first"; exit 1; }
cmake --build "$native" -j "$jobs" --target kalvor transport_recorder  # what the C host links on Linux

configure() {  # architecture -> build folder
  local dir="$root/build-windows-$1"
  cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    "-DCMAKE_TOOLCHAIN_FILE=$root/cmake/toolchain-mingw-$1.cmake" \
    "-DKALVOR_NATIVE_BUILD=$native" >/dev/null
  echo "$dir"
}

echo "-- x86_64: build, then every test under Wine"
dir=$(configure x86_64)
cmake --build "$dir" -j "$jobs"
ctest --test-dir "$dir" -j "$jobs" --output-on-failure --no-tests=error

echo "-- i686: build and check the DLLs"
dir=$(configure i686)
if [ -x /usr/lib/wine/wine ]; then  # the toolchain file runs 32-bit programs with it
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" -j "$jobs" --output-on-failure --no-tests=error
else
  echo "(no 32-bit Wine here: the 32-bit programs are built, not run)"
  cmake --build "$dir" -j "$jobs" --target kalvor transport_recorder transport_recorder_noprint host_bytes \
    profile_host
  ctest --test-dir "$dir" -j "$jobs" -R '^windows\.' --output-on-failure --no-tests=error
fi

# The Wine session of the test run ends now rather than two minutes later.
WINEPREFIX="$root/build-windows-x86_64/wine-prefix" /usr/lib/wine/wineserver -k 2>/dev/null || true
