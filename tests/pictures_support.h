// Helpers shared by the picture tests: point records, big-endian file bytes,
// and the pictures found among the recorded commands.
#pragma once

#include "support/harness.h"

namespace kt {

// An 11-byte picture point.
inline Bytes pt(int16_t x, int16_t y, int16_t z, uint8_t status, uint8_t repeat, uint8_t r, uint8_t g, uint8_t b) {
  return concat({le_bytes(x), le_bytes(y), le_bytes(z), Bytes{status, repeat, r, g, b}});
}

inline Bytes be16(uint16_t v) { return Bytes{static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)}; }
inline Bytes be32(uint32_t v) { return concat({be16(static_cast<uint16_t>(v >> 16)), be16(static_cast<uint16_t>(v))}); }

// The first n bytes of b: a file cut short.
inline Bytes head(const Bytes& b, size_t n) { return Bytes(b.begin(), b.begin() + static_cast<long>(n)); }

// A 32-byte ILDA section header of a format and record count.
inline Bytes ilda_header(uint8_t format, uint16_t records) {
  Bytes h = {'I', 'L', 'D', 'A', 0, 0, 0, format};
  h.resize(24, ' ');
  h = concat({h, be16(records), Bytes(6, 0)});
  return h;
}

// Sets entries 0.. of colour buffer 0 to RGB colours (channels r, g, b, 0,
// 0, 0) through an ILDA palette section; sends nothing.
inline void set_palette(uint32_t scanner, const std::vector<Bytes>& colours) {
  Bytes file = ilda_header(2, static_cast<uint16_t>(colours.size()));
  for (const Bytes& c : colours) file = concat({file, c});
  std::string path = temp_path("palette.ild");
  write_file(path, file);
  displayimportilda(scanner, path.c_str(), 0);
}

// A picture command as sent: number, count and the point bytes.
struct Picture {
  uint16_t number = 0;
  uint16_t count = 0;
  Bytes points;
  Bytes point(size_t i) const { return Bytes(points.begin() + 11 * i, points.begin() + 11 * (i + 1)); }
};

// Every picture command among the commands recorded so far.
inline std::vector<Picture> sent_pictures(Recorder& rec) {
  std::vector<Picture> out;
  for (const Bytes& b : rec.bytes()) {
    if (b.size() < 5 || b[0] != 0x00) continue;
    Picture p{le<uint16_t>(b, 1), le<uint16_t>(b, 3), Bytes(b.begin() + 5, b.end())};
    EXPECT_EQ(p.points.size(), 11u * p.count) << "picture " << p.number;
    out.push_back(p);
  }
  return out;
}

// A reply of the picture query holding these points.
inline Bytes picture_reply(const std::vector<Bytes>& points) {
  Bytes r = concat({Bytes{0, 0, 0}, le_bytes(static_cast<uint16_t>(points.size()))});
  for (const Bytes& p : points) r = concat({r, p});
  return r;
}

// The blanked centre point that stands in for points a file does not hold.
inline Bytes missing_point() { return pt(0, 0, 0, 0xC0, 0, 0, 0, 0); }

}  // namespace kt
