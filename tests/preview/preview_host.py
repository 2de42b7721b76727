"""Shared by the preview tests: starts a host on the preview transport, and a
small WebSocket client that reads the frame messages as the page does."""
import base64
import os
import re
import socket
import struct
import subprocess
import sys
import time

HEADER, POINT = 16, 8


def start(command, listen="127.0.0.1:0", env=None):
    """Runs a host with the preview listening on `listen`; returns (process, port)."""
    environment = dict(os.environ, KALVOR_PREVIEW_LISTEN=listen, **(env or {}))
    process = subprocess.Popen(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    line = process.stderr.readline()
    found = re.search(r"http://127\.0\.0\.1:(\d+)/", line)
    if not found:
        process.kill()
        raise AssertionError("the host printed no preview address: " + line)
    return process, int(found.group(1))


def stop(process, sig=2):
    """Interrupts a host and returns its exit status; shows what it wrote
    on standard error when that is not 130, the status of an interrupted play."""
    process.send_signal(sig)
    try:
        status = process.wait(timeout=15)
    except subprocess.TimeoutExpired:
        process.kill()
        raise
    if status != 130:
        sys.stderr.write(process.stderr.read())
    return status


def request(port, raw):
    """Sends raw bytes and returns the first line of the answer (b'' if none)."""
    with socket.create_connection(("127.0.0.1", port), timeout=5) as s:
        s.sendall(raw)
        answer = b""
        try:
            while b"\r\n" not in answer:
                chunk = s.recv(4096)
                if not chunk:
                    break
                answer += chunk
        except socket.timeout:
            pass
        return answer.split(b"\r\n")[0]


def upgrade_request(port, host=None, origin=None, path="/frames"):
    host = host or f"127.0.0.1:{port}"
    key = base64.b64encode(os.urandom(16)).decode()
    lines = [f"GET {path} HTTP/1.1", f"Host: {host}", "Upgrade: websocket", "Connection: Upgrade",
             f"Sec-WebSocket-Key: {key}", "Sec-WebSocket-Version: 13"]
    if origin is not None:
        lines.append(f"Origin: {origin}")
    return ("\r\n".join(lines) + "\r\n\r\n").encode()


class Client:
    """A WebSocket client of the frame stream, with the page's own Origin."""

    def __init__(self, port, origin=None, receive_buffer=None):
        self.socket = socket.socket()
        if receive_buffer:
            self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, receive_buffer)
        self.socket.settimeout(5)
        self.socket.connect(("127.0.0.1", port))
        self.socket.sendall(upgrade_request(port, origin=origin or f"http://127.0.0.1:{port}"))
        self.buffer = b""
        while b"\r\n\r\n" not in self.buffer:
            chunk = self.socket.recv(4096)
            assert chunk, "connection closed during the handshake"
            self.buffer += chunk
        head, self.buffer = self.buffer.split(b"\r\n\r\n", 1)
        self.status = head.split(b"\r\n")[0]
        assert b" 101 " in self.status, self.status

    def _take(self, n):
        while len(self.buffer) < n:
            chunk = self.socket.recv(1 << 16)
            if not chunk:
                raise EOFError
            self.buffer += chunk
        out, self.buffer = self.buffer[:n], self.buffer[n:]
        return out

    def message(self):
        """The next binary message as a dict; pings and other control frames are skipped."""
        while True:
            b0, b1 = self._take(2)
            length = b1 & 0x7F
            if length == 126:
                length = struct.unpack(">H", self._take(2))[0]
            elif length == 127:
                length = struct.unpack(">Q", self._take(8))[0]
            payload = self._take(length)
            if b0 & 0x0F == 2:
                return parse(payload)

    def close(self):
        self.socket.close()


def parse(payload):
    """The header as a dict; points(message) unpacks the points when a test needs them."""
    version, scanner, flags, _, serial, count, rate = struct.unpack_from("<BBBBIII", payload)
    return {"version": version, "scanner": scanner, "lit": bool(flags & 1), "serial": serial, "rate": rate,
            "count": count, "payload": payload}


def points(message):
    """(x, y, r, g, b, flags) of every point of a message."""
    return [struct.unpack_from("<hhBBBB", message["payload"], HEADER + i * POINT) for i in range(message["count"])]


def ilda(figure, pictures):
    """An ILDA file of `pictures` true-colour 2-D sections, each the figure:
    a list of (x, y, blanked, (r, g, b)) with y growing upward."""
    out = b""
    for n in range(pictures + 1):
        count = len(figure) if n < pictures else 0
        out += b"ILDA\0\0\0\x05" + b"figure\0\0" + b"kalvor\0\0" + struct.pack(">HHHBB", count, n, pictures, 0, 0)
        for i, (x, y, blanked, (r, g, b)) in enumerate(figure[:count]):
            status = (0x40 if blanked else 0) | (0x80 if i == count - 1 else 0)
            out += struct.pack(">hhBBBB", x, y, status, b, g, r)
    return out
