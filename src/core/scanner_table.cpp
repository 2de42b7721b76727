#include <cstring>

#include "core/library.h"
#include "platform/platform.h"

namespace kalvor {

LibraryState g_library;

namespace {
// 21 records of 1,059,137 bytes in static storage: nothing is ever allocated.
alignas(64) uint8_t g_table[record::scannerCount][record::size];
}  // namespace

uint8_t* scanner_record(uint32_t scanner) {
  return scanner <= kMaxScanner ? g_table[scanner] : nullptr;
}

uint8_t* track_record(uint32_t scanner, uint32_t track) {
  uint8_t* rec = scanner_record(scanner);
  return rec && track < kTracks ? track_at(rec, track) : nullptr;
}

uint8_t* slot_record(uint8_t* track, uint32_t slot) {
  return track && slot < kSlots ? track + track::slotsOffset + slot::size * slot : nullptr;
}

void initialise_scanner_table() {
  int64_t frequency = platform::counter_frequency();
  g_library.ticksPerMillisecond = frequency / 1000;
  if (const char* profile = platform::environment("KALVOR_PROFILE")) {
    size_t n = strlen(profile);
    if (n >= sizeof g_library.profileFileName) n = sizeof g_library.profileFileName - 1;
    memcpy(g_library.profileFileName, profile, n);
    g_library.profileFileName[n] = 0;
  }
  for (uint32_t s = 1; s <= kMaxScanner; ++s) {
    g_library.scannerMappingTable[s] = 1u << s;
    uint8_t* rec = g_table[s];
    memset(rec, 0, record::size);
    memcpy(rec + record::sendName.offset, "MASTER", 7);
    memcpy(rec + record::receiveName.offset, "SLAVE", 6);
    store<uint8_t>(rec, record::signal, 2);
    store<uint8_t>(rec, record::output, 1);
    store<uint8_t>(rec, record::beamShowFlag, 1);
    store<uint8_t>(rec, record::graficFlag, 1);
    // Identity on the first three channels: C0ToR, C1ToG, C2ToB.
    store(rec, record::colourMatrix.at(0), 1.0);
    store(rec, record::colourMatrix.at(6 + 1), 1.0);
    store(rec, record::colourMatrix.at(12 + 2), 1.0);
    for (uint32_t i = 0; i < dmx::channels; ++i) {
      store_le<uint16_t>(rec + record::dmxOutMap.offset + 2 * i, static_cast<uint16_t>(i + 1));
      store_le<uint16_t>(rec + record::dmxInMap.offset + 2 * i, static_cast<uint16_t>(i + 1));
    }
  }
}

}  // namespace kalvor
