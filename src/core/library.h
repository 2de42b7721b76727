// Library-wide state: the scanner table and the few values shared by all
// scanners. Every export reaches a scanner's record through the accessors
// below, which yield null for a scanner, track or slot number out of range,
// so a bad number can never address memory outside the table.
#pragma once

#include <cstdint>

#include "state/layout.h"

namespace kalvor {

inline constexpr uint32_t kMaxScanner = 20;
inline constexpr uint32_t kTracks = 32;
inline constexpr uint32_t kSlots = 8;

struct LibraryState {
  int64_t ticksPerMillisecond = 0;
  uint32_t scannerMappingTable[record::scannerCount] = {};
  int8_t vistrelEnabled = 0;
  char profileFileName[1024] = {};
  uint32_t timelineStart = 0;
};

extern LibraryState g_library;

// Record of a scanner (0 to 20), or null.
uint8_t* scanner_record(uint32_t scanner);
// Track record of a scanner (track 0 to 31), or null.
uint8_t* track_record(uint32_t scanner, uint32_t track);
// Slot record inside a track record (slot 0 to 7), or null.
uint8_t* slot_record(uint8_t* track, uint32_t slot);
// Track t of a record known to be valid (t < 32).
inline uint8_t* track_at(uint8_t* rec, uint32_t t) { return rec + record::tracks.offset + track::size * t; }

// Fills records 1 to 20 with their start values (record 0 stays as it is).
void initialise_scanner_table();

}  // namespace kalvor
