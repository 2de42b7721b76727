// Little- and big-endian loads and stores on byte buffers. Every field of a
// record, a command or a file goes through these; no code dereferences a cast,
// possibly misaligned pointer.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace kalvor {

// Reverses the bytes of an integer of 1, 2, 4 or 8 bytes.
template <typename U>
constexpr U byte_swap(U v) {
  static_assert(std::is_unsigned_v<U>);
  U r = 0;
  for (unsigned i = 0; i < sizeof(U); ++i) r = static_cast<U>((r << 8) | ((v >> (8 * i)) & 0xFF));
  return r;
}

template <typename T>
using BitsOf = std::conditional_t<sizeof(T) == 1, uint8_t,
               std::conditional_t<sizeof(T) == 2, uint16_t,
               std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>>;

// Value of type T (integer or floating) stored little-endian at p.
template <typename T>
inline T load_le(const uint8_t* p) {
  BitsOf<T> bits;
  std::memcpy(&bits, p, sizeof bits);
  if constexpr (std::endian::native == std::endian::big) bits = byte_swap(bits);
  return std::bit_cast<T>(bits);
}

template <typename T>
inline void store_le(uint8_t* p, T value) {
  auto bits = std::bit_cast<BitsOf<T>>(value);
  if constexpr (std::endian::native == std::endian::big) bits = byte_swap(bits);
  std::memcpy(p, &bits, sizeof bits);
}

// Value of type T stored big-endian at p (ILDA files, picture-file headers).
template <typename T>
inline T load_be(const uint8_t* p) {
  BitsOf<T> bits;
  std::memcpy(&bits, p, sizeof bits);
  if constexpr (std::endian::native == std::endian::little) bits = byte_swap(bits);
  return std::bit_cast<T>(bits);
}

template <typename T>
inline void store_be(uint8_t* p, T value) {
  auto bits = std::bit_cast<BitsOf<T>>(value);
  if constexpr (std::endian::native == std::endian::little) bits = byte_swap(bits);
  std::memcpy(p, &bits, sizeof bits);
}

}  // namespace kalvor
