#!/usr/bin/env python3
"""Tests of the kalvor command-line tool.

Usage: test_cli.py TEST KALVOR FIXTURES WORKDIR. The script reads the files
the tool writes with readers of its own: ILDA files with read_ilda, SVG with
xml.etree, so that a fault in the library's writers is caught here too.
"""
import os
import resource
import shutil
import struct
import subprocess
import sys
import xml.etree.ElementTree as ET
import zlib

SVG = "{http://www.w3.org/2000/svg}"
SKIPPED = 77  # the exit status ctest counts as a skip (SKIP_RETURN_CODE)


def run(*args, status=0, stdin=None, file_limit=None, text=True):
    """Runs the tool; checks its exit status; returns (stdout, stderr).
    file_limit caps the size of the files it writes, as `ulimit -f` does."""
    limit = (lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (file_limit, file_limit))) if file_limit else None
    p = subprocess.run([KALVOR, *map(str, args)], capture_output=True, input=stdin, text=text, preexec_fn=limit)
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


def section(fmt, records=b"", count=None, name=b"test    "):
    """One ILDA section: header (format fmt, record count) and records."""
    if count is None:
        count = len(records) // {0: 8, 1: 6, 2: 3, 4: 10, 5: 8}[fmt]
    return b"ILDA\0\0\0" + bytes([fmt]) + name + b"kalvor  " + struct.pack(">HHHBB", count, 0, 1, 0, 0) + records


def indexed(points):
    """Format-0 records of (x, y, colour index), drawn."""
    return b"".join(struct.pack(">hhhBB", x, y, 0, 0, index) for x, y, index in points)


def write_ilda5(path, frames):
    """Writes frames of (x, y, blanked, (r, g, b)) as format-5 sections."""
    out = b""
    for frame in frames + [[]]:
        out += section(5, b"".join(struct.pack(">hhBBBB", x, y, 0x40 if blanked else 0, b, g, r)
                                   for x, y, blanked, (r, g, b) in frame))
    open(path, "wb").write(out)


def strokes(svg):
    """The stroke colours of the drawn lines of an SVG file."""
    return [l.get("stroke") for l in svg_lines(svg)[1] if l.get("class") == "drawn"]


def read_png(path):
    """(width, height, pixel(x, y) -> (r, g, b)) of an 8-bit RGB or RGBA PNG."""
    data, at, idat = open(path, "rb").read(), 8, b""
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour = struct.unpack(">IIBB", body[:10])
            assert depth == 8 and colour in (2, 6), (depth, colour)
        if kind == b"IDAT":
            idat += body
        at += 12 + length
    step = 3 if colour == 2 else 4
    raw, rows, stride = zlib.decompress(idat), [], width * step
    previous = bytearray(stride)
    for y in range(height):
        kind, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            a = line[i - step] if i >= step else 0
            b, c = previous[i], previous[i - step] if i >= step else 0
            p = a + b - c
            nearest = a if abs(p - a) <= abs(p - b) and abs(p - a) <= abs(p - c) else b if abs(p - b) <= abs(p - c) else c
            line[i] = (line[i] + [0, a, b, (a + b) // 2, nearest][kind]) & 255
        rows.append(line)
        previous = line
    return width, height, lambda x, y: tuple(rows[y][x * step:x * step + 3])


def svg_lines(path):
    """The <line> elements of an SVG file, parsed with a real XML parser."""
    root = ET.parse(path).getroot()
    assert root.tag == SVG + "svg"
    return root, list(root.iter(SVG + "line"))


class MissingFixture(Exception):
    """A fixture file is not there: a clone on its own lacks them."""


def fixture(name):
    path = os.path.join(FIXTURES, "ilda", name)
    if not os.path.exists(path):
        raise MissingFixture(path)
    # Relative: on Windows the tool would take "/work/..." for an option.
    return os.path.relpath(path)


# ---- the tests ------------------------------------------------------------

def test_info():
    frames = read_ilda(fixture("ildatest.ild"))
    drawn = sum(not p[2] for p in frames[0])
    out, err = run("info", fixture("ildatest.ild"))
    assert "ILDA file, 1 picture" in out and err == "", (out, err)
    assert "ILDA standard palette" in out, out
    row = next(line.split() for line in out.splitlines() if line.startswith("1 "))
    assert row == ["1", str(len(frames[0])), str(drawn), str(len(frames[0]) - drawn), "indexed", "ILDA", "Tes"], row
    # 1,191 points at 1,000 points per second; one picture at 4 per second.
    out, _ = run("info", fixture("ildatest.ild"), "--point-rate", 1000, "--frame-rate", 4)
    assert "play time: 1.191 s at 1,000 points per second" in out and "0.250 s at 4 frames" in out, out

    out, err = run("info", fixture("growing_circle.ild"))
    assert "ILDA file, 200 pictures" in out and err == "", (out, err)
    assert "true colour" in out and out.splitlines()[-3].startswith("all"), out


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
    # Each message names the file and the problem in plain words.
    os.makedirs("folder.ild/inside")
    open("notes.txt", "w").write("hello")
    open("empty.ild", "wb").close()
    open("not-ilda.ild", "wb").write(b"\0" * 40)
    shutil.copy(fixture("ildatest.ild"), "ilda-data.las")
    for args, status, words in [
        (["info", "missing.ild"], 1, ["'missing.ild'", "no such file"]),
        (["info", "folder.ild"], 1, ["'folder.ild'", "is a folder"]),
        (["render", "notes.txt", "-o", "x.svg"], 1, ["unknown extension '.txt'", ".ild"]),
        (["convert", "empty.ild", "x.cat"], 1, ["'empty.ild' is empty"]),
        (["info", "not-ilda.ild"], 1, ["'not-ilda.ild' is not an ILDA file"]),
        (["info", "ilda-data.las"], 1, ["'ilda-data.las' holds ILDA data", "LAS file"]),
        (["convert", fixture("ildatest.ild"), "x.las"], 1, ["cannot write"]),
        (["convert", fixture("growing_circle.ild"), "x.pic"], 2, ["one picture"]),
        (["render", fixture("ildatest.ild"), "-o", "x.svg", "--picture", 2], 2, ["out of range"]),
        (["render", fixture("ildatest.ild"), "-o", "x.gif"], 2, [".svg or .png"]),
        (["convert", fixture("ildatest.ild"), "no/such/folder/x.cat"], 1,
         ["cannot write 'no/such/folder/x.cat': No such file or directory"]),
        (["convert", fixture("ildatest.ild"), "x.cat", "--first", 0], 2, ["--first", "not in range 1 to 65535"]),
        (["frobnicate", "x.ild"], 2, ["unknown command 'frobnicate'", "info, convert, render"]),
        ([], 2, ["a command is needed"]),
        (["convert", fixture("ildatest.ild")], 2, ["OUT"]),
    ]:
        _, err = run(*args, status=status)
        assert all(w in err for w in words) and len(err) < 300, (args, err)
    assert not os.path.exists("x.svg") and not os.path.exists("x.cat")
    out, _ = run("--version")
    assert out.startswith("kalvor ") and out.split()[1][0].isdigit(), out


def test_rasterise():
    # A red horizontal stroke through the centre of a 200-pixel picture. Both
    # rsvg-convert (librsvg, as image viewers use it) on the SVG, and the
    # tool's own PNG, must light the pixels along it and nothing far from it.
    assert shutil.which("rsvg-convert"), "rsvg-convert is needed (Debian: librsvg2-bin)"
    write_ilda5("bar.ild", [[(-20000, 0, True, (0, 0, 0)), (20000, 0, False, (255, 0, 0)),
                             (-20000, 0, True, (0, 0, 0))]])
    run("render", "bar.ild", "-o", "bar.svg", "--size", 200)
    subprocess.run(["rsvg-convert", "bar.svg", "-o", "bar-svg.png"], check=True)
    run("render", "bar.ild", "-o", "bar.png", "--size", 200)
    for image in "bar-svg.png", "bar.png":
        width, height, pixel = read_png(image)
        assert (width, height) == (216, 216), (image, width, height)
        # The picture's square starts 8 pixels in; ILDA y 0 lies on the border
        # of pixel rows 107 and 108, which share the stroke.
        row = [max(pixel(x, 107), pixel(x, 108)) for x in range(8 + 45, 8 + 155)]
        assert all(r > 150 and g < 80 and b < 80 for r, g, b in row), (image, row[:5])
        assert all(max(pixel(x, y)) < 0x50 for x in range(20, 190, 10) for y in (40, 170)), image


def test_safe_output():
    # A folder as output is refused, and left as it was, empty or not.
    os.makedirs("full.cat/inside")
    os.makedirs("empty.ild")
    for target in "full.cat", "empty.ild":
        _, err = run("convert", fixture("ildatest.ild"), target, status=1)
        assert "is a folder" in err, err
    assert os.listdir("full.cat") == ["inside"] and os.path.isdir("empty.ild")
    # A write that fails part way (a file-size limit) keeps the earlier file,
    # for the library's writers and the tool's own, and leaves nothing behind.
    open("old.ild", "wb").write(b"earlier")
    open("old.svg", "wb").write(b"earlier")
    for args in (["convert", fixture("growing_circle.ild"), "old.ild"],
                 ["render", fixture("growing_circle.ild"), "-o", "old.svg"]):
        _, err = run(*args, status=1, file_limit=100000)
        assert "cannot write 'old." in err and "File too large" in err, err
    assert open("old.ild", "rb").read() == open("old.svg", "rb").read() == b"earlier"
    _, err = run("render", fixture("growing_circle.ild"), "-o", "new.png", status=1, file_limit=10000)
    assert "File too large" in err, err
    assert sorted(os.listdir(".")) == ["empty.ild", "full.cat", "old.ild", "old.svg"], os.listdir(".")
    # A successful write replaces the file.
    run("convert", fixture("ildatest.ild"), "old.ild")
    assert len(read_ilda("old.ild")[0]) == 1191


def test_palettes():
    # Each case: ILDA sections, picture to draw, colours of its drawn lines.
    palette256 = bytes(c for i in range(256) for c in (i, i, i))
    table = [
        # Colour index 0 everywhere is the palette's first colour, not white.
        ([section(0, indexed([(0, 0, 0), (100, 0, 0)]))], 1, ["#ff0000", "#ff0000"]),
        # A palette applies to the frames after it, not to those before.
        ([section(0, indexed([(0, 0, 1), (9, 0, 1)])), section(2, b"\0\0\0" + b"\0\0\xff"),
          section(0, indexed([(0, 0, 1), (9, 0, 1)]))], 1, ["#ff1000", "#ff1000"]),
        ([section(0, indexed([(0, 0, 1), (9, 0, 1)])), section(2, b"\0\0\0" + b"\0\0\xff"),
          section(0, indexed([(0, 0, 1), (9, 0, 1)]))], 2, ["#0000ff", "#0000ff"]),
        # All 256 entries of a palette count: index 200 is entry 200.
        ([section(2, palette256), section(0, indexed([(0, 0, 200), (9, 0, 72)]))], 1, ["#c8c8c8", "#484848"]),
        # A format-3 table gives the next frame's colours, point by point.
        ([section(2, palette256), b"ILDA\0\0\0\x03" + struct.pack(">II", 10, 2) + b"\x01\x02\x03\x04\x05\x06",
          section(0, indexed([(0, 0, 5), (9, 0, 5)]))], 1, ["#010203", "#040506"]),
    ]
    for n, (sections, picture, colours) in enumerate(table):
        open(f"p{n}.ild", "wb").write(b"".join(sections) + section(0))
        _, err = run("render", f"p{n}.ild", "-o", f"p{n}.svg", "--picture", picture)
        assert sorted(strokes(f"p{n}.svg")) == sorted(colours) and err == "", (n, strokes(f"p{n}.svg"), err)
    out, _ = run("info", "p3.ild")
    assert "palette: 256 entries from the file" in out and "indexed" in out, out


def test_warnings():
    # Each case: a file, then the warning that info must give (exit 0), which
    # --strict turns into exit 1.
    points = lambda n: b"".join(struct.pack(">hhBBBB", k % 1000, 0, 0, 255, 255, 255) for k in range(n))
    table = [
        ("cut.ild", section(5, points(3)) + section(5, points(4), count=10),
         "'cut.ild' ends inside frame 2: 6 of 10 points missing, padded as blanked points"),
        ("big.ild", section(5, points(10000)) + section(5),
         "'big.ild': frame 1 has 10,000 points, more than a picture keeps (8,191): 1,809 points dropped"),
        ("odd.ild", section(5, points(3)) + b"ILDA\0\0\0\x09" + struct.pack(">I", 5) + b"12345"
         + section(5, points(2)) + section(5), "'odd.ild': 1 section of an unknown format skipped"),
        ("cut.lds", struct.pack("<IHHH", 0, 1, 0, 5) + bytes(11 * 2),
         "'cut.lds' ends inside picture 1: 3 of 5 points missing, padded as blanked points"),
        ("cut.las", struct.pack("<HHHHHH", 0, 0, 0, 4, 0, 0) + bytes(11 * 2),
         "'cut.las' ends inside picture 1: 3 of 5 points missing, padded as blanked points"),
        ("odd.cat", b"\x07" + b"\x01" + struct.pack("<H", 1) + bytes(11),
         "'odd.cat': 1 record of an unknown type or with too many points skipped"),
    ]
    for name, data, warning in table:
        open(name, "wb").write(data)
        _, err = run("info", name)
        assert err == f"warning: {warning}\n", (name, err)
        _, err = run("--strict", "convert", name, "out.cat", status=1)
        assert warning in err and "--strict" in err, err
        assert not os.path.exists("out.cat")
    out, _ = run("info", "cut.ild")
    assert "10        4        6" in out, out  # the padded points count as blanked


def test_ilda_output():
    # The last record of each frame carries the last-point bit; frame names
    # come from the source, or from the output's name when it has none.
    def frames(path):
        data, at, out = open(path, "rb").read(), 0, []
        while at + 32 <= len(data):
            n = struct.unpack(">H", data[at + 24:at + 26])[0]
            bits = [data[at + 32 + 8 * k + 4] & 0x80 for k in range(n)]
            out.append((data[at + 8:at + 16], bits))
            at += 32 + 8 * n
        return out
    run("convert", fixture("growing_circle.ild"), "named.ild", "--last", 3)
    run("convert", fixture("growing_circle.ild"), "plain.lds", "--last", 3)
    run("convert", "plain.lds", "circle.ild")
    source = [name for name, _ in frames(fixture("growing_circle.ild"))][:3]
    for path, names in ("named.ild", source), ("circle.ild", [b"circl001", b"circl002", b"circl003"]):
        written = frames(path)
        assert [name for name, _ in written[:3]] == names, [name for name, _ in written]
        for _, bits in written[:3]:
            assert bits[-1] and not any(bits[:-1]), path
        assert written[3][1] == [], path  # the closing header


def test_streams():
    # "-" reads ILDA from standard input and writes to standard output.
    data = open(fixture("ildatest.ild"), "rb").read()
    out, _ = run("convert", "-", "-", stdin=data, text=False)
    run("convert", fixture("ildatest.ild"), "file.ild")
    assert out == open("file.ild", "rb").read()
    out, _ = run("render", "-", "-o", "-", stdin=data, text=False)
    assert ET.fromstring(out).tag == SVG + "svg"
    _, err = run("info", "-", stdin=b"not ilda at all", status=1, text=False)
    assert b"standard input" in err and b"not an ILDA file" in err, err


def test_help():
    for command, option in ([], "render"), (["info"], "FILE"), (["convert"], "--last"), (["render"], "--show-blanked"):
        out, _ = run(*command, "--help")
        assert "Usage" in out and option in out, out


if __name__ == "__main__":
    name, KALVOR, FIXTURES, work = sys.argv[1:5]
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)
    os.chdir(work)
    try:
        globals()["test_" + name]()
    except MissingFixture as missing:
        print(f"{name}: skipped, fixture file missing: {missing}")
        sys.exit(SKIPPED)
    print(f"{name}: passed")
