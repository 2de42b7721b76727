#!/bin/bash
# kalvor's own code, built for 32-bit x86, must do its double arithmetic with
# SSE2, not on the x87 unit (whose precision the host process sets): its
# object files may hold no x87 arithmetic instruction. Loading and storing x87
# registers is allowed (a returned double travels there). The C runtime linked
# into a DLL is not ours and is not looked at.
#   check_sse_maths.sh <objdump> <object file>...
# (ctest hands over a CMake list as one argument: ";" separates files too.)
set -euo pipefail
objdump=$1
shift
objects=()
for argument in "$@"; do
  IFS=';' read -r -a files <<<"$argument"
  objects+=("${files[@]}")
done
x87=$("$objdump" -d "${objects[@]}" |
  awk '/^[0-9a-f]+ <.*>:$/ { function_name = $2 }
       /\tf(add|sub|subr|mul|div|divr|sqrt|prem|prem1|rndint|scale)p?[ \t]|\tfi(add|sub|subr|mul|div|divr)[ \t]/ {
         print function_name }' | sort | uniq -c || true)
if [ -n "$x87" ]; then
  echo "x87 arithmetic in these functions (count, function):"
  echo "$x87"
  exit 1
fi
echo "no x87 arithmetic in ${#objects[@]} object files"
