// Picture tests: point records, file bytes and the pictures sent.
#pragma once

#include "support/harness.h"

namespace kt {

inline Bytes pt(int16_t x, int16_t y, int16_t z, uint8_t status, uint8_t repeat, uint8_t r, uint8_t g, uint8_t b) {
  return concat({le_bytes(x), le_bytes(y), le_bytes(z), Bytes{status, repeat, r, g, b}});
}
inline Bytes white(int16_t x, int16_t y, int16_t z = 0, uint8_t status = 0x80, uint8_t repeat = 0) {
  return pt(x, y, z, status, repeat, 255, 255, 255);
}
// Stands in for each point a file announces but does not hold.
inline const Bytes kMissing = pt(0, 0, 0, 0xC0, 0, 0, 0, 0);

inline Bytes be16(uint16_t v) { return Bytes{static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)}; }
inline Bytes be32(uint32_t v) { return concat({be16(static_cast<uint16_t>(v >> 16)), be16(static_cast<uint16_t>(v))}); }
inline Bytes head(const Bytes& b, size_t n) { return Bytes(b.begin(), b.begin() + static_cast<long>(n)); }
inline Bytes times(int n, const Bytes& b) {
  Bytes out;
  for (int i = 0; i < n; ++i) out.insert(out.end(), b.begin(), b.end());
  return out;
}

inline Bytes ilda_header(uint8_t format, uint16_t records) {
  return concat({Bytes{'I', 'L', 'D', 'A', 0, 0, 0, format}, Bytes(16, ' '), be16(records), Bytes(6, 0)});
}
// Fills entries 0.. of colour buffer 0 from RGB bytes; sends nothing.
inline void set_palette(uint32_t scanner, const Bytes& rgb) {
  std::string path = temp_path("palette.ild");
  write_file(path, concat({ilda_header(2, static_cast<uint16_t>(rgb.size() / 3)), rgb}));
  displayimportilda(scanner, path.c_str(), 0);
}
inline Bytes picture_reply(const Bytes& points) {
  return concat({Bytes{0, 0, 0}, le_bytes(static_cast<uint16_t>(points.size() / 11)), points});
}

struct Picture {
  uint16_t number = 0, count = 0;
  Bytes points;
  Bytes point(size_t i) const {  // empty past the end
    return 11 * (i + 1) <= points.size() ? Bytes(points.begin() + 11 * i, points.begin() + 11 * (i + 1)) : Bytes{};
  }
};
using Numbers = std::vector<std::pair<int, int>>;  // (number, point count) of each picture
inline Numbers numbers(const std::vector<Picture>& pics) {
  Numbers out;
  for (const Picture& p : pics) out.emplace_back(p.number, p.count);
  return out;
}

// The picture commands recorded so far.
inline std::vector<Picture> sent_pictures() {
  std::vector<Picture> out;
  for (const Bytes& b : Recorder::get().bytes()) {
    if (b.size() < 5 || b[0] != 0x00) continue;
    out.push_back({le<uint16_t>(b, 1), le<uint16_t>(b, 3), Bytes(b.begin() + 5, b.end())});
    EXPECT_EQ(out.back().points.size(), 11u * out.back().count) << "picture " << out.back().number;
  }
  return out;
}
// The pictures load() sends.
template <typename Load>
std::vector<Picture> sent_by(Load load) {
  Recorder::get().clear();
  load();
  return sent_pictures();
}
// The pictures load(path) sends once the file holds these bytes.
template <typename Load>
std::vector<Picture> loaded(const std::string& path, const Bytes& file, Load load) {
  write_file(path, file);
  return sent_by([&] { load(path.c_str()); });
}

}  // namespace kt
