// DMX channels: levels go out at once through the scanner's two channel maps,
// which translate the host's channel 1..512 into the channel put on the wire.
#include "core/library.h"
#include "core/short_commands.h"
#include "kalvor/kalvor.h"

using namespace kalvor;

namespace {

// Wire channel for a host channel: the low 16 bits of the argument, 0 taken
// as 1 and anything above 512 as 512, looked up in the map.
uint16_t mapped_channel(const uint8_t* rec, Area map, uint32_t channel) {
  uint32_t c = channel & 0xFFFFu;
  if (c == 0) c = 1;
  if (c > dmx::channels) c = dmx::channels;
  return load_le<uint16_t>(rec + map.offset + 2 * (c - 1));
}

void copy_map(uint8_t* rec, Area map, const uint16_t* table) {
  if (!table) return;
  for (uint32_t k = 0; k < dmx::channels; ++k) store_le<uint16_t>(rec + map.offset + 2 * k, table[k]);
}

}  // namespace

KALVOR_API void KALVOR_CALL displaysetdmx(uint32_t scanner, uint32_t channel, uint8_t level) {
  const uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  uint8_t cmd[4] = {op(Opcode::SetDmx)};
  store_le<uint16_t>(cmd + 1, mapped_channel(rec, record::dmxOutMap, channel));
  cmd[3] = level;
  send(scanner, cmd);
}

KALVOR_API uint8_t KALVOR_CALL displaygetdmx(uint32_t scanner, uint32_t channel) {
  const uint8_t* rec = scanner_record(scanner);
  if (!rec) return 0;
  uint8_t cmd[3] = {op(Opcode::GetDmx)};
  store_le<uint16_t>(cmd + 1, mapped_channel(rec, record::dmxInMap, channel));
  uint8_t level[1] = {0};  // stays 0 when nothing answers
  send(scanner, cmd, level);
  return level[0];
}

KALVOR_API void KALVOR_CALL displayupdatedmx(uint32_t scanner) { send_opcode(scanner, Opcode::UpdateDmx); }

KALVOR_API void KALVOR_CALL displayenabledmxin(uint32_t scanner, uint8_t enable) {
  send_and_store(scanner, Opcode::EnableDmxIn, record::dmxInEnabled, enable);
}

KALVOR_API uint8_t KALVOR_CALL displaygetenabledmxin(uint32_t scanner) {
  const uint8_t* rec = scanner_record(scanner);
  return rec ? load(rec, record::dmxInEnabled) : 0;
}

KALVOR_API void KALVOR_CALL displaymapdmx(uint32_t scanner, const uint16_t* inTable, const uint16_t* outTable) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  copy_map(rec, record::dmxInMap, inTable);
  copy_map(rec, record::dmxOutMap, outTable);
}
