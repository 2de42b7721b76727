# kalvor.dll and the kalvor tool for 64- and 32-bit Windows, cross-built with
# mingw-w64.
# - x86_64: the whole test suite runs under Wine (prefix kept in the build
#   folder), with the export and import checks, the C host compared with the
#   same host on Linux (the native stage's build), the tool's tests, and
#   generated profile files read by kalvor.dll (Windows's profile functions)
#   and by the Linux build (kalvor's own reader), which must agree on every
#   result.
# - i686: kalvor.dll, the recorders, the C host and the tool are built and the
#   export and import tables checked; every export must be caller-cleans. Its
#   programs run only where a 32-bit Wine is installed (then all tests run).
# - The release archive (ZIP) of both builds; its kalvor.exe converts a file.
# Set RUN_WINDOWS_TESTS=0 to skip the stage.
set -euo pipefail
if [ "${RUN_WINDOWS_TESTS:-1}" = 0 ]; then
  echo "Windows builds skipped (RUN_WINDOWS_TESTS=0)"
  exit 0
fi
need_packages cmake ninja-build gcc g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix \
  binutils-mingw-w64-x86-64 binutils-mingw-w64-i686 googletest wine64 libcli11-dev python3 unzip

root=$KALVOR_ROOT
jobs=${KALVOR_JOBS:-2}
native="$root/build"
[ -f "$native/build.ninja" ] || { echo "no native build in $native: run the native stage first"; exit 1; }
cmake --build "$native" -j "$jobs" --target kalvor transport_recorder  # what the C host links on Linux

configure() {  # architecture, the other architecture -> build folder
  local dir="$root/build-windows-$1"
  cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
    "-DCMAKE_TOOLCHAIN_FILE=$root/cmake/toolchain-mingw-$1.cmake" \
    "-DKALVOR_NATIVE_BUILD=$native" "-DKALVOR_WINDOWS_PAIR_BUILD=$root/build-windows-$2" >/dev/null
  echo "$dir"
}

echo "-- x86_64: build, then every test under Wine"
dir=$(configure x86_64 i686)
cmake --build "$dir" -j "$jobs"
ctest --test-dir "$dir" -j "$jobs" --output-on-failure --no-tests=error

echo "-- i686: build and check the DLLs"
dir=$(configure i686 x86_64)
if [ -x /usr/lib/wine/wine ]; then  # the toolchain file runs 32-bit programs with it
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" -j "$jobs" --output-on-failure --no-tests=error
else
  echo "(no 32-bit Wine here: the 32-bit programs are built, not run)"
  cmake --build "$dir" -j "$jobs" --target kalvor transport_recorder transport_recorder_noprint host_bytes \
    profile_host kalvor_cli transport_virtual
  ctest --test-dir "$dir" -j "$jobs" -R '^windows\.' --output-on-failure --no-tests=error
fi

echo "-- the Windows release archive"
x64="$root/build-windows-x86_64"
rm -f "$x64"/kalvor-*-windows.zip
(cd "$x64" && cpack -G ZIP >cpack.log 2>&1) || { cat "$x64/cpack.log"; exit 1; }
archive=$(ls "$x64"/kalvor-*-windows.zip)
unpacked="$x64/archive"
rm -rf "$unpacked"
unzip -q "$archive" -d "$unpacked"
top="$unpacked/$(basename "$archive" .zip)"
for arch in x64 x86; do
  for f in LICENSE bin/kalvor.dll bin/kalvor.exe lib/libkalvor.dll.a lib/kalvor.def include/kalvor/kalvor.h \
    lib/kalvor/transports/virtual/LASER.DLL lib/cmake/kalvor/kalvorConfig.cmake; do
    [ -e "$top/$arch/$f" ] || { echo "$(basename "$archive") lacks $arch/$f"; exit 1; }
  done
done
(cd "$unpacked" && find . -type f | sort | sed 's|^\./|  |')
echo "-- the archive's kalvor.exe converts a file under Wine"
wine_run=("$root/tests/windows/wine-run.sh" /usr/lib/wine/wine64 "$x64/wine-prefix")
# The show is made by the example host through kalvor.dll and the virtual scanner.
(cd "$unpacked" && "${wine_run[@]}" "--dll-path=$x64/transports/virtual" "$x64/bin/make_show.exe" show.ild)
(cd "$unpacked" && "${wine_run[@]}" "$top/x64/bin/kalvor.exe" convert show.ild show.cat)
(cd "$unpacked" && "${wine_run[@]}" "$top/x64/bin/kalvor.exe" info show.cat) | tr -d '\r' >"$unpacked/info.txt"
sed -n 1,3p "$unpacked/info.txt"
grep -q 'catalogue, 49 pictures' "$unpacked/info.txt" || { echo "the catalogue does not hold the show's 49 pictures"; exit 1; }

# The Wine session of the test run ends now rather than two minutes later.
WINEPREFIX="$root/build-windows-x86_64/wine-prefix" /usr/lib/wine/wineserver -k 2>/dev/null || true
