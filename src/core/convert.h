// Conversions of doubles to integers and limits on doubles, shared by every
// export, so that no conversion is undefined behaviour.
#pragma once

#include <cstdint>

namespace kalvor {

// Truncates toward zero. A NaN gives 0; a value beyond the 32-bit range gives
// the nearest end of the range (INT32_MIN or INT32_MAX).
inline int32_t trunc_to_i32(double v) {
  if (!(v == v)) return 0;
  if (v >= 2147483647.0) return INT32_MAX;
  if (v <= -2147483648.0) return INT32_MIN;
  return static_cast<int32_t>(v);
}

// The same rule on 64 bits.
inline int64_t trunc_to_i64(double v) {
  if (!(v == v)) return 0;
  if (v >= 9223372036854775807.0) return INT64_MAX;
  if (v <= -9223372036854775808.0) return INT64_MIN;
  return static_cast<int64_t>(v);
}

// Low 16 bits of the truncated value: clip fields take the value modulo 65536.
inline uint16_t trunc_low16(double v) { return static_cast<uint16_t>(static_cast<uint32_t>(trunc_to_i32(v))); }

// Low 8 bits of the truncated value.
inline uint8_t trunc_low8(double v) { return static_cast<uint8_t>(static_cast<uint32_t>(trunc_to_i32(v))); }

// 32-bit addition that wraps instead of overflowing.
inline int32_t wrap_add(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

// Limits a value: below lo gives lo, otherwise above hi gives hi. The tests
// run in this order, so a NaN passes both unchanged.
inline double limit(double v, double lo, double hi) {
  if (v < lo) return lo;
  if (v > hi) return hi;
  return v;
}

}  // namespace kalvor
