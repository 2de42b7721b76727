// Colour buffers and palettes: the eight colour buffers of a scanner (64
// six-channel entries for the projector, 64 RGB entries for the host), the
// palette command, rotation and cross-fade, palette and RGB files, the
// true-colour table and the colour-scale command.
#include "colour/colour_buffers.h"

#include <array>
#include <cmath>
#include <cstring>

#include "core/convert.h"
#include "core/file_io.h"
#include "core/library.h"
#include "core/short_commands.h"
#include "kalvor/kalvor.h"

using namespace kalvor;

namespace kalvor {

uint8_t* colour_buffer_at(uint8_t* rec, uint32_t buffer) {
  if (!rec || buffer >= colour_buffer::count) return nullptr;
  return rec + record::colourBuffers.offset + colour_buffer::size * buffer;
}

void send_palette(uint32_t scanner, uint32_t buffer, Opcode opcode) {
  uint8_t* rec = scanner_record(scanner);
  const uint8_t* buf = colour_buffer_at(rec, buffer);
  if (!buf) return;
  memcpy(rec + record::paletteCommand.offset + palette_command::entriesOffset,
         buf + colour_buffer::channelsOffset, kChannels * colour_buffer::entries);
  send_area(scanner, record::paletteCommand, opcode, colour_buffer::entries);
}

}  // namespace kalvor

namespace {

constexpr uint32_t kRgb = 3;
constexpr int32_t kLastEntry = colour_buffer::entries - 1;

// The three tables of 64 entries an entry export can address, or null.
uint8_t* channel_table(uint32_t scanner, uint32_t buffer) {
  uint8_t* buf = colour_buffer_at(scanner_record(scanner), buffer);
  return buf ? buf + colour_buffer::channelsOffset : nullptr;
}
uint8_t* rgb_table(uint32_t scanner, uint32_t buffer) {
  uint8_t* buf = colour_buffer_at(scanner_record(scanner), buffer);
  return buf ? buf + colour_buffer::rgbOffset : nullptr;
}
uint8_t* palette_table(uint32_t scanner) {
  uint8_t* rec = scanner_record(scanner);
  return rec ? rec + record::paletteCommand.offset + palette_command::entriesOffset : nullptr;
}

// Writes entry `index` of a table of W-byte entries; an index of 64 or more
// is ignored.
template <size_t W>
void set_entry(uint8_t* table, uint32_t index, const std::array<uint8_t, W>& bytes) {
  if (!table || index >= colour_buffer::entries) return;
  memcpy(table + W * index, bytes.data(), W);
}

// Copies entry `index` out; null outs are skipped, and an index of 64 or more
// leaves every out untouched.
template <size_t W>
void get_entry(const uint8_t* table, uint32_t index, const std::array<uint8_t*, W>& outs) {
  if (!table || index >= colour_buffer::entries) return;
  for (size_t k = 0; k < W; ++k)
    if (outs[k]) *outs[k] = table[W * index + k];
}

// Entries 0 to 15 of displaydefaultcolorbuffer: c0..c5, then r, g, b.
constexpr uint8_t kDefaultEntries[16][9] = {
    {255, 255, 255, 255, 255, 255, 255, 255, 255}, {255, 127, 127, 255, 255, 255, 255, 255, 255},
    {255, 0, 255, 0, 255, 255, 255, 127, 127},     {255, 0, 0, 0, 0, 0, 255, 0, 0},
    {255, 127, 0, 0, 0, 0, 255, 127, 0},           {255, 255, 0, 0, 0, 0, 255, 255, 0},
    {127, 255, 0, 0, 0, 0, 127, 255, 0},           {0, 255, 0, 0, 0, 0, 0, 255, 0},
    {0, 255, 127, 0, 0, 0, 0, 255, 127},           {127, 255, 127, 0, 0, 0, 127, 255, 127},
    {0, 255, 255, 0, 0, 0, 0, 255, 255},           {127, 127, 255, 0, 0, 0, 127, 127, 255},
    {0, 127, 255, 0, 0, 0, 0, 127, 255},           {0, 0, 255, 0, 255, 0, 0, 0, 255},
    {127, 0, 255, 0, 0, 255, 127, 0, 255},         {255, 0, 255, 255, 0, 255, 255, 0, 255}};

int32_t limit_entry(int32_t i) { return i < 0 ? 0 : (i > kLastEntry ? kLastEntry : i); }

// Remainder of v divided by n in 0..n-1, for any sign of v.
int64_t wrap_index(int64_t v, int64_t n) {
  int64_t r = v % n;
  return r < 0 ? r + n : r;
}

// a + (b - a) * f, truncated toward zero, low 8 bits: the blend of rotation
// and cross-fade.
uint8_t blend(uint8_t a, uint8_t b, double f) {
  return trunc_low8(a + (static_cast<double>(b) - a) * f);
}

// Reads a palette (9-byte records: r, g, b, c0..c5) or RGB file (3-byte
// records: r, g, b) into a buffer and sends it. Records past the end of a
// short file, and a last partial record, leave their entries unchanged.
void load_colour_file(uint32_t scanner, uint8_t buffer, const char* path, uint32_t record_size) {
  uint8_t* buf = colour_buffer_at(scanner_record(scanner), buffer);
  if (!buf) return;
  FileReader in(path);
  if (!in.is_open()) return;
  uint8_t bytes[kRgb + kChannels] = {};  // zeros stand for c3..c5 of RGB records
  for (uint32_t i = 0; i < colour_buffer::entries && in.read_exact(bytes, record_size); ++i) {
    memcpy(buf + colour_buffer::rgbOffset + kRgb * i, bytes, kRgb);
    uint8_t* channels = buf + colour_buffer::channelsOffset + kChannels * i;
    if (record_size == kRgb) {
      memcpy(channels, bytes, kRgb);
      memset(channels + kRgb, 0, kChannels - kRgb);
    } else {
      memcpy(channels, bytes + kRgb, kChannels);
    }
  }
  send_palette(scanner, buffer, Opcode::Palette);
}

bool has_pal_extension(const char* path) {
  platform::PathParts parts;
  platform::split_path(path, &parts);
  const char* ext = parts.extension;
  static const char kPal[] = ".pal";
  for (size_t i = 0; i < sizeof kPal; ++i) {
    char c = ext[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != kPal[i]) return false;
  }
  return true;
}

}  // namespace

KALVOR_API void KALVOR_CALL displayinitcolorbuffer(uint32_t scanner, uint8_t buffer, uint8_t value) {
  if (uint8_t* buf = colour_buffer_at(scanner_record(scanner), buffer)) memset(buf, value, colour_buffer::size);
}

KALVOR_API void KALVOR_CALL displaydefaultcolorbuffer(uint32_t scanner, uint8_t buffer) {
  uint8_t* buf = colour_buffer_at(scanner_record(scanner), buffer);
  if (!buf) return;
  for (uint32_t i = 0; i < 16; ++i) {
    memcpy(buf + colour_buffer::channelsOffset + kChannels * i, kDefaultEntries[i], kChannels);
    memcpy(buf + colour_buffer::rgbOffset + kRgb * i, kDefaultEntries[i] + kChannels, kRgb);
  }
}

KALVOR_API void KALVOR_CALL displaysetcolorbuffer(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t c0,
                                                  uint8_t c1, uint8_t c2, uint8_t c3, uint8_t c4, uint8_t c5) {
  set_entry<kChannels>(channel_table(scanner, buffer), index, {c0, c1, c2, c3, c4, c5});
}

KALVOR_API void KALVOR_CALL displaygetcolorbuffer(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t* c0,
                                                  uint8_t* c1, uint8_t* c2, uint8_t* c3, uint8_t* c4, uint8_t* c5) {
  get_entry<kChannels>(channel_table(scanner, buffer), index, {c0, c1, c2, c3, c4, c5});
}

KALVOR_API void KALVOR_CALL displaysetcolorbufferrgb(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t r,
                                                     uint8_t g, uint8_t b) {
  set_entry<kRgb>(rgb_table(scanner, buffer), index, {r, g, b});
}

KALVOR_API void KALVOR_CALL displaygetcolorbufferrgb(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t* r,
                                                     uint8_t* g, uint8_t* b) {
  get_entry<kRgb>(rgb_table(scanner, buffer), index, {r, g, b});
}

KALVOR_API void KALVOR_CALL displaysetpal(uint32_t scanner, uint8_t index, uint8_t c0, uint8_t c1, uint8_t c2,
                                          uint8_t c3, uint8_t c4, uint8_t c5) {
  set_entry<kChannels>(palette_table(scanner), index, {c0, c1, c2, c3, c4, c5});
}

KALVOR_API void KALVOR_CALL displaygetpal(uint32_t scanner, uint8_t index, uint8_t* c0, uint8_t* c1, uint8_t* c2,
                                          uint8_t* c3, uint8_t* c4, uint8_t* c5) {
  get_entry<kChannels>(palette_table(scanner), index, {c0, c1, c2, c3, c4, c5});
}

KALVOR_API void KALVOR_CALL displaycolorrotation(uint32_t scanner, double phase, uint32_t source,
                                                 uint32_t destination, int32_t first, int32_t last) {
  uint8_t* rec = scanner_record(scanner);
  const uint8_t* src = colour_buffer_at(rec, source);
  uint8_t* dst = colour_buffer_at(rec, destination);
  if (!src || !dst) return;
  first = limit_entry(first);
  last = limit_entry(last);
  if (first > last) return;
  const int64_t n = last - first + 1;
  const double x = static_cast<double>(n) * phase;
  const int64_t s = trunc_to_i32(x);
  const double f = std::fmod(x, 1.0);
  // src and dst may be the same buffer: an entry written earlier in this loop
  // is then read with its new value.
  for (int64_t i = first; i <= last; ++i) {
    const uint8_t* a = src + kChannels * wrap_index(i + s, n);
    const uint8_t* b = src + kChannels * wrap_index(i + s + 1, n);
    for (uint32_t j = 0; j < kChannels; ++j) dst[kChannels * i + j] = blend(a[j], b[j], f);
  }
}

KALVOR_API void KALVOR_CALL displaycolorcrossfade(uint32_t scanner, double t, uint8_t from, uint8_t to,
                                                  uint8_t destination, int32_t first, int32_t last) {
  uint8_t* rec = scanner_record(scanner);
  const uint8_t* a = colour_buffer_at(rec, from);
  const uint8_t* b = colour_buffer_at(rec, to);
  uint8_t* dst = colour_buffer_at(rec, destination);
  if (!a || !b || !dst) return;
  first = limit_entry(first);
  last = limit_entry(last);
  if (first > last) return;
  // Each byte reads only its own position, so dst may be either source.
  for (uint32_t k = kChannels * first; k < kChannels * (last + 1); ++k) dst[k] = blend(a[k], b[k], t);
}

KALVOR_API void KALVOR_CALL displayupdatepal(uint32_t scanner, uint8_t buffer) {
  send_palette(scanner, buffer, Opcode::Palette);
}

KALVOR_API void KALVOR_CALL displayloadpal(uint32_t scanner, uint8_t buffer, const char* file) {
  if (has_pal_extension(file))
    load_colour_file(scanner, buffer, file, kRgb + kChannels);
  else
    displayloadRGB(scanner, buffer, file);
}

KALVOR_API void KALVOR_CALL displayloadRGB(uint32_t scanner, uint8_t buffer, const char* file) {
  load_colour_file(scanner, buffer, file, kRgb);
}

KALVOR_API void KALVOR_CALL displaysavepal(uint32_t scanner, uint8_t buffer, const char* file) {
  const uint8_t* buf = colour_buffer_at(scanner_record(scanner), buffer);
  if (!buf) return;
  FileWriter out(file);
  if (!out.is_open()) return;
  for (uint32_t i = 0; i < colour_buffer::entries; ++i) {
    out.write(buf + colour_buffer::rgbOffset + kRgb * i, kRgb);
    out.write(buf + colour_buffer::channelsOffset + kChannels * i, kChannels);
  }
  out.commit();
}

KALVOR_API void KALVOR_CALL displaysettruecolor(uint32_t scanner, uint32_t index, uint8_t v1, uint8_t v2,
                                                uint8_t v3, uint8_t v4, uint8_t v5, uint8_t v6, uint8_t v7,
                                                uint8_t v8, uint8_t v9) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec || index >= true_colour::entries) return;
  const uint8_t entry[true_colour::entrySize] = {v1, v2, v3, v4, v5, v6, v7, v8, v9};
  memcpy(rec + record::trueColourTable.offset + true_colour::entriesOffset + true_colour::entrySize * index,
         entry, sizeof entry);
}

KALVOR_API void KALVOR_CALL displayupdatetruecolor(uint32_t scanner, uint8_t value) {
  send_area(scanner, record::trueColourTable, Opcode::TrueColour, value);
}

KALVOR_API void KALVOR_CALL displaycscale(uint32_t scanner, double s1, double s2, double s3, double s4,
                                          double s5, double s6) {
  const double scales[6] = {s1, s2, s3, s4, s5, s6};
  uint8_t cmd[1 + sizeof scales] = {op(Opcode::ColourScale)};
  for (uint32_t k = 0; k < 6; ++k) store_le<double>(cmd + 1 + 8 * k, limit(scales[k], 0.0, 1.0));
  send(scanner, cmd);
}
