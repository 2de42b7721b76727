#!/bin/bash
# Compares the dynamic symbols that libkalvor defines with exports/kalvor.exports:
# no name may be missing and none may be extra.
set -eu
library=$1
list=$2
expected=$(grep -v '^[[:space:]]*#' "$list" | sed 's/[[:space:]]//g' | grep -v '^$' | sort)
actual=$(nm -D --defined-only "$library" | awk '{print $3}' | grep -v '^$' | sort)
if [ "$expected" != "$actual" ]; then
  echo "exported symbols differ from $list (< list only, > library only):"
  diff <(echo "$expected") <(echo "$actual") || true
  exit 1
fi
echo "$(echo "$expected" | wc -l) exported names match the list"
