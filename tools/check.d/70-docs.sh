# The API reference. Doxygen builds it from the public header and fails on any
# warning (an undocumented export or parameter is one). Then every name in the
# export list must have an entry in one of the reference's groups, every
# function in the reference must be exported, and the groups must form the
# tree of subsystems and families.
# Set KALVOR_SKIP_DOCS=1 to skip the stage.
set -euo pipefail
if [ "${KALVOR_SKIP_DOCS:-0}" = 1 ]; then
  echo "docs skipped (KALVOR_SKIP_DOCS=1)"
  exit 0
fi
need_packages cmake ninja-build g++ doxygen

build="$KALVOR_ROOT/build-docs"
# Only the docs target is built, so the tests (and GoogleTest) are left out.
cmake -S "$KALVOR_ROOT" -B "$build" -G Ninja -DBUILD_TESTING=OFF >/dev/null
cmake --build "$build" --target docs

index="$build/docs/reference/xml/index.xml"
exported=$(grep -v '^[[:space:]]*#' "$KALVOR_ROOT/exports/kalvor.exports" |
  sed 's/[[:space:]]//g' | grep -v '^$' | sort -u)
# Function members of group compounds in Doxygen's XML index.
grouped=$(awk '
  /<compound .*kind="group"/ { in_group = 1; next }
  /<\/compound>/ { in_group = 0 }
  in_group && /kind="function"/ {
    sub(/.*<name>/, ""); sub(/<\/name>.*/, ""); print
  }' "$index" | sort -u)

missing=$(comm -23 <(echo "$exported") <(echo "$grouped"))
extra=$(comm -13 <(echo "$exported") <(echo "$grouped"))
if [ -n "$missing" ]; then
  echo "exports without an entry in a group of the reference:"
  echo "$missing" | sed 's/^/  /'
fi
if [ -n "$extra" ]; then
  echo "functions in the reference that are not in exports/kalvor.exports:"
  echo "$extra" | sed 's/^/  /'
fi

# The groups form a tree: the four subsystems at the top (docs/header.dox),
# each family inside one of them, and no group left empty (a family renamed
# in the header but not in docs/header.dox would leave one).
xml="$build/docs/reference/xml"
inner=$(grep -ho 'innergroup refid="[^"]*"' "$xml"/group__*.xml | sed 's/.*refid="//; s/"$//' | sort -u)
top=$(comm -23 <(cd "$xml" && ls group__*.xml | sed 's/\.xml$//' | sort) <(echo "$inner") |
  grep -v '^group__subsystem__' || true)
if [ -n "$top" ]; then
  echo "groups outside the four subsystems (place them in docs/header.dox):"
  echo "$top" | sed 's/^group__/  /; s/__/_/g'
fi
empty=$(grep -L 'kind="function"\|<innergroup' "$xml"/group__*.xml | xargs -r -n1 basename | sed 's/\.xml$//')
if [ -n "$empty" ]; then
  echo "empty groups:"
  echo "$empty" | sed 's/^group__/  /; s/__/_/g'
fi
[ -z "$missing$extra$top$empty" ] || exit 1
echo "$(echo "$exported" | wc -l) exports have a reference entry: $build/docs/reference/html/index.html"
