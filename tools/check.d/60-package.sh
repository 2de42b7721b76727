# The Debian package: builds it with CPack, checks it with lintian (no errors
# allowed), unpacks it into a scratch folder and builds two small hosts (C and
# C++) against the unpacked files, once through the CMake package and once
# through pkg-config, then runs them against the recording transport. The
# README's example and the installed tool run against the installed virtual
# scanner.
# Set KALVOR_SKIP_PACKAGE=1 to skip the stage.
set -euo pipefail
if [ "${KALVOR_SKIP_PACKAGE:-0}" = 1 ]; then
  echo "package skipped (KALVOR_SKIP_PACKAGE=1)"
  exit 0
fi
need_packages cmake ninja-build g++ pkg-config libcli11-dev libcairo2-dev dpkg-dev fakeroot lintian file

root=$KALVOR_ROOT
build="$root/build-package"
scratch="$build/scratch"
jobs=${KALVOR_JOBS:-2}

echo "-- building the package"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
  -DCMAKE_INSTALL_PREFIX=/usr -DBUILD_TESTING=OFF >/dev/null
cmake --build "$build" -j "$jobs"
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB >cpack.log 2>&1) || { cat "$build/cpack.log"; exit 1; }
deb=$(ls "$build"/*.deb)
echo "$(basename "$deb"):"
dpkg-deb -c "$deb" | awk '{print "  " $6 ($7 ? " " $7 " " $8 : "")}'

echo "-- lintian"
lintian --fail-on error --tag-display-limit 0 "$deb"
changelog_version=$(dpkg-parsechangelog -l "$root/cmake/debian/changelog" -S Version)
package_version=$(dpkg-deb -f "$deb" Version)
if [ "$changelog_version" != "$package_version" ]; then
  echo "cmake/debian/changelog starts at $changelog_version, the package is $package_version:"
  echo "add a changelog entry for the new version"
  exit 1
fi

echo "-- unpacking into $scratch"
rm -rf "$scratch"
mkdir -p "$scratch"
dpkg -x "$deb" "$scratch/root"
prefix="$scratch/root/usr"
libdir="$prefix/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)"
export LD_LIBRARY_PATH="$libdir"
for f in "$libdir/libkalvor.so.1" "$libdir/libkalvor.so" "$prefix/include/kalvor/kalvor.h" \
  "$libdir/cmake/kalvor/kalvorConfig.cmake" "$libdir/pkgconfig/kalvor.pc" \
  "$libdir/kalvor/transports/virtual/LASER.DLL" "$prefix/bin/kalvor"; do
  [ -e "$f" ] || { echo "the package lacks ${f#"$scratch/root"}"; exit 1; }
done
# The licence is named in the copyright file, the pkg-config file and the CMake package.
grep -q '^License: Expat' "$scratch/root/usr/share/doc/kalvor/copyright" &&
  grep -q '^License: MIT$' "$libdir/pkgconfig/kalvor.pc" &&
  grep -q 'set(kalvor_LICENSE "MIT")' "$libdir/cmake/kalvor/kalvorConfig.cmake" ||
  { echo "the package does not name its licence everywhere"; exit 1; }
# Every program and library in the package finds the libraries it needs.
find "$scratch/root" -type f | while read -r f; do
  case "$(file -b "$f")" in
    ELF*) if ldd "$f" | grep 'not found'; then echo "unresolved libraries in $f"; exit 1; fi ;;
  esac
done
for transport in "$libdir"/kalvor/transports/*/LASER.DLL; do
  entries=$(nm -D --defined-only "$transport")
  for entry in NetScanConstructor NetScanDestructor NetScanCommand NetScanPrint; do
    grep -qw "$entry" <<<"$entries" || { echo "$transport lacks $entry"; exit 1; }
  done
done

# The hosts are copied out of the source tree, so that nothing but the
# unpacked package can serve their includes and libraries.
cp -r "$root/tests/consumers" "$scratch/src"
run_host() {  # program: runs it against the unpacked libkalvor and the recorder
  grep -q "libkalvor.so.1 => $libdir/" <<<"$(ldd "$1")" || { echo "$1 does not use $libdir"; exit 1; }
  LD_LIBRARY_PATH="$libdir:$build/transports/recorder" "$1"
}

echo "-- hosts through find_package(kalvor CONFIG)"
cmake -S "$scratch/src" -B "$scratch/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$scratch/cmake"
run_host "$scratch/cmake/c_host"
run_host "$scratch/cmake/cxx_host"

echo "-- hosts through pkg-config"
# The .pc file names /usr; the sysroot moves its paths into the scratch tree.
export PKG_CONFIG_PATH="$libdir/pkgconfig" PKG_CONFIG_SYSROOT_DIR="$scratch/root"
flags=$(pkg-config --cflags --libs kalvor)
echo "pkg-config --cflags --libs kalvor: $flags"
mkdir -p "$scratch/pc"
# shellcheck disable=SC2086
cc -std=c11 -Wall -Wextra -Werror -o "$scratch/pc/c_host" "$scratch/src/host.c" $flags -ldl
# shellcheck disable=SC2086
c++ -std=c++17 -Wall -Wextra -Werror -o "$scratch/pc/cxx_host" "$scratch/src/host.cpp" $flags -ldl
run_host "$scratch/pc/c_host"
run_host "$scratch/pc/cxx_host"

echo "-- the README's example host, against the installed virtual scanner"
awk '/^## / { concepts = ($0 == "## Concepts") }
     concepts && /^```c$/ { code = 1; next } /^```$/ { code = 0 } code' "$root/README.md" >"$scratch/readme.c"
# shellcheck disable=SC2086
cc -std=c11 -Wall -Wextra -Werror -o "$scratch/pc/readme" "$scratch/readme.c" $flags
LD_LIBRARY_PATH="$libdir:$libdir/kalvor/transports/virtual" "$scratch/pc/readme"

echo "-- the installed tool reads a picture through the installed virtual scanner"
# A two-point true-colour ILDA frame, then the closing header.
{
  printf 'ILDA\0\0\0\x05frame001kalvor  \0\x02\0\0\0\x01\0\0'
  printf '\xfc\x18\xfc\x18\0\0\0\xff\x03\xe8\x03\xe8\x80\xff\0\0'
  printf 'ILDA\0\0\0\x05frame002kalvor  \0\0\0\x01\0\x01\0\0'
} >"$scratch/two-points.ild"
"$prefix/bin/kalvor" info "$scratch/two-points.ild"

echo "-- cmake --install --prefix writes its own prefix into the pkg-config file"
cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
pc_prefix=$(PKG_CONFIG_SYSROOT_DIR='' PKG_CONFIG_PATH="$scratch/prefix/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/pkgconfig" \
  pkg-config --variable=prefix kalvor)
[ "$pc_prefix" = "$scratch/prefix" ] || { echo "kalvor.pc names prefix $pc_prefix"; exit 1; }
