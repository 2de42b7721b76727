#!/bin/bash
# Checks a Windows DLL or program with the cross binutils:
#   check_pe.sh exports <objdump> <dll> <list>  the export table holds exactly the
#                                            names of <list> (an export list or a .def)
#   check_pe.sh imports <objdump> <file>      only Windows system DLLs are imported
#   check_pe.sh host-imports <objdump> <exe>  as imports, and kalvor's entries come
#                                            from kalvor.dll under their plain names
#   check_pe.sh cdecl <nm> <dll> <list>       (32-bit) each listed function is
#                                            caller-cleans: no "name@n" symbol
set -euo pipefail
what=$1 tool=$2 file=$3

# Names of a list: blank lines, comments (#, ;) and .def keywords left out.
list_names() {
  sed -e 's/[#;].*//' -e 's/^[[:space:]]*//' -e 's/[[:space:]].*$//' "$1" |
    grep -v -E '^(|LIBRARY|EXPORTS)$' | sort
}

# Names in the export table ("[Ordinal/Name Pointer] Table" of objdump -p).
export_names() {
  "$tool" -p "$file" | awk '/^\[Ordinal\/Name Pointer\] Table/ {on = 1; next}
    on && /^[[:space:]]*$/ {on = 0}
    on {print $NF}' | sort
}

# "dll name" for each imported name.
imports() {
  "$tool" -p "$file" | awk '/^[[:space:]]*DLL Name:/ {dll = tolower($3); next}
    /^[[:space:]]*vma:/ {next}
    dll && /^[[:space:]]+[0-9a-f]+[[:space:]]+[0-9]+[[:space:]]+[A-Za-z_]/ {print dll, $3}'
}

# Windows's own DLLs, and the C runtime that comes with Windows.
system_dll='^(kernel32|user32|advapi32|ntdll|msvcrt|ucrtbase|api-ms-win-[a-z0-9-]+)\.dll$'

check_imports() {
  local bad
  bad=$(imports | awk '{print $1}' | sort -u | grep -v -E "$system_dll|^kalvor\.dll$" || true)
  if [ -n "$bad" ]; then
    echo "$file imports DLLs that are not part of Windows:"
    echo "$bad"
    exit 1
  fi
}

case $what in
  exports)
    expected=$(list_names "$4")
    actual=$(export_names)
    if [ "$expected" != "$actual" ]; then
      echo "export table of $file differs from $4 (< list only, > DLL only):"
      diff <(echo "$expected") <(echo "$actual") || true
      exit 1
    fi
    echo "$(echo "$actual" | wc -l) exports match $4"
    ;;
  imports)
    [ -z "$(imports | awk '$1 == "kalvor.dll"')" ] || { echo "$file imports kalvor.dll"; exit 1; }
    check_imports
    imports | awk '{print $1}' | sort | uniq -c
    ;;
  host-imports)
    check_imports
    from_kalvor=$(imports | awk '$1 == "kalvor.dll" {print $2}' | sort)
    echo "from kalvor.dll:" $from_kalvor
    for name in DisplayInit DisplayExit displayinittrack displayupdate; do
      grep -qx "$name" <<<"$from_kalvor" || { echo "$name is not imported from kalvor.dll"; exit 1; }
    done
    if grep -q '@' <<<"$from_kalvor"; then echo "decorated import names"; exit 1; fi
    ;;
  cdecl)
    names=$(list_names "$4")
    symbols=$("$tool" "$file" | awk '$2 ~ /^[TtWw]$/ {print $3}')
    plain=$(sed -n 's/^_\([A-Za-z0-9_]*\)$/\1/p' <<<"$symbols" | sort -u)
    stdcall=$(sed -n 's/^_\([A-Za-z0-9_]*\)@[0-9]*$/\1/p' <<<"$symbols" | sort -u)
    missing=$(comm -23 <(echo "$names") <(echo "$plain"))
    callee_cleans=$(comm -12 <(echo "$names") <(echo "$stdcall"))
    if [ -n "$missing$callee_cleans" ]; then
      echo "callee-cleans (stdcall) exports:" $callee_cleans
      echo "exports without a plain _name function:" $missing
      exit 1
    fi
    echo "$(echo "$names" | wc -l) exports are caller-cleans functions"
    ;;
  *) echo "unknown check $what" >&2; exit 2 ;;
esac
