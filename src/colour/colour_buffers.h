// The colour buffers of a scanner and the palette command that sends one of
// them, shared by the palette exports and displayreset.
#pragma once

#include <cstdint>

#include "core/opcodes.h"

namespace kalvor {

// Channel bytes c0..c5 of one colour entry.
inline constexpr uint32_t kChannels = 6;

// Colour buffer `buffer` (0 to 7) of a record, or null for a null record or a
// buffer number above 7.
uint8_t* colour_buffer_at(uint8_t* rec, uint32_t buffer);

// Copies the channel entries of a colour buffer into the scanner's palette
// command, sets the entry count 64 and `opcode`, and sends the 386 bytes.
// Does nothing for a scanner above 20 or a buffer above 7.
void send_palette(uint32_t scanner, uint32_t buffer, Opcode opcode);

}  // namespace kalvor
