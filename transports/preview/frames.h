// The message the page receives for one scanner: a 16-byte header and 8 bytes
// a point, all little-endian. The page (page/preview.js) reads the same layout.
#pragma once

#include <cstddef>
#include <cstdint>

#include "projector/projector.h"

namespace kalvor::preview {

namespace message {
inline constexpr uint8_t kVersion = 1;
// Header.
inline constexpr size_t version = 0;    // u8, kVersion
inline constexpr size_t scanner = 1;    // u8, 1..20
inline constexpr size_t flags = 2;      // u8, bit 0: output lit
inline constexpr size_t serial = 4;     // u32, the scanner's frame counter
inline constexpr size_t count = 8;      // u32, points that follow
inline constexpr size_t pointRate = 12; // u32, points per second
inline constexpr size_t header = 16;
// Point, at header + i * point.
inline constexpr size_t x = 0;          // i16, held to -32768..32767; grows right
inline constexpr size_t y = 2;          // i16, held likewise; grows down
inline constexpr size_t rgb = 4;        // u8 red, green, blue
inline constexpr size_t pointFlags = 7; // u8, bit 0: blanked
inline constexpr size_t point = 8;
inline constexpr size_t largest = header + point * projector::kMaxFramePoints;
}  // namespace message

inline constexpr uint8_t kLit = 1;
inline constexpr uint8_t kBlanked = 1;

// Writes the scanner's frame as one message into out (message::largest bytes)
// and returns its length.
size_t encode(uint32_t number, const projector::Scanner& scanner, uint8_t* out);

}  // namespace kalvor::preview
