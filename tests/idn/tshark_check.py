#!/usr/bin/env python3
"""Captures a short IDN session on the loopback interface and decodes it with
tshark's own IDN dissector, as an independent check of what the transport
sends: discovery, a frame in three fragments, a frame in one message, a
keepalive and the close.

Usage: tshark_check.py SESSION-PROGRAM WORK-FOLDER
Exits 77 (skipped) without tshark or without the right to capture on lo."""
import os
import shutil
import subprocess
import sys
import time

SKIP = 77
FIELDS = ["frame.number", "frame.protocols", "udp.length", "idn.command", "idn.sequence", "idn.channel_id",
          "idn.cclf", "idn.chunk_type", "idn.timestamp", "idn.scwc", "idn.sdm", "idn.routing", "idn.close",
          "idn.service_id", "idn.service_mode", "idn.scm", "idn.frame_sample_duration", "_ws.expert.message",
          "_ws.col.Info"]


def skip(why):
    print("SKIPPED: " + why)
    sys.exit(SKIP)


def main():
    session, work = sys.argv[1], sys.argv[2]
    if not shutil.which("tshark"):
        skip("tshark is not installed (Debian: tshark)")
    os.makedirs(work, exist_ok=True)
    capture = os.path.join(work, "session.pcapng")
    if os.path.exists(capture):
        os.remove(capture)
    config = dict(os.environ, KALVOR_TRANSPORT_CONFIG=os.path.join(work, "transport.ini"))
    driver = subprocess.Popen([session], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              text=True, env=config)
    port = driver.stdout.readline().strip()
    if not port.isdigit():
        driver.kill()
        sys.exit("the session program printed no port: " + driver.stderr.read())
    tshark = subprocess.Popen(["tshark", "-i", "lo", "-f", "udp port " + port, "-w", capture],
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    started = ""
    deadline = time.time() + 20
    while time.time() < deadline:
        line = tshark.stderr.readline()
        started += line
        if "Capturing on" in line or not line:
            break
    if "Capturing on" not in started:
        tshark.kill()
        driver.kill()
        skip("tshark cannot capture on lo here: " + started.strip().splitlines()[-1] if started.strip() else "no output")
    time.sleep(1.0)  # the capture process reports before its filter is in place
    driver.stdin.write("go\n")
    driver.stdin.flush()
    try:
        _, errors = driver.communicate(timeout=30)
    finally:
        time.sleep(1.0)  # let the last datagrams reach the capture
        tshark.terminate()
        tshark.wait(timeout=20)
    if driver.returncode != 0:
        sys.exit("the session failed at the test receiver:\n" + errors)

    decoded = subprocess.run(["tshark", "-r", capture, "-d", "udp.port==%s,idn" % port, "-T", "fields",
                              "-E", "separator=\t"] + sum((["-e", f] for f in FIELDS), []),
                             capture_output=True, text=True, timeout=60)
    rows = [dict(zip(FIELDS, line.split("\t"))) for line in decoded.stdout.splitlines() if line.strip()]
    problems = check(rows)
    for p in problems:
        print("FAIL: " + p)
    print("%d datagrams decoded as IDN" % len(rows))
    sys.exit(1 if problems else 0)


def check(rows):
    problems = []

    def expect(ok, what):
        if not ok:
            problems.append(what)

    if len(rows) < 11:
        return ["only %d datagrams captured" % len(rows)]
    for r in rows:
        n = r["frame.number"]
        expect(r["frame.protocols"].endswith(":idn"), "datagram %s does not decode as IDN" % n)
        expect(int(r["udp.length"]) - 8 <= 1454, "datagram %s carries more than 1454 bytes" % n)
        # The dissector calls an empty close malformed; nothing else may draw a warning.
        expect(not r["_ws.expert.message"] or r["idn.command"] == "0x44",
               "datagram %s: %s" % (n, r["_ws.expert.message"]))
        expect("SCM doesn't match SDM" not in r["_ws.col.Info"], "datagram %s: SCM differs from SDM" % n)

    commands = [r["idn.command"] for r in rows]
    for c in ("0x10", "0x11", "0x12", "0x13"):
        expect(c in commands, "no command %s in the discovery" % c)
    stream = [r for r in rows if r["idn.command"] in ("0x40", "0x44")]
    sequences = [int(r["idn.sequence"]) for r in stream]
    expect(sequences == list(range(sequences[0], sequences[0] + len(sequences))) if sequences else False,
           "stream sequence numbers do not count up by 1: %s" % sequences)
    chunks = [r["idn.chunk_type"] for r in stream]
    expect(chunks[:5] == ["0x03", "0xc0", "0xc0", "0x02", "0x00"], "chunks %s" % chunks)
    expect(stream[-1]["idn.command"] == "0x44" and stream[-2]["idn.close"] == "1", "no channel close, then close")

    for r in stream:
        if r["idn.command"] != "0x40":
            continue
        n = r["frame.number"]
        expect(r["idn.channel_id"] == "0", "datagram %s on channel %s" % (n, r["idn.channel_id"]))
        if r["idn.chunk_type"] == "0xc0":
            continue
        expect(r["idn.cclf"] == "1" and r["idn.service_mode"] == "0x02", "datagram %s has no configuration" % n)
        if r["idn.close"] == "1":
            expect(r["idn.scwc"] == "0", "the channel close %s carries a layout" % n)
        else:
            expect(r["idn.routing"] == "1" and r["idn.scwc"] == "4", "datagram %s: routing or layout" % n)
        if r["idn.chunk_type"] in ("0x02", "0x03"):
            expect(r["idn.scm"] == r["idn.sdm"], "datagram %s: SCM %s, SDM %s" % (n, r["idn.scm"], r["idn.sdm"]))
    first, second, last = stream[0], stream[1], stream[2]
    t = int(first["idn.timestamp"])
    expect([int(second["idn.timestamp"]), int(last["idn.timestamp"])] == [t + 1, t + 2],
           "sequel timestamps are not the first one + 1, + 2")
    expect([second["idn.cclf"], last["idn.cclf"]] == ["0", "1"], "only the last sequel is marked")
    # 400 and 60 samples at 30,000 points per second.
    expect(first["idn.frame_sample_duration"] == "13333" and stream[3]["idn.frame_sample_duration"] == "2000",
           "frame durations %s, %s" % (first["idn.frame_sample_duration"], stream[3]["idn.frame_sample_duration"]))
    return problems


if __name__ == "__main__":
    main()
