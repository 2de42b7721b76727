#!/usr/bin/env bash
# The main job: looks at, draws and converts a laser picture file with the
# kalvor tool, which does all its work through the library with the virtual
# scanner as its projector. Builds the tool first when the build folder lacks
# it. Usage: tools/demo.sh [FILE] (default: the ILDA test pattern).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build"
out="$root/out"
file=${1:-"$(cd "$root/.." && pwd)/shared/fixtures/ilda/ildatest.ild"}
kalvor="$build/tools/kalvor"

if [ ! -x "$kalvor" ]; then
  echo "== building the kalvor tool in $build"
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$build" --target kalvor_cli -j "${KALVOR_JOBS:-2}" >/dev/null
fi
mkdir -p "$out"
name=$(basename "${file%.*}")

echo "== kalvor info $file"
"$kalvor" info "$file"
echo "== kalvor render $file -o $out/$name.svg"
"$kalvor" render "$file" -o "$out/$name.svg"
echo "== kalvor convert $file $out/$name.cat"
"$kalvor" convert "$file" "$out/$name.cat"
echo "== kalvor info $out/$name.cat"
"$kalvor" info "$out/$name.cat" | head -n 4
echo "Open $out/$name.svg in a browser to see the picture."
