#!/usr/bin/env python3
"""Plants one fault at a time in the library and counts the faults the tests catch (Linux).

Each row of MUTANTS names a source file, a piece of its text (which must occur
exactly once) and what replaces it. For every row the script writes the fault,
rebuilds the library, the transports and the test programs incrementally, runs the chosen suites of the test programs
(which load the rebuilt library at run time), and puts the file back. A fault is
caught when a test fails, crashes or hangs; a fault that does not build is
reported apart and counted neither way.

    tools/plant_faults.py --build build-faults            # configures and builds when needed
    tools/plant_faults.py --build build-faults --only 12  # one row, by number

The suites run are the tests defined in SUITES (files under tests/), so that a
fault counts as caught only by the suites whose strength is measured here.
Prefer an unoptimised build without debug information: each row then rebuilds in
seconds. While it runs, a planted fault sits in the source tree: build nothing
else from this tree and commit nothing until it ends. Stop it with SIGTERM or
Ctrl-C; the file is put back either way.
"""
import argparse
import functools
import json
import os
import re
import signal
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

# The suites under measurement: test program, its transport folder, its sources.
SUITES = [
    ("tests/kalvor_tests", "recorder",
     ["tests/test_commands.cpp", "tests/test_session.cpp", "tests/test_device_commands.cpp", "tests/test_preview.cpp",
      "tests/test_colour_buffers.cpp", "tests/test_colour_effects.cpp", "tests/test_dmx.cpp",
      "tests/test_geonet.cpp", "tests/test_timeline.cpp"]),
    ("tests/virtual/kalvor_tests_virtual", "virtual", ["tests/virtual/test_round_trips.cpp"]),
    ("tests/kalvor_tests_hostile", "recorder",
     ["tests/hostile/test_hostile_arguments.cpp", "tests/hostile/test_hostile_answers.cpp",
      "tests/hostile/test_safe_save.cpp"]),
    # the projector engine, the IDN transport, the profile reader, the picture readers
    ("tests/virtual/kalvor_tests_virtual", "virtual",
     ["tests/virtual/test_projector.cpp", "tests/virtual/test_virtual_scanner.cpp"]),
    ("tests/idn/kalvor_tests_idn", "idn", ["tests/idn/test_idn_transport.cpp"]),
    ("tests/kalvor_tests", "recorder",
     ["tests/test_profile.cpp", "tests/test_ilda_import.cpp", "tests/test_las_flx.cpp",
      "tests/test_picture_files.cpp", "tests/test_catalogues.cpp"]),
]

S = "src/core/session.cpp"
D = "src/core/device_commands.cpp"
P = "src/core/preview.cpp"
CB = "src/colour/colour_buffers.cpp"
CE = "src/colour/colour_effects.cpp"
X = "src/colour/dmx.cpp"
G = "src/colour/geonet.cpp"
T = "src/colour/timeline.cpp"
R = "projector/render.cpp"
M = "projector/track_matrix.cpp"
C = "projector/colour.cpp"
V = "projector/commands.cpp"
I = "transports/idn/sender.cpp"
IP = "transports/idn/protocol.cpp"
PR = "src/core/profile.cpp"
IL = "src/pictures/ilda_import.cpp"

# (file, original text, replacement)
MUTANTS = [
    # session, output, rates, parameters
    (S, "send_byte(scanner, Opcode::Signal, load(rec, record::signal));",
        "send_byte(scanner, Opcode::Shutter, load(rec, record::signal));"),
    (S, "buffer < colour_buffer::count; ++buffer)", "buffer < colour_buffer::count - 1; ++buffer)"),
    (S, "  displaygetversion(scanner);\n  send_byte", "  send_byte"),
    (S, "send_opcode(scanner, Opcode::EndSession)", "send_opcode(scanner, Opcode::ClearPictures)"),
    (S, "on == 1 ? header_byte", "on != 0 ? header_byte"),
    (S, "store(rec, record::output, output);", "store(rec, record::output, uint8_t(output != 0));"),
    (S, "s <= kMaxScanner; ++s) switch_output(s, 0, 0)", "s < kMaxScanner; ++s) switch_output(s, 0, 0)"),
    (S, "switch_output(s, header_byte(s, record::signal), 1)", "switch_output(s, 2, 1)"),
    (S, "thousands * 1000u", "thousands * 1024u"),
    (S, "store_le<double>(cmd + 1, picturesPerSecond);", "store_le<float>(cmd + 1, float(picturesPerSecond));"),
    (S, "store_le<uint16_t>(cmd + 7, at_least_one(p6));", "store_le<uint16_t>(cmd + 7, p6);"),
    (S, "store_le<uint16_t>(cmd + 15, p11);", "store_le<uint16_t>(cmd + 15, at_least_one(p11));"),
    (S, "cmd[10] = p8;", "cmd[10] = uint8_t(p8 | 1);"),
    (S, "at += sizeof bytes;", "at += sizeof bytes - 1;"),
    (S, "memcpy(at + 2, v55, 16);", "memcpy(at + 2, v55, 15);"),
    (S, "store_le<uint16_t>(at, v54);", "store_be<uint16_t>(at, v54);"),
    (S, "store<uint16_t>(rec + record::fullPreview.offset, preview::pointCount, 0);",
        "store<uint16_t>(rec + record::vistrel.offset, preview::pointCount, 0);"),
    (S, "send_palette(scanner, buffer, Opcode::ResetPalette);", "send_palette(scanner, buffer, Opcode::Palette);"),
    (S, "value > 50 ? 50 : value", "value > 51 ? 50 : value"),
    (S, "return load_le<uint32_t>(version);", "return load_be<uint32_t>(version);"),
    (S, "load(rec + record::preview.offset, preview::waitValue)", "load(rec + record::vistrel.offset, preview::waitValue)"),
    (S, "send_byte(scanner, Opcode::Shutter, value);", "send_byte(scanner, Opcode::BeamParking, value);"),
    (S, "send_and_store(scanner, Opcode::Signal, record::signal, signal);",
        "send_byte(scanner, Opcode::Signal, signal);"),
    (S, "send_opcode(scanner, Opcode::EnableWait);", "send_opcode(scanner, Opcode::EndSession);"),
    # device commands
    (D, "if constexpr (Length == 2) cmd[1] = static_cast<uint8_t>(scanner);", "if constexpr (Length == 2) cmd[1] = 0;"),
    (D, "Opcode::HwManagerStatus, 99)", "Opcode::HwManagerStatus, 0)"),
    (D, "query<uint8_t, 1>(scanner, Opcode::HwManagerStatus", "query<uint8_t, 2>(scanner, Opcode::HwManagerStatus"),
    (D, "return load_le<T>(answer);", "return T(answer[0]);"),
    (D, "X(Display_Invert_Y, ShowHwManager)", "X(Display_Invert_Y, InvertY)"),
    (D, "X(EnableILDAOutputonce, EnableIldaOutputOnce)", "X(EnableILDAOutputonce, EnableIldaOutput)"),
    (D, "put(bytes[k], answer[k]);", "put(bytes[k], answer[2 - k]);"),
    (D, "{op(Opcode::DeviceSettings), static_cast<uint8_t>(scanner)}", "{op(Opcode::DeviceSettings), 0}"),
    (D, "g_library.vistrelEnabled = static_cast<int8_t>(flag);",
        "g_library.vistrelEnabled = static_cast<int8_t>(flag != 0);"),
    (D, "if (!scanner_record(scanner)) return;\n  g_library.vistrelEnabled", "g_library.vistrelEnabled"),
    (D, "strnlen(name, sizeof cmd - 1)", "strnlen(name, sizeof cmd - 2)"),
    (D, "store_le<uint32_t>(cmd + 1, scanner);", "store_le<uint32_t>(cmd + 1, scanner - 1);"),
    (D, "store_le<uint16_t>(cmd + 2, second);", "store_be<uint16_t>(cmd + 2, second);"),
    (D, "if (n > kUpdateRoom) n = kUpdateRoom;", "if (n >= kUpdateRoom) n = kUpdateRoom - 1;"),
    (D, "uint32_t n = static_cast<uint16_t>(in.length());", "uint32_t n = static_cast<uint32_t>(in.length());"),
    (D, "store_le<uint32_t>(header + 257, size);", "store_le<uint32_t>(header + 257, size - remainder);"),
    (D, "full_blocks + (remainder ? 1 : 0)", "full_blocks + 1"),
    (D, "memset(block + 2 + got, 0, kBlockData - got);", "(void)got;"),
    (D, "memcpy(header + 1 + name, parts.extension, strnlen(parts.extension, 255 - name));", ";"),
    (D, "constexpr uint32_t kBlockData = 1024;", "constexpr uint32_t kBlockData = 1000;"),
    # preview
    (P, "put(value, load(rec + area.offset, preview::waitValue));",
        "put(value, uint32_t(load(rec + area.offset, preview::pointCount)));"),
    (P, "sum > 255.0 ? 255 : trunc_low8(sum)", "sum > 255.0 ? 255 : (sum < 0 ? 0 : trunc_low8(sum))"),
    (P, "sum > 255.0 ? 255 : trunc_low8(sum)", "sum > 255.0 ? 255 : trunc_low8(sum + 0.5)"),
    (P, "index >= preview::maxPoints", "index > preview::maxPoints"),
    (P, "put(status, channels[kChannels]);", "put(status, channels[kChannels - 1]);"),
    (P, "record::colourMatrix.at(6 * row + n)) * channels[n]",
        "record::colourMatrix.at(6 * row + (n + 1) % 6)) * channels[n]"),
    (P, "n < kChannels; ++n) store(rec", "n < kChannels - 1; ++n) store(rec"),
    (P, "X(R, 0) X(G, 1) X(B, 2)", "X(R, 0) X(G, 2) X(B, 1)"),
    (P, "X(beamshowflag, record::beamShowFlag)", "X(beamshowflag, record::graficFlag)"),
    (P, "X(fullpreviewbuffer, RefreshFullPreview, record::fullPreview, int32_t)",
        "X(fullpreviewbuffer, RefreshFullPreview, record::vistrel, int32_t)"),
    (P, "X(vistrelbuffer, RefreshVistrel,", "X(vistrelbuffer, RefreshFullPreview,"),
    # colour buffers
    (CB, "buffer >= colour_buffer::count) return nullptr;", "buffer > colour_buffer::count) return nullptr;"),
    (CB, "send_area(scanner, record::paletteCommand, opcode, colour_buffer::entries);",
         "send_area(scanner, record::paletteCommand, opcode, colour_buffer::entries - 1);"),
    (CB, "index >= colour_buffer::entries) return;\n  memcpy", "index > colour_buffer::entries) return;\n  memcpy"),
    (CB, "index >= colour_buffer::entries) return;\n  for", "index > colour_buffer::entries) return;\n  for"),
    (CB, "{255, 0, 255, 0, 255, 255, 255, 127, 127}", "{255, 0, 255, 0, 255, 255, 255, 127, 128}"),
    (CB, "{0, 255, 0, 0, 0, 0, 0, 255, 0}", "{0, 255, 0, 0, 0, 0, 0, 254, 0}"),
    (CB, "for (uint32_t i = 0; i < 16; ++i)", "for (uint32_t i = 0; i < 15; ++i)"),
    (CB, "const double f = std::fmod(x, 1.0);", "const double f = x - std::floor(x);"),
    (CB, "wrap_index(i + s + 1, n)", "wrap_index(i + s - 1, n)"),
    (CB, "i > kLastEntry ? kLastEntry : i", "i > kLastEntry ? kLastEntry - 1 : i"),
    (CB, "return r < 0 ? r + n : r;", "return r < 0 ? -r : r;"),
    (CB, "(static_cast<double>(b) - a) * f)", "(static_cast<double>(b) - a) * f + 0.5)"),
    (CB, "k < kChannels * (last + 1)", "k < kChannels * last"),
    (CB, "dst[k] = blend(a[k], b[k], t)", "dst[k] = blend(b[k], a[k], t)"),
    (CB, "memcpy(channels, bytes + kRgb, kChannels);", "memcpy(channels, bytes, kChannels);"),
    (CB, "memset(channels + kRgb, 0, kChannels - kRgb);", ";"),
    (CB, "  send_palette(scanner, buffer, Opcode::Palette);\n}\n\nbool has_pal_extension",
         "}\n\nbool has_pal_extension"),
    (CB, "if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');", ";"),
    (CB, "out.write(buf + colour_buffer::rgbOffset + kRgb * i, kRgb);\n"
         "    out.write(buf + colour_buffer::channelsOffset + kChannels * i, kChannels);",
         "out.write(buf + colour_buffer::channelsOffset + kChannels * i, kChannels);\n"
         "    out.write(buf + colour_buffer::rgbOffset + kRgb * i, kRgb);"),
    (CB, "index >= true_colour::entries) return;", "index > true_colour::entries) return;"),
    (CB, "Opcode::TrueColour, value);", "Opcode::TrueColour, uint8_t(value & 0x0F));"),
    (CB, "limit(scales[k], 0.0, 1.0)", "limit(scales[k], 0.0, 2.0)"),
    (CB, "memset(buf, value, colour_buffer::size);", "memset(buf, value, colour_buffer::size - 3);"),
    # colour effects
    (CE, "set_track(scanner, t, track::intensity, limit(value, 0.0, 1.0));",
         "set_track(scanner, t, track::intensity, limit(value, 0.0, 2.0));"),
    (CE, "X(TDisplayIntensity, MultiplyLimited<1>, intensity)", "X(TDisplayIntensity, ReplaceLimited<1>, intensity)"),
    (CE, "X(DisplayHue, MultiplyLimited<2>, hue)", "X(DisplayHue, MultiplyLimited<1>, hue)"),
    (CE, "X(DisplayHotSpot, ReplaceLimited<3>, hotSpot)", "X(DisplayHotSpot, MultiplyLimited<3>, hotSpot)"),
    (CE, "X(DisplayRotB, MultiplyLimited<1>, rotB)", "X(DisplayRotB, MultiplyLimited<1>, rotG)"),
    (CE, "{track::gByte1, track::gByte2}", "{track::gByte1, track::rByte2}"),
    (CE, "limit(level, 0.0, 1.0) * 15.0", "limit(level, 0.0, 1.0) * 16.0"),
    (CE, "limit(level, 0.0, 1.0) * 15.0", "level * 15.0"),
    (CE, "std::min<uint8_t>(b4, 15)", "b4"),
    (CE, "std::max<uint16_t>(w2, 100)", "w2"),
    (CE, "store_le<uint16_t>(cmd + 5, w3);", "store_le<uint16_t>(cmd + 5, uint16_t(w3 & 0xFF));"),
    (CE, "uint8_t cmd[7] = {op(Opcode::Equalize)};", "uint8_t cmd[7] = {op(Opcode::Sparkle)};"),
    (CE, "track::sparkling2, second", "track::sparkling2, uint8_t(second + first)"),
    # DMX
    (X, "if (c == 0) c = 1;", "if (c == 0) c = 2;"),
    (X, "if (c > dmx::channels) c = dmx::channels;", "if (c > dmx::channels) c = 1;"),
    (X, "uint32_t c = channel & 0xFFFFu;", "uint32_t c = channel;"),
    (X, "mapped_channel(rec, record::dmxInMap, channel)", "mapped_channel(rec, record::dmxOutMap, channel)"),
    (X, "k < dmx::channels; ++k", "k < dmx::channels - 1; ++k"),
    (X, "copy_map(rec, record::dmxInMap, inTable);", "copy_map(rec, record::dmxInMap, inTable ? outTable : nullptr);"),
    # geometry net
    (G, "a >= geonet::gridSize || b >= geonet::gridSize", "a >= geonet::gridSize || b > geonet::gridSize"),
    (G, "b * 0.125 * kField, 0.0)", "b * 0.125 * kField, b * 0.125 * kField)"),
    (G, "store_point(p, a * 0.125 * kField, b * 0.125 * kField", "store_point(p, b * 0.125 * kField, a * 0.125 * kField"),
    (G, "store_point(p, x * kField, y * kField, z * kField)", "store_point(p, x * kField, y * kField, z)"),
    (G, "k < 5; ++k", "k < 4; ++k"),
    (G, "geonet::gridSize * a + b", "geonet::gridSize * b + a"),
    # timeline, UGC, hierarchy
    (T, "if (e > end) return 0;", "if (e >= end) return 0;"),
    (T, "if (d <= 0) return 0;", "if (d < 0) return 0;"),
    (T, "if (e < start) return 0;", "if (e < static_cast<uint32_t>(start)) return 0;"),
    (T, "double t = (e - start) / d;", "double t = e / d;"),
    (T, "k < 8 ? u[k] * 65535.0 : u[k]", "k < 7 ? u[k] * 65535.0 : u[k]"),
    (T, "cmd[81] = b;", "cmd[80] = b;"),
    (T, "steps < kSlots; ++steps", "steps < kSlots - 1; ++steps"),
    (T, "inherit(child, slot_record(live,", "inherit(child, slot_record(copy,"),
    (T, "store(child, f, load(child, f) * load(ancestor, f))", "store(child, f, load(child, f) + load(ancestor, f))"),
    (T, "hierarchy[i] = -1;", "hierarchy[i] = 8;"),
    (T, "p < static_cast<int32_t>(kSlots)", "p <= static_cast<int32_t>(kSlots)"),
    # bounds and saves the hardening suites hold the library to
    ("src/core/scanner_table.cpp", "scanner <= kMaxScanner ? g_table[scanner]",
     "scanner <= kMaxScanner ? g_table[scanner ? scanner : 1]"),
    ("src/core/file_io.cpp", "n >= sizeof target_ || platform::is_directory(path)", "n >= sizeof target_"),
    ("src/core/file_io.cpp", "    platform::close(file_);\n    platform::remove_file(temp_);",
     "    platform::close(file_);"),
    ("src/pictures/picture_points.h", "return n < kMaxPoints ? n : kMaxPoints;", "return n <= 65535 ? n : kMaxPoints;"),
    ("src/pictures/picture_memory.cpp", "index < kMaxPoints ? point_at(upload_area(rec), index)",
     "index <= kMaxPoints ? point_at(upload_area(rec), index)"),
    # projector engine: morph, scan limits, rounding, clip box, travel points, prism
    (R, "Source m = amount < 0.5 ? p : q;", "Source m = amount <= 0.5 ? p : q;"),
    (R, "pts.count = amount < 0.5 ? pts.na : pts.nb;", "pts.count = pts.na;"),
    (R, "first = at(load(t, track::scanLimitLow), 0);", "first = at(load(t, track::scanLimitHigh), 0);"),
    (R, "static_cast<int64_t>(v + 2147483648.5)", "static_cast<int64_t>(v + 2147483648.0)"),
    (R, "edge(std::min(x1, x2)), edge(std::max(x1, x2))", "edge(x1), edge(x2)"),
    (R, "if (first && !p.blanked()) {", "if (first) {"),
    (R, "f.status = p.status | ((outside | outsideBefore) ? 0x40 : 0);", "f.status = p.status | (outside ? 0x40 : 0);"),
    (R, "if (!base.finite()) return;", ";"),
    (R, "k <= copies; ++k)", "k < copies; ++k)"),
    (R, "static_cast<uint8_t>(load(p, point::repeatByte) & 15)", "load(p, point::repeatByte)"),
    # projector engine: geometry
    (M, "case 1: s = cs, c = -sn; break;", "case 1: s = cs, c = sn; break;"),
    (M, "{{2, 1, 0}, {0, 2, 1}", "{{0, 1, 2}, {0, 2, 1}"),
    (M, "kOrders[code < 6 ? code : 3]", "kOrders[code < 6 ? code : 0]"),
    (M, "row[3] = row[0] * before[0] + row[1] * before[1] + row[2] * before[2] + after[i];",
        "row[3] = before[i] + after[i];"),
    (M, "m.m[3] += dx, m.m[7] += dy;", "m.m[3] += dx, m.m[7] -= dy;"),
    (M, "std::fabs(double(z))", "double(z)"),
    (M, "load(t, track::prismCount), 24)", "load(t, track::prismCount), 2)"),
    # projector engine: colour, device answers, geometry net
    (C, "c.hueTurn = std::isfinite(hue) ? (hue - 1) / 2 : 0;", "c.hueTurn = std::isfinite(hue) ? (hue - 1) : 0;"),
    (C, "held(load(t, track::intensity), 0, 1, 0)", "held(load(t, track::intensity), 0, 1, 1)"),
    (C, "(status & 63) + indexShift + 64) % 64", "(status & 63) + 64) % 64"),
    (C, "(cueFar - z) / (cueFar - cueNear)", "(z - cueNear) / (cueFar - cueNear)"),
    (C, "c[j] >= 255 ? 255 : c[j] > 0 ? c[j] : 0", "c[j] >= 255 ? 255 : c[j] > 0 ? c[j] + 0.5 : 0"),
    (V, "(0xEDB88320u & (0u - (crc & 1u)))", "(0x04C11DB7u & (0u - (crc & 1u)))"),
    (V, "pictures.rbegin()->first + 1u, 65535u)", "pictures.rbegin()->first, 65535u)"),
    (V, "uint64_t{frame.output_points()} * 1000u / pointRate", "uint64_t{frame.count} * 1000u / pointRate"),
    ("projector/geonet.cpp", "int a = g >= 7 ? 7 : g >= 1", "int a = g >= 8 ? 8 : g >= 1"),
    # IDN transport
    (I, "hold16(-1 - int64_t{p.y})", "hold16(-int64_t{p.y})"),
    (I, "dark ? 0 : 255);", "255);"),
    (I, "r <= p.repeat && n < kMaxSamples", "r < 1 && n < kMaxSamples"),
    (I, "(service - 1) & 63 : 0)", "service & 63 : 0)"),
    (I, "t = lastTimestamp_ + 1;", "t = lastTimestamp_;"),
    (I, "if (resend_ && sampleCount_) {", "if (false) {"),
    (I, "++counters_.keepalives;", ";"),
    (I, "sampleCount_ * uint64_t{1000000} / rate", "sampleCount_ * uint64_t{1000} / rate"),
    (IP, "k + 1 == fragments, kChunkSequel, timestamp + k);", "false, kChunkSequel, timestamp + k);"),
    (IP, "return 1 + (samples - kFirstSamples + kSequelSamples - 1) / kSequelSamples;",
         "return 1 + (samples - kFirstSamples) / kSequelSamples;"),
    (IP, "std::min(duration, kMaxDuration)", "duration"),
    # profile reader
    (PR, "\"Signal\", 2)", "\"Signal\", 0)"),
    (PR, "n == row ? \"1.0\" : \"0.0\"", "n == 0 ? \"1.0\" : \"0.0\""),
    (PR, "if (!master[0] || !slave[0]) return 0;", "if (!master[0] && !slave[0]) return 0;"),
    (PR, "if (n >= field.size) return;", "if (n > field.size) return;"),
    (PR, "if (text < end && *text == '-') return 0.0;", ";"),
    (PR, "return exponent > 0 ? HUGE_VAL : 0.0;", "return exponent >= 0 ? HUGE_VAL : 0.0;"),
    (PR, "if (!rec || !name) return;\n  size_t n", "if (!rec) return;\n  size_t n"),
    # picture readers
    (IL, "if (repeat < 15) ++repeat;", "++repeat;"),
    (IL, "case 4: return read_frame<kTrueColour3D, fold>;", "case 4: return read_frame<kTrueColour2D, fold>;"),
    (IL, "if (i < colour_buffer::entries) set_colour_entry", "if (i <= colour_buffer::entries) set_colour_entry"),
    (IL, "if (before && memcmp(before, r, f.size) == 0) return true;", ";"),
    ("src/pictures/las_flx.cpp", "status_byte(r[7], r[5] & 1, 1)", "status_byte(r[7], 0, 1)"),
]


@functools.lru_cache(maxsize=None)
def test_names(path):
    """gtest filter patterns for the tests defined in one source file (read once per run)."""
    names = []
    if not os.path.exists(path):
        return ()
    with open(path) as f:
        for m in re.finditer(r"^\s*TEST(_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)", f.read(), re.M):
            if m.group(1) == "_P":
                names.append(f"*/{m.group(2)}.{m.group(3)}/*")
            else:
                names.append(f"{m.group(2)}.{m.group(3)}")
    return tuple(names)


def run_suites(build, timeout, who=None):
    """True when every chosen test passes; a crash or hang counts as a failure.

    With `who` (a list), every test runs and the names of the failing tests
    (or of the program that crashed or hung) are added to it."""
    passed = True
    for program, transport, sources in SUITES:
        names = [n for src in sources for n in test_names(os.path.join(ROOT, src))]
        env = dict(os.environ, LD_LIBRARY_PATH=os.path.join(build, "transports", transport))
        report = os.path.join(build, "plant_faults.json")
        command = [os.path.join(build, program), "--gtest_filter=" + ":".join(names), "--gtest_brief=1"]
        command += ["--gtest_output=json:" + report] if who is not None else ["--gtest_fail_fast=1"]
        if os.path.exists(report):
            os.remove(report)  # a program that crashes writes none: an old one must not stand in
        try:
            r = subprocess.run(command, env=env, timeout=timeout, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, cwd=build)
        except subprocess.TimeoutExpired:
            r = None
        if r is not None and r.returncode == 0:
            continue
        passed = False
        if who is None:
            return False
        try:
            with open(report) as f:
                for suite in json.load(f)["testsuites"]:
                    who += [f"{suite['name']}.{t['name']}" for t in suite["testsuite"] if t.get("failures")]
        except (OSError, ValueError, KeyError):
            who.append(os.path.basename(program) + " (crashed or hung)")
    return passed


def build(build_dir, targets):
    r = subprocess.run(["cmake", "--build", build_dir, "-j2", "--target", *targets],
                       stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return r.returncode == 0, r.stdout


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--build", default=os.path.join(ROOT, "build-faults"))
    ap.add_argument("--only", type=int, action="append", help="row number (1-based); may repeat")
    ap.add_argument("--timeout", type=int, default=120)
    ap.add_argument("--who", action="store_true", help="run every test and name the ones that catch each fault")
    args = ap.parse_args()
    # A stop request (also in the background, where SIGINT is ignored) ends the
    # run through the `finally` below, which puts the planted file back.
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    build_dir = os.path.abspath(args.build)
    if not os.path.exists(os.path.join(build_dir, "build.ninja")):
        subprocess.run(["cmake", "-S", ROOT, "-B", build_dir, "-G", "Ninja", "-DCMAKE_BUILD_TYPE="], check=True,
                       stdout=subprocess.DEVNULL)
    programs = list(dict.fromkeys(os.path.basename(p) for p, _, _ in SUITES))
    ok, log = build(build_dir, ["kalvor", *programs])
    if not ok or not run_suites(build_dir, args.timeout):
        sys.exit("the tests must build and pass before faults are planted:\n" + log[-3000:])

    rows = args.only or range(1, len(MUTANTS) + 1)
    caught, missed, broken, stale = [], [], [], []
    start = time.time()
    for n in rows:
        path, original, replacement = MUTANTS[n - 1]
        full = os.path.join(ROOT, path)
        with open(full) as f:
            text = f.read()
        if text.count(original) != 1:
            stale.append(n)
            print(f"{n:3} STALE   {path}: text found {text.count(original)} times", flush=True)
            continue
        try:
            with open(full, "w") as f:
                f.write(text.replace(original, replacement))
            built, _ = build(build_dir, ["kalvor", *programs])
            if not built:
                broken.append(n)
                verdict = "NO BUILD"
            # A fault counts as caught only when the suites fail twice: the
            # loopback streaming tests depend on timing, and on a loaded
            # machine one run in many fails without any fault.
            elif run_suites(build_dir, args.timeout, who := [] if args.who else None) or \
                    run_suites(build_dir, args.timeout, [] if args.who else None):
                missed.append(n)
                verdict = "MISSED"
            else:
                caught.append(n)
                verdict = "caught"
        finally:
            with open(full, "w") as f:
                f.write(text)
        print(f"{n:3} {verdict:8} {path}: {original.splitlines()[0].strip()[:60]}", flush=True)
        if args.who and verdict == "caught":
            print("      by " + " ".join(who), flush=True)
    build(build_dir, ["kalvor", *programs])
    print(f"\n{len(caught)} caught, {len(missed)} missed of {len(caught) + len(missed)} faults "
          f"({len(broken)} did not build, {len(stale)} stale) in {time.time() - start:.0f} s")
    if missed:
        print("missed: " + " ".join(map(str, missed)))


if __name__ == "__main__":
    main()
