#!/usr/bin/env bash
# Compares the commands every file reader sends, byte for byte, between this
# tree's library and the library of an earlier commit, over the fuzz inputs
# and over generated files long enough for every fast path:
#
#   tools/compare_readers.sh <commit>
#
# The earlier library is built from `git archive` in a folder of its own; both
# are driven by this tree's replay program (the exports are the same C ABI),
# which appends every command to a log (KALVOR_REPLAY_RECORD).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
base=${1:?usage: tools/compare_readers.sh <commit>}
work=${KALVOR_COMPARE_DIR:-/tmp/kalvor-compare-$(git -C "$root" rev-parse --short "$base")}
build=${KALVOR_COMPARE_BUILD:-$root/build}
mkdir -p "$work/generated"

if [ ! -f "$work/src/CMakeLists.txt" ]; then
  mkdir -p "$work/src"
  git -C "$root" archive "$base" | tar -x -C "$work/src"
fi
cmake -S "$work/src" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$work/build" -j "${KALVOR_JOBS:-2}" --target kalvor kalvor_idn transport_recorder >/dev/null
[ -f "$build/CMakeCache.txt" ] || cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j "${KALVOR_JOBS:-2}" --target kalvor kalvor_idn transport_recorder kalvor_fuzz_replay >/dev/null

# Generated files: long ILDA sections of every point format (runs of equal
# records for folding, sections past 8191 records, files cut inside a record),
# LAS and FLX files with pictures past 8192 points, older picture files.
python3 - "$work/generated" <<'PY'
import os, random, struct, sys
out = sys.argv[1]
rnd = random.Random(16)
sizes = {0: 8, 1: 6, 4: 10, 5: 8}
def record(code):
    r = bytearray(rnd.randbytes(sizes[code]))
    if rnd.random() < 0.3: r[-1 if code in (0, 1) else 4] = 0
    if code in (4, 5) and rnd.random() < 0.2: r[-3:] = b"\0\0\0"
    return bytes(r)
def ilda(name, sections, cut=0):
    data = bytearray()
    for code, n, runs in sections:
        data += b"ILDA\0\0\0" + bytes([code]) + b"\0" * 16 + struct.pack(">HHHBB", n, 0, 0, 0, 0)
        prev = record(code)
        for _ in range(n):
            if not (runs and rnd.random() < runs): prev = record(code)
            data += prev
    data += b"ILDA\0\0\0\0" + b"\0" * 24
    open(os.path.join(out, name), "wb").write(data[:len(data) - cut])
for i in range(6):
    ilda(f"ilda{i}.ild", [(rnd.choice([0, 1, 4, 5]), rnd.choice([1, 15, 16, 17, 40, 500, 8190, 8191, 8192, 9000, 20000]),
                           rnd.choice([0, 0, 0.001, 0.3])) for _ in range(12)], cut=rnd.choice([0, 37, 3]))
def animation(name, las, pictures, cut=0):
    data = bytearray(struct.pack("<HH", 0, pictures - 1) if las else struct.pack("<H", pictures) + b"\0" * 9)
    for _ in range(pictures):
        n = rnd.choice([1, 16, 17, 100, 8192, 8193, 12000])
        data += struct.pack("<HHI", 0, n - 1, 0) if las else struct.pack("<H", n) + b"\0" * 9
        for _ in range(n):
            r = bytearray(rnd.randbytes(11))
            r[9] = rnd.choice([0, 1, 2, 3, r[9]])
            data += r
        if las: data += b"\0\0"
    open(os.path.join(out, name), "wb").write(data[:len(data) - cut])
for i in range(3):
    animation(f"las{i}.las", True, 7, cut=rnd.choice([0, 5]))
    animation(f"flx{i}.flx", False, 7, cut=rnd.choice([0, 5]))
for i, n in enumerate([1, 17, 8191, 8192, 9000]):
    data = struct.pack(">HHHHHHH", 0, 0, 0, n, 1, 0, 0) + rnd.randbytes(8 * n)
    open(os.path.join(out, f"older{i}.pic"), "wb").write(data[:len(data) - (3 if i == 2 else 0)])
PY

failed=0
for reader in ilda ilda_index pic cat cat_part lds las flx pal rgb; do
  inputs=("$root/fuzz/seeds/$reader" "$root/fuzz/corpus/$reader" "$root/fuzz/regressions/$reader")
  case $reader in
    ilda*) inputs+=("$work"/generated/*.ild) ;;
    las | flx) inputs+=("$work"/generated/*."$reader") ;;
    pic) inputs+=("$work"/generated/*.pic) ;;
  esac
  for side in new old; do
    lib=$build; [ $side = old ] && lib=$work/build
    rm -f "$work/$reader.$side"
    LD_LIBRARY_PATH="$lib:$lib/src:$lib/transports/recorder" KALVOR_REPLAY_RECORD="$work/$reader.$side" \
      "$build/fuzz/kalvor_fuzz_replay" "$reader" "${inputs[@]}" >/dev/null
  done
  if cmp -s "$work/$reader.new" "$work/$reader.old"; then
    echo "$reader: same commands ($(stat -c %s "$work/$reader.new") bytes)"
  else
    echo "$reader: DIFFERENT commands"
    failed=1
  fi
done
exit $failed
