#!/usr/bin/env bash
# Builds kalvor and runs every test, installing missing Debian packages first.
# Each stage is a script in tools/check.d, run in name order; a stage may be
# skipped by its own switch (see the stage's first lines).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
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
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
  fi
}
export -f need_packages

for stage in tools/check.d/*.sh; do
  echo "== stage ${stage##*/}"
  start=$SECONDS
  bash "$stage"
  echo "== stage ${stage##*/} done in $((SECONDS - start)) s"
done
echo "== all stages passed"
