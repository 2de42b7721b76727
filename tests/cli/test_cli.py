#!/usr/bin/env python3
"""Tests of the kalvor command-line tool.

Usage: test_cli.py TEST KALVOR FIXTURES WORKDIR. The script reads the files
the tool writes with readers of its own: ILDA files with read_ilda, SVG with
xml.etree, so that a fault in the library's writers is caught here too.
"""
import os
import shutil
import struct
import subprocess
import sys
import xml.etree.ElementTree as ET

SVG = "{http://www.w3.org/2000/svg}"


def run(*args, status=0):
    """Runs the tool; checks its exit status; returns (stdout, stderr)."""
    p = subprocess.run([KALVOR, *map(str, args)], capture_output=True, text=True)
    assert p.returncode == status, f"{args}: exit {p.returncode}, expected {status}\n{p.stdout}{p.stderr}"
    return p.stdout, p.stderr


def read_ilda(path):
    """Frames of an ILDA file, without trailing empty ones (the closing header):
    lists of (x, y, blanked, colour), colour being the index in indexed formats
    and (r, g, b) in true-colour ones."""
    data, at, frames = open(path, "rb").read(), 0, []
    while at + 32 <= len(data):
        fmt, count = data[at + 7], struct.unpack(">H", data[at + 24:at + 26])[0]
        size = {0: 8, 1: 6, 2: 3, 4: 10, 5: 8}[fmt]
        records = [data[at + 32 + k * size:at + 32 + (k + 1) * size] for k in range(count)]
        at += 32 + count * size
        if fmt == 2:
            continue
        frame = []
        for r in records:
            tail = r[6:] if fmt in (0, 4) else r[4:]
            colour = tail[1] if fmt in (0, 1) else (tail[3], tail[2], tail[1])
            blanked = bool(tail[0] & 0x40) or (fmt == 5 and colour == (0, 0, 0))
            frame.append((*struct.unpack(">hh", r[:4]), blanked, colour))
        frames.append(frame)
    while frames and not frames[-1]:
        frames.pop()
    return frames


def write_ilda5(path, frames):
    """Writes frames of (x, y, blanked, (r, g, b)) as format-5 sections."""
    out = b""
    for n, frame in enumerate(frames + [[]]):
        out += b"ILDA\0\0\0\x05" + b"test    " + b"kalvor  " + struct.pack(">HHHBB", len(frame), n, len(frames), 0, 0)
        for x, y, blanked, (r, g, b) in frame:
            out += struct.pack(">hhBBBB", x, y, 0x40 if blanked else 0, b, g, r)
    open(path, "wb").write(out)


def svg_lines(path):
    """The <line> elements of an SVG file, parsed with a real XML parser."""
    root = ET.parse(path).getroot()
    assert root.tag == SVG + "svg"
    return root, list(root.iter(SVG + "line"))


def fixture(name):
    return os.path.join(FIXTURES, "ilda", name)


# ---- the tests ------------------------------------------------------------

def test_info():
    frames = read_ilda(fixture("ildatest.ild"))
    drawn = sum(not p[2] for p in frames[0])
    out, _ = run("info", fixture("ildatest.ild"))
    assert "ILDA file, 1 picture" in out, out
    assert "ILDA standard palette" in out, out
    row = next(line.split() for line in out.splitlines() if line.startswith("1 "))
    assert row == ["1", str(len(frames[0])), str(drawn), str(len(frames[0]) - drawn), "indexed"], row

    out, _ = run("info", fixture("growing_circle.ild"))
    assert "ILDA file, 200 pictures" in out, out
    assert "true colour" in out and out.splitlines()[-1].startswith("all"), out


def test_convert_round_trip():
    # Indexed ILDA through a catalogue and back: the same points. The ILDA
    # output is true colour, so each colour index comes back as its palette
    # colour (index 0 of the standard palette is red).
    original = read_ilda(fixture("ildatest.ild"))
    run("convert", fixture("ildatest.ild"), "test.cat")
    run("convert", "test.cat", "back.ild")
    back = read_ilda("back.ild")
    assert len(back) == len(original) == 1
    assert [p[:3] for p in back[0]] == [p[:3] for p in original[0]]
    palette = {}
    for (_, _, blanked, index), (_, _, _, rgb) in zip(original[0], back[0]):
        if not blanked:
            assert palette.setdefault(index, rgb) == rgb, (index, rgb)
    assert palette[0] == (255, 0, 0), palette

    # True colour through every writable format: nothing changes.
    original = read_ilda(fixture("growing_circle.ild"))
    chain = [fixture("growing_circle.ild"), "circle.lds", "circle.cat", "circle.ild"]
    for source, target in zip(chain, chain[1:]):
        out, _ = run("convert", source, target)
        assert "200 pictures written" in out, out
    assert read_ilda("circle.ild") == original

    # One picture through a picture file (extensions in any letter case).
    run("convert", fixture("growing_circle.ild"), "ONE.PIC", "--first", 7, "--last", 7)
    run("convert", "ONE.PIC", "one.ild")
    assert read_ilda("one.ild") == [original[6]]

    # A range: pictures 10 to 12 become pictures 1 to 3.
    run("convert", fixture("growing_circle.ild"), "part.lds", "--first", 10, "--last", 12)
    out, _ = run("info", "part.lds")
    assert "show, 3 pictures" in out, out
    run("convert", "part.lds", "part.ild", "--first", 2)
    assert read_ilda("part.ild") == original[10:12]


def test_render_svg():
    frames = read_ilda(fixture("ildatest.ild"))
    drawn = sum(not p[2] for p in frames[0])
    out, _ = run("render", fixture("ildatest.ild"), "-o", "test.svg")
    root, lines = svg_lines("test.svg")
    assert len(lines) == drawn, (len(lines), drawn)
    assert all(l.get("class") == "drawn" and l.get("stroke", "").startswith("#") for l in lines)

    run("render", fixture("ildatest.ild"), "-o", "blanked.svg", "--show-blanked")
    _, lines = svg_lines("blanked.svg")
    assert sum(l.get("class") == "blanked" for l in lines) == len(frames[0]) - drawn
    assert sum(l.get("class") == "drawn" for l in lines) == drawn

    # A contact sheet: one group per picture; --picture picks one.
    run("render", fixture("growing_circle.ild"), "-o", "sheet.svg", "--size", 64)
    root, lines = svg_lines("sheet.svg")
    groups = [g for g in root.iter(SVG + "g") if g.get("id", "").startswith("picture-")]
    assert len(groups) == 200
    circle = read_ilda(fixture("growing_circle.ild"))
    assert len(lines) == sum(not p[2] for f in circle for p in f)
    run("render", fixture("growing_circle.ild"), "-o", "five.svg", "--picture", 5)
    root, lines = svg_lines("five.svg")
    assert [g.get("id") for g in root.iter(SVG + "g")] == ["picture-5"]
    assert len(lines) == sum(not p[2] for p in circle[4])


def test_render_orientation():
    # A red stroke from the centre upwards (ILDA y grows upwards), then a
    # blanked move right: in the SVG the stroke must go up, towards smaller y.
    write_ilda5("up.ild", [[(0, 0, True, (0, 0, 0)), (0, 20000, False, (255, 0, 0)),
                            (15000, 20000, True, (0, 0, 0))]])
    run("render", "up.ild", "-o", "up.svg")
    _, lines = svg_lines("up.svg")
    assert len(lines) == 1
    line = lines[0]
    assert line.get("stroke") == "#ff0000"
    assert line.get("x1") == line.get("x2")
    assert int(line.get("y2")) < int(line.get("y1"))


def test_render_transform():
    # A red stroke from the centre to the right, drawn through the projector:
    # a quarter turn makes it point down (y grows downwards), and a scale of
    # 0.5 halves it. The first point is dark, so no travel point is added.
    write_ilda5("right.ild", [[(0, 0, True, (0, 0, 0)), (10000, 0, False, (255, 0, 0))]])
    for args, length in ((["--rotate", 90], 10000), (["--rotate", 90, "--scale", 0.5], 5000)):
        run("render", "right.ild", "-o", "turned.svg", *args)
        _, lines = svg_lines("turned.svg")
        assert len(lines) == 1 and lines[0].get("stroke") == "#ff0000", args
        x1, y1, x2, y2 = (int(lines[0].get(k)) for k in ("x1", "y1", "x2", "y2"))
        assert (x1 == x2, y2 - y1) == (True, length), (args, x1, y1, x2, y2)


def test_errors():
    _, err = run("info", "missing.ild", status=1)
    assert "missing.ild" in err and "no such file" in err, err
    open("notes.txt", "w").write("hello")
    _, err = run("render", "notes.txt", "-o", "x.svg", status=1)
    assert "unknown extension '.txt'" in err and ".ild" in err, err
    open("empty.ild", "wb").close()
    _, err = run("convert", "empty.ild", "x.cat", status=1)
    assert "holds no picture" in err, err
    _, err = run("convert", fixture("ildatest.ild"), "x.las", status=1)
    assert "cannot write" in err, err
    _, err = run("convert", fixture("growing_circle.ild"), "x.pic", status=2)
    assert "one picture" in err, err
    _, err = run("render", fixture("ildatest.ild"), "-o", "x.svg", "--picture", 2, status=2)
    assert "out of range" in err, err
    _, err = run("convert", fixture("ildatest.ild"), "no/such/folder/x.cat", status=1)
    assert "cannot write" in err, err
    run(status=2)
    run("convert", fixture("ildatest.ild"), status=2)
    assert not os.path.exists("x.svg") and not os.path.exists("x.cat")


def test_help():
    for command, option in ([], "render"), (["info"], "FILE"), (["convert"], "--last"), (["render"], "--show-blanked"):
        out, _ = run(*command, "--help")
        assert "Usage" in out and option in out, out


if __name__ == "__main__":
    name, KALVOR, FIXTURES, work = sys.argv[1:5]
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)
    os.chdir(work)
    globals()["test_" + name]()
    print(f"{name}: passed")
