// The slot exports: five quantities (angle, pivot, pre-move, post-move,
// scale), each with one-axis and three-axis setters, getters, and one-axis
// and three-axis masked adjusters. Every export that writes slot s raises the
// track's slotCount to at least s + 1 so that the slot is sent; getters never
// change it.
#include "kalvor/kalvor.h"
#include "state/masked.h"

using namespace kalvor;

// X(lower-case name part, capitalised name part, field type, masked
//   operation, field name prefix). Angles add value x 360 (a fraction of a
// turn); positions add value x 65535 and truncate the sum; scales multiply.
#define KALVOR_SLOT_QUANTITIES(X)                           \
  X(ang, Angle, double, AddScaled<360>, angle)              \
  X(pivot, Pivot, int32_t, AddPositionTruncSum, pivot)      \
  X(pre, PreMove, int32_t, AddPositionTruncSum, preMove)    \
  X(post, PostMove, int32_t, AddPositionTruncSum, postMove) \
  X(scale, Scale, double, Multiply, scale)

// The three one-axis exports of an axis: displayangx, displaygetangx and
// DisplayAngleX for lower = ang, axis = x.
#define KALVOR_SLOT_AXIS(lower, Upper, T, Op, f, ax, AX)                                      \
  KALVOR_API void KALVOR_CALL display##lower##ax(uint32_t scanner, uint16_t t, uint8_t s,     \
                                                 T value) {                                   \
    set_slot(scanner, t, s, slot::f##AX, value);                                              \
  }                                                                                           \
  KALVOR_API T KALVOR_CALL displayget##lower##ax(uint32_t scanner, uint16_t t, uint8_t s) {   \
    return get_slot(scanner, t, s, slot::f##AX);                                              \
  }                                                                                           \
  KALVOR_API void KALVOR_CALL Display##Upper##AX(uint32_t scanner, uint32_t trackMask,        \
                                                 uint32_t slotMask, uint32_t, double value) { \
    masked_slots<Op>(scanner, trackMask, slotMask, {slot::f##AX}, {value});                   \
  }

// The eleven exports of a quantity: three axes, then displayang and
// DisplayAngleXYZ, which raise slotCount once and write X, Y and Z in order.
#define KALVOR_SLOT_FAMILY(lower, Upper, T, Op, f)                                                 \
  KALVOR_SLOT_AXIS(lower, Upper, T, Op, f, x, X)                                                   \
  KALVOR_SLOT_AXIS(lower, Upper, T, Op, f, y, Y)                                                   \
  KALVOR_SLOT_AXIS(lower, Upper, T, Op, f, z, Z)                                                   \
  KALVOR_API void KALVOR_CALL display##lower(uint32_t scanner, uint16_t t, uint8_t s, T x, T y,    \
                                             T z) {                                                \
    set_slot(scanner, t, s, slot::f##X, x, slot::f##Y, y, slot::f##Z, z);                          \
  }                                                                                                \
  KALVOR_API void KALVOR_CALL Display##Upper##XYZ(uint32_t scanner, uint32_t trackMask,            \
                                                  uint32_t slotMask, uint32_t, double x, double y, \
                                                  double z) {                                      \
    masked_slots<Op>(scanner, trackMask, slotMask, {slot::f##X, slot::f##Y, slot::f##Z},           \
                     {x, y, z});                                                                   \
  }

KALVOR_SLOT_QUANTITIES(KALVOR_SLOT_FAMILY)
