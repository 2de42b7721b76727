// Helpers for the commands that are one opcode and at most one byte, and for
// the commands that live in an area of the scanner's record.
#pragma once

#include <cstdint>

#include "core/library.h"
#include "core/opcodes.h"
#include "core/transport.h"

namespace kalvor {

// Sends the single opcode byte.
inline void send_opcode(uint32_t scanner, Opcode opcode) {
  uint8_t cmd[1] = {op(opcode)};
  send(scanner, cmd);
}

// Sends the opcode and one byte.
inline void send_byte(uint32_t scanner, Opcode opcode, uint8_t value) {
  uint8_t cmd[2] = {op(opcode), value};
  send(scanner, cmd);
}

// Sends the opcode and one byte, then stores the byte in a header field
// (also when nothing was sent). A scanner above 20 does nothing.
inline void send_and_store(uint32_t scanner, Opcode opcode, Field<uint8_t> field, uint8_t value) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  send_byte(scanner, opcode, value);
  store(rec, field, value);
}

// The record areas sent this way: opcode first, one byte after it.
static_assert(palette_command::opcode.offset == 0 && palette_command::entryCount.offset == 1);
static_assert(true_colour::opcode.offset == 0 && true_colour::value.offset == 1);
static_assert(geonet::opcode.offset == 0 && geonet::value.offset == 1);

// Sends an area of the record that is a command's wire image, after writing
// the opcode into its first byte and `second` into its second.
inline void send_area(uint32_t scanner, Area area, Opcode opcode, uint8_t second) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  uint8_t* cmd = rec + area.offset;
  cmd[0] = op(opcode);
  cmd[1] = second;
  send(scanner, cmd, area.size, nullptr);
}

}  // namespace kalvor
