#include "core/clock.h"

#include "core/library.h"
#include "platform/platform.h"

namespace kalvor {

uint32_t clock_ms() {
  int64_t ticks;
  int64_t per_ms = g_library.ticksPerMillisecond;
  if (per_ms > 0 && platform::read_counter(&ticks))
    return static_cast<uint32_t>(static_cast<uint64_t>(ticks / per_ms));
  return platform::tick_count();
}

}  // namespace kalvor
