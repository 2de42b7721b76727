#!/bin/bash
# Runs a Windows program under Wine for ctest:
#   wine-run.sh <wine loader> <prefix folder> [--dll-path=<folder>] <program.exe> [arguments...]
#   wine-run.sh <wine loader> <prefix folder> --prepare   (only makes the prefix)
# --dll-path puts a folder on WINEPATH, searched for DLLs after the program's
# own folder and the system folders: it picks the LASER.DLL a test runs with.
#
# Headless: with no display Wine loads no graphics driver, window creation
# fails and MessageBoxA returns at once. (Wine's "null" graphics driver would
# not do: its invisible windows make a message box wait for a click forever.)
#
# Fast: Wine ends its Windows session (services, device drivers) when the last
# program exits and starts it again for the next one, seconds each time. A
# cmd.exe waiting on a pipe keeps the session up for two minutes; a new one
# is started once a minute while programs keep coming, and each ends by itself.
# Everything is started under a lock with its output to /dev/null, so no
# background process holds a test's output open.
set -euo pipefail
loader=$1 prefix=$2
shift 2
case ${1:-} in
  --dll-path=*) export WINEPATH="${1#--dll-path=}"; shift ;;
esac
unset DISPLAY WAYLAND_DISPLAY
export WINEPREFIX="$prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe,explorer.exe=d"
session="$prefix/.kalvor-session"
mkdir -p "$prefix"
(
  flock 9
  if [ ! -f "$prefix/.kalvor-ready" ]; then
    "$loader" wineboot --init </dev/null >/dev/null 2>&1
    touch "$prefix/.kalvor-ready"
  fi
  [ "${1:-}" != --prepare ] || exit 0
  if [ -z "$(find "$session" -newermt '60 seconds ago' 2>/dev/null)" ]; then
    (sleep 120 | "$loader" cmd.exe) </dev/null >/dev/null 2>&1 9>&- &
    "$loader" cmd.exe /c exit </dev/null >/dev/null 2>&1 9>&-  # returns once the session is up
    touch "$session"
  fi
) 9>"$prefix.lock"
[ "${1:-}" != --prepare ] || exit 0
exec "$loader" "$@"
