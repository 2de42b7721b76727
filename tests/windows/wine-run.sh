#!/bin/sh
# Runs a Windows program under Wine for ctest:
#   wine-run.sh <wine loader> <prefix folder> [--dll-path=<folder>] <program.exe> [arguments...]
# --dll-path puts a folder on WINEPATH, searched for DLLs after the program's
# own folder and the system folders: it picks the LASER.DLL a test runs with.
# Headless: with no display Wine loads no graphics driver, window creation
# fails and MessageBoxA returns at once. (Wine's "null" graphics driver would
# not do: its invisible windows make a message box wait for a click forever.)
# The prefix is made on first use, once, under a lock since ctest runs tests in
# parallel; Mono and Gecko are not installed.
set -eu
loader=$1 prefix=$2
shift 2
case ${1:-} in
  --dll-path=*) export WINEPATH="${1#--dll-path=}"; shift ;;
esac
unset DISPLAY WAYLAND_DISPLAY
export WINEPREFIX="$prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
if [ ! -f "$prefix/.kalvor-ready" ]; then
  mkdir -p "$prefix"
  (
    flock 9
    if [ ! -f "$prefix/.kalvor-ready" ]; then
      "$loader" wineboot --init >/dev/null 2>&1
      touch "$prefix/.kalvor-ready"
    fi
  ) 9>"$prefix.lock"
fi
# A wine server lingers 30 seconds after its last program ends, so that a test
# run does not start the server and the Windows session once per program.
"${loader%/*}/wineserver" -p30 2>/dev/null || true
exec "$loader" "$@"
