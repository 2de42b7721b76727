// The millisecond clock shared by displaygettime and the timeline.
#pragma once

#include <cstdint>

namespace kalvor {

// High-resolution counter divided by ticks per millisecond, cut to 32 bits;
// the system tick count when the counter cannot be read or DisplayInit has
// not yet measured it.
uint32_t clock_ms();

}  // namespace kalvor
