"""The live preview transport, driven as a browser would drive it: through
`kalvor play` and a twenty-scanner host, over 127.0.0.1 only.

Usage: test_preview.py TEST KALVOR TWENTY_SCANNERS PREVIEW_DIR FIXTURES WORKDIR"""
import os
import socket
import subprocess
import sys
import threading
import time

import preview_host as ph

TEST, KALVOR, TWENTY, PREVIEW_DIR, FIXTURES, WORK = sys.argv[1:7]
os.makedirs(WORK, exist_ok=True)
CIRCLE = os.path.join(FIXTURES, "ilda", "growing_circle.ild")


def play(*args, listen="127.0.0.1:0"):
    return ph.start([KALVOR, "play", CIRCLE, "--output", "preview", *args], listen)


def test_requests():
    """The page is served; forged Host and Origin headers, malformed requests and
    wrong methods get a clear error; a proper client still gets frames."""
    process, port = play("--loop")
    try:
        me = f"127.0.0.1:{port}"
        ok = lambda path, host=me: f"GET {path} HTTP/1.1\r\nHost: {host}\r\n\r\n".encode()
        for path in ("/", "/preview.js", "/preview.css"):
            assert b" 200 " in ph.request(port, ok(path)), path
        assert b" 200 " in ph.request(port, ok("/", f"localhost:{port}"))
        refused = [
            (ok("/", f"evil.example:{port}"), b" 403 "),        # DNS rebinding: a foreign name
            (ok("/", "127.0.0.1:1"), b" 403 "),                  # another port
            (b"GET / HTTP/1.1\r\n\r\n", b" 403 "),               # no Host at all
            (ph.upgrade_request(port, origin="http://evil.example"), b" 403 "),  # cross-site WebSocket
            (ph.upgrade_request(port, origin=f"http://localhost:{port + 1}"), b" 403 "),
            (ph.upgrade_request(port, origin="http://127.0.0.1"), b" 403 "),  # a page on port 80
            (ph.upgrade_request(port), b" 403 "),                # no Origin
            (ph.upgrade_request(port, host=f"evil.example:{port}", origin=f"http://evil.example:{port}"), b" 403 "),
            (ph.upgrade_request(port, path="/nothing", origin=f"http://{me}"), b" 404 "),
            (ph.upgrade_request(port, origin=f"http://{me}").replace(b"Version: 13", b"Version: 99"), b" 400 "),
            (ok("/nothing"), b" 404 "),
            (ok("/frames"), b" 426 "),
            (f"POST / HTTP/1.1\r\nHost: {me}\r\nContent-Length: 0\r\n\r\n".encode(), b" 405 "),
            (b"GARBAGE\r\n\r\n", b" 400 "),
            (b"GET / HTTP/9.9\x00\x01\r\nHost: x\r\n\r\n", b" 400 "),
        ]
        for raw, status in refused:
            answer = ph.request(port, raw)
            assert status in answer, (raw, answer)
        client = ph.Client(port)
        first = client.message()
        while not first["count"]:  # the session may begin before the first frame
            first = client.message()
        assert first["version"] == 1 and first["scanner"] == 1 and first["lit"], first
        client.close()
    finally:
        assert ph.stop(process) == 130


def test_clients():
    """Eight readers and one client that never reads: every reader keeps getting
    new frames, and the host keeps its pace and stops cleanly on Ctrl-C."""
    # 8000 points a frame: 64 KB messages fill the stalled client's socket within a second.
    big = os.path.join(WORK, "big.ild")
    with open(big, "wb") as f:
        f.write(ph.ilda([(i * 8 - 32000, (i % 100) * 600 - 30000, False, (255, 255, 255)) for i in range(8000)], 2))
    process, port = ph.start([KALVOR, "play", big, "--output", "preview", "--loop", "--fps", "60"])
    stalled = ph.Client(port, receive_buffer=4096)  # never read from again
    time.sleep(1.5)
    readers = [ph.Client(port) for _ in range(8)]
    results = [None] * len(readers)

    def read(i):
        serials, deadline = [], time.monotonic() + 2
        while time.monotonic() < deadline:
            serials.append(readers[i].message()["serial"])
        results[i] = serials

    try:
        threads = [threading.Thread(target=read, args=(i,)) for i in range(len(readers))]
        for t in threads:
            t.start()
        for t in threads:
            t.join(timeout=10)
        # 2 s at 60 fps is 120 frames. A host or reader held up by the stalled client
        # gets next to none (a write waits 5 s); a third leaves room for a loaded machine.
        for serials in results:
            assert serials and serials[-1] - serials[0] >= 40 and len(serials) >= 20, serials
    finally:
        for r in readers:
            r.close()
        started = time.monotonic()
        assert ph.stop(process) == 130
        assert time.monotonic() - started < 10
        stalled.close()


def test_twenty_scanners():
    """A host driving twenty scanners is seen on all twenty, and ends cleanly."""
    process, port = ph.start([TWENTY, "3"], env={"LD_LIBRARY_PATH": PREVIEW_DIR})
    try:
        client = ph.Client(port)
        seen = {}
        deadline = time.monotonic() + 3
        while len(seen) < 20 and time.monotonic() < deadline:
            m = client.message()
            if m["count"]:
                seen[m["scanner"]] = m
        assert sorted(seen) == list(range(1, 21))
        assert all(m["lit"] for m in seen.values())
        client.close()
    finally:
        assert process.wait(timeout=30) == 0, process.stderr.read()


def test_port_taken():
    """A taken port: one line naming it, and the show still plays to its end."""
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        taken.listen()
        port = taken.getsockname()[1]
        run = subprocess.run([KALVOR, "play", CIRCLE, "--output", f"preview:{port}", "--fps", "1000"],
                             capture_output=True, text=True, timeout=60)
    assert run.returncode == 0, run.stderr
    lines = run.stderr.strip().splitlines()
    assert len(lines) == 1 and f"port {port} is taken" in lines[0], run.stderr
    assert "playing 200 pictures" in run.stdout


def test_outputs():
    """--output names a transport; a missing one or a malformed choice is refused clearly."""
    bad = subprocess.run([KALVOR, "play", CIRCLE, "--output", "laserdisc"], capture_output=True, text=True)
    assert bad.returncode == 2 and "expected virtual, preview" in bad.stderr
    run = subprocess.run([KALVOR, "play", CIRCLE, "--fps", "1000"], capture_output=True, text=True, timeout=60)
    assert run.returncode == 0 and "through virtual" in run.stdout and not run.stderr
    idn = subprocess.run([KALVOR, "play", CIRCLE, "--output", "idn:127.0.0.1"], capture_output=True, text=True,
                         timeout=60)
    built = os.path.exists(os.path.join(os.path.dirname(PREVIEW_DIR), "idn", "LASER.DLL"))
    if not built:
        assert idn.returncode == 1 and "the idn transport (LASER.DLL) is not in this build" in idn.stderr
    listen = subprocess.run([KALVOR, "play", CIRCLE, "--output", "preview"], capture_output=True, text=True,
                            env=dict(os.environ, KALVOR_PREVIEW_LISTEN="nonsense"), timeout=60)
    assert listen.returncode == 0 and "KALVOR_PREVIEW_LISTEN='nonsense' is not [ADDRESS:]PORT" in listen.stderr


globals()["test_" + TEST]()
