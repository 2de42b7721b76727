// Geometry commands sent at once: immediate morph, skew, global and per-world
// shift and size, and the camera and world shift-size queries. Nothing here
// touches the scanner's record; each command is built on the stack.
//
// The queries clear their reply buffer before sending, so when the transport
// is unbound (or answers nothing) every out-value becomes 0. A null
// out-pointer is skipped.
#include "core/bytes.h"
#include "core/convert.h"
#include "core/opcodes.h"
#include "core/transport.h"
#include "kalvor/kalvor.h"

using namespace kalvor;

namespace {

// Writes the little-endian value at `at` to *out, unless out is null.
template <typename T>
void put(T* out, const uint8_t* at) {
  if (out) *out = load_le<T>(at);
}

inline double limit_fraction(double v) { return limit(v, 0.0, 1.0); }

// Sends a camera query and hands the 36-byte answer to the six out-pointers:
// three 32-bit values at 0, 4, 8 and three doubles at 12, 20, 28.
template <uint32_t N>
void camera_query(uint32_t scanner, uint8_t (&cmd)[N], int32_t* v1, int32_t* v2, int32_t* v3, double* d1,
                  double* d2, double* d3) {
  uint8_t reply[36] = {};
  send(scanner, cmd, reply);
  put(v1, reply + 0);
  put(v2, reply + 4);
  put(v3, reply + 8);
  put(d1, reply + 12);
  put(d2, reply + 20);
  put(d3, reply + 28);
}

// Shift x, shift y, size x, size y, packed as i32, i32, f64, f64.
void store_shift_size(uint8_t* at, int32_t shiftX, int32_t shiftY, double sizeX, double sizeY) {
  store_le<int32_t>(at, shiftX);
  store_le<int32_t>(at + 4, shiftY);
  store_le<double>(at + 8, sizeX);
  store_le<double>(at + 16, sizeY);
}

}  // namespace

KALVOR_API void KALVOR_CALL displaymorph(uint32_t scanner, uint16_t track, uint16_t picture, uint16_t second,
                                         double amount) {
  uint8_t cmd[15] = {op(Opcode::Morph)};
  store_le<uint16_t>(cmd + 1, track);
  store_le<uint16_t>(cmd + 3, picture);
  store_le<uint16_t>(cmd + 5, second);
  store_le<double>(cmd + 7, limit_fraction(amount));
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displaycamera(uint32_t scanner, uint16_t index, double fraction, uint8_t mode,
                                          int32_t* v1, int32_t* v2, int32_t* v3, double* d1, double* d2,
                                          double* d3) {
  uint8_t cmd[12] = {op(Opcode::Camera)};
  store_le<uint16_t>(cmd + 1, index);
  store_le<double>(cmd + 3, limit_fraction(fraction));
  cmd[11] = mode;
  camera_query(scanner, cmd, v1, v2, v3, d1, d2, d3);
}

KALVOR_API void KALVOR_CALL displaycamera2(uint32_t scanner, uint16_t index, uint16_t second, double fraction,
                                           int32_t* v1, int32_t* v2, int32_t* v3, double* d1, double* d2,
                                           double* d3) {
  uint8_t cmd[13] = {op(Opcode::Camera2)};
  store_le<uint16_t>(cmd + 1, index);
  store_le<uint16_t>(cmd + 3, second);
  store_le<double>(cmd + 5, limit_fraction(fraction));
  camera_query(scanner, cmd, v1, v2, v3, d1, d2, d3);
}

KALVOR_API void KALVOR_CALL displayskew(uint32_t scanner, uint16_t value) {
  uint8_t cmd[3] = {op(Opcode::Skew)};
  store_le<uint16_t>(cmd + 1, value);
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displayglobalshiftsize(uint32_t scanner, int32_t shiftX, int32_t shiftY, double sizeX,
                                                   double sizeY) {
  uint8_t cmd[25] = {op(Opcode::GlobalShiftSize)};
  store_shift_size(cmd + 1, shiftX, shiftY, sizeX, sizeY);
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displayworldsetshiftsize(uint32_t scanner, uint16_t world, int32_t shiftX,
                                                     int32_t shiftY, double sizeX, double sizeY, double f1,
                                                     double f2, double f3, double f4, double angle) {
  uint8_t cmd[43] = {op(Opcode::WorldSetShiftSize)};
  store_le<uint16_t>(cmd + 1, world);
  store_shift_size(cmd + 3, shiftX, shiftY, sizeX, sizeY);
  const double fractions[4] = {f1, f2, f3, f4};
  for (uint32_t i = 0; i < 4; ++i) store_le<uint16_t>(cmd + 27 + 2 * i, trunc_low16(fractions[i] * 65535.0));
  store_le<double>(cmd + 35, angle * 360.0);
  send(scanner, cmd);
}

// One 27-byte buffer is both the command and the answer; bytes 3..26 go out
// as zero.
KALVOR_API void KALVOR_CALL displayworldgetshiftsize(uint32_t scanner, uint16_t world, int32_t* shiftX,
                                                     int32_t* shiftY, double* sizeX, double* sizeY) {
  uint8_t buffer[27] = {op(Opcode::WorldGetShiftSize)};
  store_le<uint16_t>(buffer + 1, world);
  send(scanner, buffer, buffer);
  put(shiftX, buffer + 3);
  put(shiftY, buffer + 7);
  put(sizeX, buffer + 11);
  put(sizeY, buffer + 19);
}
