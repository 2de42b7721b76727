#!/usr/bin/env bash
# The main job: builds kalvor if needed and runs the example host against the
# recording transport, printing the commands it sent.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
if [ ! -x "$root/build/examples/show_picture" ]; then
  cmake -S "$root" -B "$root/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$root/build" --target show_picture transport_recorder >/dev/null
fi
LD_LIBRARY_PATH="$root/build/transports/recorder" "$root/build/examples/show_picture"
