// Pictures as lists of points, uploaded and read back through kalvor's
// exports on scanner s.
#pragma once

#include <cstddef>
#include <vector>

#include "kalvor/kalvor.h"
#include "support/harness.h"
#include "transports/virtual/virtual_scanner.h"

namespace kt {

struct Point {
  int16_t x, y, z;
  uint8_t status, repeat, r, g, b;
  bool operator==(const Point&) const = default;
};

// Writes the points into the upload area and sends them as a picture.
inline void upload(uint32_t s, uint16_t number, const std::vector<Point>& points) {
  for (size_t i = 0; i < points.size(); ++i) {
    const Point& p = points[i];
    DisplaySetPicPoint(s, static_cast<uint16_t>(i), static_cast<uint16_t>(p.x), static_cast<uint16_t>(p.y),
                       static_cast<uint16_t>(p.z), p.status, p.repeat, p.r, p.g, p.b);
  }
  displaysetpic(s, number, static_cast<uint16_t>(points.size()));
}

// A frame point as the host reads it from the full preview.
struct Out {
  int32_t x, y;
  uint8_t status, r, g, b;
  bool operator==(const Out&) const = default;
};

// The frame the last full-preview refresh or upload answered with.
inline std::vector<Out> frame(uint32_t s) {
  uint16_t count = 0;
  displaygetfullpreviewbuffercnt(s, &count);
  std::vector<Out> out(count);
  for (uint16_t i = 0; i < count; ++i) displaygetfullpreviewbuffervector(s, i, &out[i].x, &out[i].y, &out[i].status,
                                                                       &out[i].r, &out[i].g, &out[i].b);
  return out;
}

// Every test also starts with the virtual scanner's memory and state reset.
class VirtualTest : public KalvorTest {
 protected:
  void SetUp() override {
    KalvorTest::SetUp();
    virtual_scanner_reset();
  }
};

// Reads a picture back with the picture query.
inline std::vector<Point> read_back(uint32_t s, uint16_t number) {
  std::vector<Point> out(displaygetpic(s, number));
  for (size_t i = 0; i < out.size(); ++i) {
    Point& p = out[i];
    uint16_t x, y, z;
    DisplayGetPicPoint(s, static_cast<uint16_t>(i), &x, &y, &z, &p.status, &p.repeat, &p.r, &p.g, &p.b);
    p.x = static_cast<int16_t>(x), p.y = static_cast<int16_t>(y), p.z = static_cast<int16_t>(z);
  }
  return out;
}

}  // namespace kt
