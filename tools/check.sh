#!/usr/bin/env bash
# Builds kalvor and runs every test, installing missing Debian packages first.
# Each stage is a script in tools/check.d, run in name order; a stage may be
# skipped by its own switch (see the stage's first lines). Every build that a
# stage configures makes warnings errors (-DCMAKE_COMPILE_WARNING_AS_ERROR=ON);
# a user's own build does not.
#   tools/check.sh           # the full check, as CI runs it
#   tools/check.sh --quick   # the native build and its tests only
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
stages=(tools/check.d/*.sh)
case ${1:-} in
  --quick) stages=(tools/check.d/10-native.sh) ;;
  "") ;;
  *) echo "usage: tools/check.sh [--quick]" >&2; exit 2 ;;
esac
export KALVOR_ROOT="$root"
export KALVOR_JOBS=${KALVOR_JOBS:-$(nproc)}

# Installs the named Debian packages that are not installed yet.
need_packages() {
  local missing=()
  for p in "$@"; do dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p"); done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "== installing ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo=sudo
    # On a shared machine another install may hold the dpkg lock: wait for it.
    $sudo apt-get -o DPkg::Lock::Timeout=600 update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq -o DPkg::Lock::Timeout=600 \
      --no-install-recommends "${missing[@]}" >/dev/null
  fi
}
export -f need_packages

for stage in "${stages[@]}"; do
  echo "== stage ${stage##*/}"
  start=$SECONDS
  bash "$stage"
  echo "== stage ${stage##*/} done in $((SECONDS - start)) s"
done
echo "== all stages passed"
