# The live preview in a real browser: Debian's headless Chromium, driven by
# Selenium, opens the page of a `kalvor play` and checks what it draws. The
# screenshot it takes is kept as build/tests/preview/work-browser/preview-screenshot.png.
# The test skips, saying why, when the browser cannot start. Set
# KALVOR_SKIP_BROWSER=1 to skip the stage.
set -euo pipefail
if [ "${KALVOR_SKIP_BROWSER:-0}" = 1 ]; then
  echo "browser test skipped (KALVOR_SKIP_BROWSER=1)"
  exit 0
fi
need_packages cmake ninja-build g++ libcli11-dev libcivetweb-dev python3 python3-selenium chromium chromium-driver
build="$KALVOR_ROOT/build"
cmake -S "$KALVOR_ROOT" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build "$build" -j "${KALVOR_JOBS:-2}" --target kalvor_cli transport_preview twenty_scanners
# -V prints the test's own lines: the screenshot's path, or why it skipped.
ctest --test-dir "$build" -R '^preview\.browser$' -V
