// The geometry net: a 9 x 9 grid of points that corrects the projector's
// output geometry. The grid lives in the scanner's record in the very layout
// of the command that sends it.
#include "core/library.h"
#include "core/short_commands.h"
#include "kalvor/kalvor.h"

using namespace kalvor;

namespace {

constexpr double kField = 65535.0;

// Point (a, b) of a scanner's grid, or null for a scanner above 20 or an
// index above 8.
uint8_t* grid_point(uint32_t scanner, uint32_t a, uint32_t b) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec || a >= geonet::gridSize || b >= geonet::gridSize) return nullptr;
  return rec + record::geonet.offset + geonet::pointsOffset + geonet::pointSize * (geonet::gridSize * a + b);
}

void store_point(uint8_t* p, double x, double y, double z) {
  store_le<double>(p, x);
  store_le<double>(p + 8, y);
  store_le<double>(p + 16, z);
}

}  // namespace

KALVOR_API void KALVOR_CALL displayinitgeonet(uint32_t scanner) {
  for (uint32_t a = 0; a < geonet::gridSize; ++a)
    for (uint32_t b = 0; b < geonet::gridSize; ++b)
      if (uint8_t* p = grid_point(scanner, a, b)) store_point(p, a * 0.125 * kField, b * 0.125 * kField, 0.0);
}

KALVOR_API void KALVOR_CALL displaysetgeonet(uint32_t scanner, uint32_t a, uint32_t b, double x, double y,
                                             double z) {
  if (uint8_t* p = grid_point(scanner, a, b)) store_point(p, x * kField, y * kField, z * kField);
}

KALVOR_API void KALVOR_CALL displayupdategeonet(uint32_t scanner, uint8_t value) {
  send_area(scanner, record::geonet, Opcode::Geonet, value);
}

KALVOR_API void KALVOR_CALL displayworldgeonet(uint32_t scanner, uint16_t w1, uint16_t w2, uint16_t w3,
                                               uint16_t w4, uint16_t w5) {
  const uint16_t values[5] = {w1, w2, w3, w4, w5};
  uint8_t cmd[1 + sizeof values] = {op(Opcode::WorldGeonet)};
  for (uint32_t k = 0; k < 5; ++k) store_le<uint16_t>(cmd + 1 + 2 * k, values[k]);
  send(scanner, cmd);
}
