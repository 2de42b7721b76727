#!/usr/bin/env python3
"""Writes the small seed inputs of the fuzzers, one folder per reader.

Run from this folder; the output is committed. The ILDA seeds also include the
shared fixture files, which the fuzz stage adds at run time."""
import os
import struct

here = os.path.dirname(os.path.abspath(__file__))


def put(reader, name, data):
    os.makedirs(os.path.join(here, reader), exist_ok=True)
    with open(os.path.join(here, reader, name), "wb") as f:
        f.write(data)


def point(x, y, z, status, repeat, r, g, b):  # 11-byte picture point
    return struct.pack("<hhhBBBBB", x, y, z, status, repeat, r, g, b)


pts = [point(-100, 200, 0, 0xC0, 0, 255, 0, 0), point(300, -400, 5, 0x85, 0x21, 1, 2, 3),
       point(32767, -32768, 0, 0x80, 15, 0, 0, 0)]

# ILDA: every format code, palette entries past 64, a skipped section.
def ilda_head(code, count):
    return b"ILDA\0\0\0" + bytes([code]) + b"name    company " + struct.pack(">HHHBB", count, 0, 1, 0, 0)

ilda = ilda_head(0, 2) + struct.pack(">hhhBB", 100, 100, 0, 0x00, 70) * 2
ilda += ilda_head(1, 1) + struct.pack(">hhBB", -5, 7, 0x40, 3)
ilda += ilda_head(2, 66) + bytes(range(198))
ilda += b"ILDA\0\0\0\x03" + struct.pack(">II", 0, 2) + b"abcdef"
ilda += ilda_head(4, 2) + struct.pack(">hhhBBBB", 1, 2, 3, 0, 1, 2, 3) * 2
ilda += ilda_head(5, 2) + struct.pack(">hhBBBB", 9, 9, 0, 0, 0, 0) + struct.pack(">hhBBBB", 9, 9, 0x80, 4, 5, 6)
ilda += b"ILDA\0\0\0\x09" + struct.pack(">I", 3) + b"xyz"
ilda += ilda_head(0, 0)
put("ilda", "all_formats.ild", ilda)
put("ilda_index", "all_formats.ild", ilda)
put("ilda_index", "runs.ild", ilda_head(0, 4) + struct.pack(">hhhBB", 1, 1, 1, 0, 1) * 3
    + struct.pack(">hhhBB", 2, 2, 2, 0, 1) + ilda_head(0, 0))

# Picture files: current layout with skipped bytes, older layout, a version above.
def pic_head(version, count, skip=0):
    return struct.pack(">HHHHHHH", version, 0, 0, count, 1, skip & 0xFFFF, skip >> 16)

put("pic", "current.pic", pic_head(1024, 3) + b"".join(pts))
put("pic", "skip.pic", pic_head(1024, 2, 6) + b"SKIPME" + b"".join(pts[:2]))
put("pic", "older.pic", pic_head(0, 3) + b"".join(struct.pack(">BBhhh", 6, s, 10 * s, 20, 0) for s in (5, 0x46, 7)))
put("pic", "newer.pic", pic_head(2048, 2) + b"".join(pts[:2]))

# Catalogues: every record type and an unknown one.
cat = b"\x00" + struct.pack("<H", 2) + struct.pack("<hhhBB", 1, 2, 3, 0x47, 0) * 2
cat += b"\x01" + struct.pack("<H", 3) + b"".join(pts)
cat += b"\x01" + struct.pack("<H", 0)
cat += b"\x02" + b"\0\0\0\0" + struct.pack("<H", 1) + pts[0]
cat += b"\x03" + b"\0\0\0\0" + struct.pack("<H", 2) + struct.pack("<hhBBBB", 5, 6, 0, 0, 0, 0) + struct.pack("<hhBBBB", 5, 6, 0, 0, 0, 1)
cat += b"\x07"
put("cat", "all_types.cat", cat)
put("cat_part", "all_types.cat", cat)

# Shows: two pictures, one empty.
lds = b"\0\0\0\0" + struct.pack("<H", 2) + struct.pack("<HH", 0, 3) + b"".join(pts) + struct.pack("<HH", 1, 0)
put("lds", "two.lds", lds)

# LAS: two pictures; FLX: three frames with every point state.
def las_point(x, y, blank, colour):
    return bytes([0]) + struct.pack("<HH", x, y) + bytes([blank, 0, colour, 0, 0, 0])

las = struct.pack("<HH", 0, 1)
las += struct.pack("<HHI", 0, 2, 0) + las_point(0, 4095, 1, 200) + las_point(2048, 6144, 0, 3) + b"\0\0"
las += struct.pack("<HHI", 0, 0, 0) + las_point(1, 1, 3, 64) + b"\0\0"
put("las", "two.las", las)

def flx_point(x, y, s):
    return struct.pack("<HH", x, y) + bytes(5) + bytes([s, 0])

flx = struct.pack("<H", 3) + bytes(9)
for n in (3, 0, 1):
    flx += struct.pack("<H", n) + bytes(9) + b"".join(flx_point(65535 * k // 3, 100 * k, k % 3) for k in range(n))
put("flx", "three.flx", flx)

# Palettes and RGB files.
put("pal", "full.pal", bytes((i * 7) % 256 for i in range(576)))
put("rgb", "full.rgb", bytes((i * 5) % 256 for i in range(192)))

# Profiles.
put("profile", "sections.ini",
    b"; scanners\r\n[1]\r\nMasterName=PC1\r\nSlaveName=LAS1\r\nSignal=260\r\nC3ToR=0.5\r\n"
    b"[3]\nMasterName = 0123456789ABCDEF\nSlaveName=x\nC0ToG=-1e308\nC5ToB=  +.5e-3junk\n"
    b"[20]\nSignal=-7\nC1ToR=nan\nC2ToB=inf\n[ 20 ]\nMasterName=\n")
# Profiles in UTF-8 and UTF-16 with their byte-order marks, CR line ends,
# malformed sequences, NULs and the integer reader's prefixes.
put("profile", "utf8.ini", b"\xef\xbb\xbf[1]\rMasterName=K\xc3\xa9\xc4\x80\xff\rSlaveName=\xe2\x82\rSignal=0x1f\r"
    b"[2\x00]\nSignal=\"0b101\"\nC0ToR=\xef\xbc\x90.5\x1a\n[3]]\nSignal=-0o17\n")
put("profile", "utf16.ini", b"\xff\xfe" + "[1]\r\nMasterName=\u20ac\u3000\nSlaveName='x'\nSignal=\x01 7\n"
    .encode("utf-16-le") + b"\x00\xd8")

# IDN datagrams: scan responses, service maps and acknowledgements as devices
# send them, and ones whose sizes or counts claim more than they hold.
def hello(command, seq=1):
    return struct.pack(">BBH", command, 0, seq)

def name20(text):
    return text.encode().ljust(20, b"\0")[:20]

scan = hello(0x11) + bytes([40, 0x01, 0x01, 0, 7, 1, 2, 0, 0x5E, 0x10, 0x20, 0x30]) + bytes(8) + name20("projector")
put("idn_scan", "device.bin", scan)
put("idn_scan", "long-id.bin", hello(0x11) + bytes([40, 0x10, 0x11, 0, 15, 0x7F]) + b"unit-name-1234" + name20("x" * 20))
put("idn_scan", "lying-size.bin", hello(0x11) + bytes([200]) + scan[5:])
put("idn_scan", "short.bin", scan[:30])

def service(sid, stype, flags, relay, text):
    return bytes([sid, stype, flags, relay]) + name20(text)

smap = hello(0x13) + bytes([4, 24, 1, 2]) + service(0, 0, 0, 1, "relay") + service(1, 0x80, 1, 0, "Laser 1")
smap += service(2, 0x80, 0, 1, "Laser 2")
put("idn_service_map", "two-services.bin", smap)
put("idn_service_map", "wide-entries.bin", hello(0x13) + bytes([8, 32, 0, 1]) + bytes(4) + service(3, 0x80, 1, 0, "wide") + bytes(8))
put("idn_service_map", "lying-count.bin", hello(0x13) + bytes([4, 24, 0, 9]) + service(1, 0x80, 1, 0, "one"))

put("idn_ack", "twelve.bin", hello(0x47) + struct.pack(">BbHHBBI", 12, 0, 0x0001, 0x0001, 1, 100, 250))
put("idn_ack", "four.bin", hello(0x47) + struct.pack(">BbH", 4, -20, 0x0010))
put("idn_ack", "ten.bin", hello(0x47) + struct.pack(">BbHHBBH", 10, -18, 0, 0x0400, 0, 0, 9))
put("idn_ack", "lying.bin", hello(0x47) + struct.pack(">BbH", 40, 0, 0))
