#!/bin/bash
# Builds host_bytes.c for Linux against a Linux build of kalvor, runs it there
# and as the given Windows program, and compares what both printed: the same
# calls must give the same command bytes on both systems.
#   compare_host_bytes.sh <source folder> <Linux build folder> <runner...> <host_bytes.exe>
set -euo pipefail
source_dir=$1 native=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cc -std=c11 -I"$source_dir/include" "$source_dir/tests/windows/host_bytes.c" \
  -L"$native" -lkalvor -ldl -Wl,-rpath,"$native" -o "$work/host_bytes"
LD_LIBRARY_PATH="$native/transports/recorder" "$work/host_bytes" >"$work/linux.txt"
"$@" | tr -d '\r' >"$work/windows.txt"
if ! cmp -s "$work/linux.txt" "$work/windows.txt"; then
  echo "the Windows host got other command bytes than the Linux host:"
  diff "$work/linux.txt" "$work/windows.txt" | cut -c1-200 | head -20
  exit 1
fi
echo "$(wc -l <"$work/linux.txt") lines alike, e.g.:"
cut -c1-100 "$work/linux.txt" | head -4
