"""The preview page in a real browser (Debian's headless Chromium, driven by
Selenium): a tile for the scanner in use, lit pixels where the frame draws,
none where it moves blanked, and a frame counter that advances. Keeps a
screenshot. Exits 77 (skipped) when the browser cannot start.

Usage: test_browser.py KALVOR WORKDIR"""
import os
import shutil
import sys
import tempfile
import time

import preview_host as ph

KALVOR, WORK = sys.argv[1:3]
SIZE = 512  # the page's canvas, in pixels a side

# ILDA (y up) points: x, y, blanked, (r, g, b). Red along the top, green down
# the right, a blanked diagonal, blue along the bottom.
FIGURE = [(-16000, 24000, True, (0, 0, 0)), (16000, 24000, False, (255, 0, 0)),
          (16000, 8000, False, (0, 255, 0)), (-16000, -24000, True, (0, 0, 0)),
          (16000, -24000, False, (0, 0, 255))]


def canvas_xy(x, y):
    """Where an ILDA point lands on the canvas: the field's y grows downward."""
    return (x + 32768) * SIZE / 65536, (-1 - y + 32768) * SIZE / 65536


def browser():
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for flag in ("--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                 "--disable-background-networking", "--disable-component-update", "--disable-sync",
                 "--window-size=900,800", "--user-data-dir=" + tempfile.mkdtemp(prefix="kalvor-chromium-")):
        options.add_argument(flag)
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def wait_for(condition, seconds=10):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.1)
    raise AssertionError("timed out")


SAMPLE = """
const c = document.querySelector('section[data-scanner="3"] canvas').getContext('2d');
const d = c.getImageData(arguments[0] - 3, arguments[1] - 3, 7, 7).data;
let m = [0, 0, 0];
for (let i = 0; i < d.length; i += 4) for (let k = 0; k < 3; ++k) m[k] = Math.max(m[k], d[i + k]);
return m;"""


def main():
    os.makedirs(WORK, exist_ok=True)
    figure = os.path.join(WORK, "figure.ild")
    with open(figure, "wb") as f:
        f.write(ph.ilda(FIGURE, 3))
    try:
        driver = browser()
    except Exception as e:  # no browser, no driver, or it cannot start here
        print(f"SKIPPED: headless Chromium could not start: {str(e).splitlines()[0] if str(e) else e!r}")
        return 77
    process, port = ph.start([KALVOR, "play", figure, "--output", "preview", "--scanner", "3", "--loop"])
    try:
        driver.get(f"http://127.0.0.1:{port}/")
        counter = lambda: driver.execute_script(
            "const s = document.querySelector('section[data-scanner=\"3\"] .serial');"
            "return s ? Number(s.textContent.replace('frame ', '')) : 0;")
        first = wait_for(counter)
        assert driver.execute_script("return document.querySelectorAll('section.tile').length") == 1
        time.sleep(0.5)
        sample = lambda x, y: driver.execute_script(SAMPLE, *canvas_xy(x, y))
        # Drawn segments: lit in the colour of the point they arrive at.
        assert sample(0, 24000) [0] > 128, sample(0, 24000)
        assert sample(16000, 16000)[1] > 128, sample(16000, 16000)
        assert sample(0, -24000)[2] > 128, sample(0, -24000)
        # The blanked diagonal, and the mirror image of the red line: dark.
        assert max(sample(0, -8000)) < 32, sample(0, -8000)
        assert max(sample(0, -24000)[:2]) < 32 and sample(0, 24000)[2] < 32
        wait_for(lambda: counter() >= first + 10)
        assert "output on" in driver.find_element("css selector", "section[data-scanner='3'] .output").text
        screenshot = os.path.join(WORK, "preview-screenshot.png")
        driver.save_screenshot(screenshot)
        print("screenshot:", screenshot)
    finally:
        driver.quit()
        assert ph.stop(process) == 130
    return 0


sys.exit(main())
