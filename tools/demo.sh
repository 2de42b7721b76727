#!/usr/bin/env bash
# The main job: looks at, draws and converts a laser picture file with the
# kalvor tool, which does all its work through the library with the virtual
# scanner as its projector. Builds what it needs first when the build folder
# lacks it.
#   tools/demo.sh          # makes a show of its own (the test picture and an
#                          # animation, written to ILDA by kalvor) and uses it
#   tools/demo.sh FILE     # a file of your own
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build"
out="$root/out"
kalvor="$build/tools/kalvor"
make_show="$build/examples/make_show"

if [ ! -x "$kalvor" ] || { [ $# = 0 ] && [ ! -x "$make_show" ]; }; then
  echo "== building the kalvor tool in $build"
  [ -f "$build/build.ninja" ] ||
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$build" --target kalvor_cli make_show -j "${KALVOR_JOBS:-2}" >/dev/null
fi
mkdir -p "$out"

if [ $# = 0 ]; then
  file="$out/show.ild"
  echo "== making a show: $file"
  LD_LIBRARY_PATH="$build/transports/virtual" "$make_show" "$file"
else
  file=$1
fi
name=$(basename "${file%.*}")

echo "== kalvor info $file"
"$kalvor" info "$file" | sed -n 1,12p  # reads all, so the tool never meets a closed pipe
echo "== kalvor render $file -o $out/$name.svg"
"$kalvor" render "$file" -o "$out/$name.svg"
echo "== kalvor convert $file $out/$name.cat"
"$kalvor" convert "$file" "$out/$name.cat"
echo "== kalvor info $out/$name.cat"
"$kalvor" info "$out/$name.cat" | sed -n 1,4p
echo "Open $out/$name.svg in a browser to see the picture."
