// Point records of ILDA formats 0 and 5, LAS and FLX converted sixteen at a
// time with vector instructions, for the processors that have them. The
// readers convert whatever these leave, one record at a time, the same way.
#pragma once

#include <cstdint>

namespace kalvor::pictures {

// Each converts whole groups of 16 of the n records at `in` (format 0:
// indexed colour with z; format 5: true colour without z) into picture points
// at `out`, which has room for n points. Returns how many records it
// converted: a multiple of 16, and 0 where the processor lacks the
// instructions.
using GroupConverter = uint32_t (*)(const uint8_t* in, uint32_t n, uint8_t* out);
uint32_t convert_groups_format0(const uint8_t* in, uint32_t n, uint8_t* out);
uint32_t convert_groups_format5(const uint8_t* in, uint32_t n, uint8_t* out);
// Whether any of the n 8-byte records at r equals the one after it.
bool any_repeat8(const uint8_t* r, uint32_t n);
// Points of older picture files from their 8-byte records: `in` is the
// record before the first point, n the records from it on; colours[c][i] is
// channel c of colour i. Returns the points it made (a multiple of 64; 0
// without AVX-512).
uint32_t convert_groups_older(const uint8_t* in, uint32_t n, uint8_t* out, const uint8_t (*colours)[64]);
// The same for the 11-byte records of LAS and FLX files.
uint32_t convert_groups_las(const uint8_t* in, uint32_t n, uint8_t* out);
uint32_t convert_groups_flx(const uint8_t* in, uint32_t n, uint8_t* out);

}  // namespace kalvor::pictures
