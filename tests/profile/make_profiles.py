#!/usr/bin/env python3
"""Writes the profile files that Linux and Windows must read alike.

    make_profiles.py <folder>

writes one file per feature (feature_*.ini), a few hundred files that mix the
features (mixed_*.ini, from a fixed seed; the last hundred also have stray
characters sprinkled in) and index.txt, which lists them all.
Text is built as Python strings: for Windows-1252 files every character is a
byte (chr(0) to chr(255)); UTF-8 files carry malformed bytes as the
surrogate escapes U+DC80..U+DCFF; UTF-16 files may hold lone surrogates.
"""
import os
import random
import sys

KEYS = ["MasterName", "SlaveName", "Signal"] + [
    "C%dTo%s" % (n, c) for c in "RGB" for n in range(6)]


def encode(text, encoding):
    if encoding == "ansi":
        return text.encode("latin-1")
    if encoding == "utf8":
        return b"\xef\xbb\xbf" + text.encode("utf-8", "surrogateescape")
    if encoding == "utf16le":
        return b"\xff\xfe" + text.encode("utf-16-le", "surrogatepass")
    return b"\xfe\xff" + text.encode("utf-16-be", "surrogatepass")


def section(number, *lines, end="\n"):
    return "[%s]%s" % (number, end) + "".join(line + end for line in lines)


def full(number, master="PC%d", slave="LAS%d", signal="5", end="\n"):
    """A complete section whose names tell the scanner."""
    return section(number, "MasterName=" + (master % number if "%" in master else master),
                   "SlaveName=" + (slave % number if "%" in slave else slave),
                   "Signal=" + signal, "C1ToR=0.5", "C3ToG=-0.25", end=end)


# One file per feature: (name, text, encoding). The first group are the ways
# in which an earlier Linux reader differed from Windows.
FEATURES = [
    ("cr_line_ends", full(1, end="\r") + full(2, end="\r\n") + "[3]\rSignal=9", "ansi"),
    ("utf8_bom", section(1, "MasterName=K\u00e9\u0100\u20ac\uff10\u3000x", "SlaveName=\u00ff\u2009\U0001F600",
                         "Signal=\uff15", "C0ToR=\uff10.5", "C1ToR=0.\uff15")
     + section(2, "MasterName=a\udcffb", "SlaveName=\udcc3", "Signal=7\udce2"), "utf8"),
    ("utf16le_bom", section(1, "MasterName=K\u00e9\u0100\u20ac\u0178", "SlaveName=\ud800x\udc00",
                            "Signal=12", "C2ToB=\uff10.25") + full(2), "utf16le"),
    ("utf16be_bom", full(1) + section(3, "MasterName=\u00e9\u3000", "SlaveName=\u0131"), "utf16be"),
    ("eof_mark_trimmed", section(1, "MasterName=PC\x1a", "SlaveName=\x1aLAS\x1a\x1a", "Signal=7\x1a",
                                 "\x1aC0ToR=0.5\x1a") + "\x1a", "ansi"),
    ("key_without_value_first", section(1, "MasterName", "MasterName=PC1", "SlaveName=S", "Signal",
                                        "Signal=9", "C0ToR", "C0ToR=0.5"), "ansi"),
    ("section_to_last_bracket", "[1]]\nMasterName=A\nSlaveName=B\n[2]x]\nSignal=4\n[3] ]\nSignal=5\n"
     "[4]extra\nMasterName=C\nSlaveName=D\n", "ansi"),
    ("section_without_bracket", section(1, "MasterName=A", "[2", "SlaveName=B", "Signal=6")
     + "[ 3\nSignal=8\n", "ansi"),
    ("section_name_nul", "[1\x00]\nMasterName=A\nSlaveName=B\n[2\x00x]\nSignal=4\n[3 \x00]\nSignal=5\n"
     "[4\x00\nSignal=6\n", "ansi"),
    ("long_lines", "; " + "c" * 3000 + "\n" + section(1, "MasterName=" + "n" * 2500, "SlaveName=ok",
                                                       "Signal=" + " " * 2100 + "11",
                                                       "C0ToR=" + "0." + "0" * 2200 + "5")
     + section(2, "MasterName=A" + " " * 2500, "SlaveName" + " " * 3000 + "=B"), "ansi"),
    ("integer_prefixes", "".join(section(n, "Signal=" + v) for n, v in enumerate(
        ["0x10", "0o17", "0b11", "-0x10", "0X10", "0x", "0b2", "+0o777", "0xfF", "- 5", "0x1G",
         "12abc", "0xFFFFFFFFF", "99999999999", "-0", "00b1"], 1)), "ansi"),
    ("integer_control_characters", section(1, "Signal=\x01\x0b7") + section(2, "Signal=\x01 5")
     + section(3, "Signal=\"\x1f\x0c8\"") + section(4, "Signal=\x7f9"), "ansi"),
    ("integer_quoted_blank", section(1, 'Signal=" "') + section(2, 'Signal=""') + section(3, "Signal=' 12'")
     + section(4, "Signal='") + section(5, "Signal=\"3'"), "ansi"),
    ("integer_long", "".join(section(n, "Signal=" + v) for n, v in enumerate(
        ["1" * 28, "1" * 29, "1" * 30, "1" * 31, "0" * 29 + "5", "0" * 28 + "5", '"' + "1" * 28 + '"',
         '"' + "1" * 29 + '"', '"' + "1" * 30 + '"', '"' + "0" * 27 + "79" + '"', " " * 40 + "3"], 1)), "ansi"),
    # What both already read alike.
    ("name_case", "[1]\nmastername=pc\nSLAVENAME=Ls\nsIgNaL=4\nc1tor=0.5\n", "ansi"),
    ("blanks", "  [ 1 ]  \n \t MasterName \t = \t P C \t \n\tSlaveName=\tx\x0b\n Signal =\x0c 3\n", "ansi"),
    ("repeats", full(1) + section(1, "MasterName=X", "Signal=9") + section(2, "Signal=3", "Signal=4"), "ansi"),
    ("keys_before_sections", "MasterName=top\nSignal=9\n" + section(1, "SlaveName=S"), "ansi"),
    ("comments", "; [1]\n" + section(1, ";MasterName=no", "# Signal=3", "MasterName=yes", "SlaveName=s ; c",
                                     "Signal=5 ; five", "C0ToR=0.5;x"), "ansi"),
    ("quotes", section(1, 'MasterName="quoted"', "SlaveName='single'", 'Signal="7"', 'C0ToR="0.5')
     + section(2, 'MasterName="mixed\'', "SlaveName=\"", 'Signal="9"x', "C0ToR=''")
     + section(3, 'MasterName=" spaced "', 'SlaveName="a"b"', 'Signal="a\x00b"'), "ansi"),
    ("empty_values", section(1, "MasterName=", "SlaveName=  ", "Signal=", "C0ToR=", "C1ToG= "), "ansi"),
    ("name_lengths", section(1, "MasterName=" + "a" * 15, "SlaveName=" + "b" * 16)
     + section(2, "MasterName=" + "c" * 255, "SlaveName=" + "d" * 256)
     + section(3, 'MasterName="' + "e" * 254 + '"', 'SlaveName="' + "f" * 255 + '"')
     + section(4, 'MasterName="' + "g" * 13 + '"', 'SlaveName="' + "h" * 256 + '"'), "ansi"),
    ("equals_in_values", section(1, "MasterName=a=b", "SlaveName==", "Signal==5", "C0ToR=0.5=1"), "ansi"),
    ("leading_zero_section", "[01]\nSignal=4\n[1 1]\nSignal=5\n[2]\nSignal=6\n", "ansi"),
    ("crlf", full(1, end="\r\n") + full(2, end="\r\n"), "ansi"),
    ("no_final_newline", full(1) + "[2]\nMasterName=A\nSlaveName=B", "ansi"),
    ("colour_weights", section(1, *["%s=%s" % (k, v) for k, v in zip(KEYS[3:], [
        "0.5", "-0.25", "1e-1", ".75", "2", "abc", "+0.125", "1e999", "-1e999", "nan", "inf", "0x10",
        " 0.3 ", "5e-1x", "--1", "1,5", "300", "-300"])]), "ansi"),
    ("nul_in_lines", section(1, "Master\x00Name=no", "MasterName\x00x=yes", "SlaveName=a\x00b", "Signal=4\x00 9",
                             "C0ToR=0\x00.5") + "\x00[2]\nSignal=7\n", "ansi"),
    ("high_bytes", section(1, "MasterName=\x80\x81\x8d\x9f\xa0\xff", "SlaveName=\xa0x\xa0", "Signal=\xa06"), "ansi"),
    ("byte_order_marks_repeated", "\ufeff" + full(1) + "\ufeff[2]\nSignal=4\n", "utf8"),
    ("utf8_malformed", section(1, "MasterName=a\udcc0\udcafb", "SlaveName=\udce0\udc80\udc80",
                               "C0ToR=\udced\udca0\udc800.5") + section(2, "MasterName=\udcf4\udc90\udc80\udc80",
                                                                         "SlaveName=x\udcf0\udc9f\udc98") , "utf8"),
    ("utf8_cut_at_end", full(1) + "[2]\nMasterName=a\nSlaveName=b\udce2\udc82", "utf8"),
    ("utf16_unicode_blanks", section(1, "MasterName=\u00a0A\u2000", "SlaveName=\u0085B\u3000", "Signal=\u20007")
     + "\u2028[2]\nSignal=3\n", "utf16le"),
    ("empty_file", "", "ansi"),
    ("only_byte_order_mark", "", "utf8"),
]

NAMES = ["PC1", "LAS1", "x", "", "Quoted Name", "K\u00e9", "\u0100\u20ac", "a" * 15, "b" * 16, "c" * 40,
         "\uff10\uff11", "tab\there", "semi;colon", "eq=sign", "'x'", '"y"', " pad ", "\u3000z"]
SIGNALS = ["5", "260", "-3", "0x10", "0o17", "0b11", "-0x10", "0X10", "\x017", '" "', '""', "1" * 35,
           '"' + "2" * 30 + '"', "abc", "", " 12 ", "+7", "\uff15", "4;c"]
WEIGHTS = ["0.5", "-0.25", "1e-1", ".75", "2", "abc", "", "+0.125", "1e999", "nan", "0.0", " 0.3 ", '"0.5"',
           "\uff10.5", "--1", "3e2", "0.5 ; c", "0.0625", "-1.5", "1.25e0", "0.333", "7", "0.9\x1a"]


def mixed(rng):
    """A file mixing the features: encoding, line ends, decorations, junk."""
    encoding = rng.choice(["ansi"] * 6 + ["utf8"] * 2 + ["utf16le"] * 2 + ["utf16be"])
    ends = rng.choice([["\n"], ["\r\n"], ["\r"], ["\n", "\r\n", "\r", "\n\n", "\r\r\n"]])
    blanks = ["", " ", "\t", "  ", "\x0b", "\x1a", "\x0c"]
    lines = []
    numbers = rng.sample(range(1, 21), rng.randint(3, 20)) + rng.sample(range(1, 5), rng.randint(0, 2))
    for number in numbers:
        decorated = rng.random()
        header = "[%s%d%s]" % (rng.choice(blanks), number, rng.choice(blanks))
        if decorated < 0.04:
            header = "[%d]]" % number
        elif decorated < 0.08:
            header = "[%d" % number
        elif decorated < 0.12:
            header = "[%d\x00]" % number
        elif decorated < 0.16:
            header = "[%d] ; scanner" % number
        lines.append(rng.choice(blanks) + header)
        keys = [k for k in KEYS[:3] if rng.random() < 0.85] + rng.sample(KEYS[3:], rng.randint(0, 8))
        keys += rng.sample(KEYS, rng.randint(0, 2))  # repeats
        rng.shuffle(keys)
        for key in keys:
            if rng.random() < 0.15:
                key = "".join(c.upper() if rng.random() < 0.5 else c.lower() for c in key)
            pool = NAMES if "Name" in key else SIGNALS if key == "Signal" else WEIGHTS
            value = rng.choice(pool)
            roll = rng.random()
            if roll < 0.04:
                line = key  # no '='
            elif roll < 0.08:
                line = ";" + key + "=" + value
            elif roll < 0.12:
                line = key + "=" + value + "\x00" + rng.choice(pool)
            elif roll < 0.16:
                line = key + rng.choice(blanks) + "=" + rng.choice(blanks) + "'" + value + "'"
            else:
                line = rng.choice(blanks) + key + rng.choice(blanks) + "=" + rng.choice(blanks) + value + rng.choice(blanks)
            lines.append(line)
        if rng.random() < 0.1:
            lines.append("junk without equals " + "j" * rng.choice([1, 3000]))
    text = "".join(line + rng.choice(ends) for line in lines)
    if rng.random() < 0.3:
        text = text.rstrip("\r\n")
    if encoding == "ansi":  # a character outside the code page's bytes becomes a high byte
        text = "".join(c if ord(c) < 256 else chr(0x80 + ord(c) % 128) for c in text)
    elif encoding == "utf8" and rng.random() < 0.3:
        at = rng.randrange(len(text) + 1)
        text = text[:at] + rng.choice(["\udcff", "\udcc3", "\udce2\udc82", "\udc80"]) + text[at:]
    return text, encoding


NOISE = ["[", "]", "=", "\r", "\n", " ", "\t", "\x0b", "\x1a", "\x00", '"', "'", "0x", "-", ";", "\x01", "\x7f",
         "\x85", "\xa0", "\xff", "\x81"]


def sprinkle(rng, text, encoding):
    """The text with stray characters put in at random places."""
    for _ in range(rng.randint(1, max(1, len(text) // 20))):
        at = rng.randrange(len(text) + 1)
        roll = rng.random()
        if roll < 0.2 and encoding != "ansi":
            stray = chr(rng.choice([rng.randint(0x100, 0xD7FF), 0x3000, 0xFF10, 0x2028, 0x0130, 0x2000]))
        elif roll < 0.3 and encoding.startswith("utf16"):
            stray = chr(rng.randint(0xD800, 0xDFFF))
        elif roll < 0.3 and encoding == "utf8":
            stray = chr(0xDC80 + rng.randint(0, 127))
        elif roll < 0.4:
            stray = chr(rng.randint(0, 255))
        else:
            stray = rng.choice(NOISE)
        text = text[:at] + stray + text[at:]
    return text


def main():
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    names = []
    for name, text, encoding in FEATURES:
        names.append("feature_%s.ini" % name)
        with open(os.path.join(folder, names[-1]), "wb") as out:
            out.write(encode(text, encoding))
    rng = random.Random(18)
    for i in range(300):
        text, encoding = mixed(rng)
        if i >= 200:
            text = sprinkle(rng, text, encoding)
        names.append("mixed_%03d.ini" % i)
        with open(os.path.join(folder, names[-1]), "wb") as out:
            out.write(encode(text, encoding))
    with open(os.path.join(folder, "index.txt"), "w") as out:
        out.write("".join(n + "\n" for n in names))


if __name__ == "__main__":
    main()
