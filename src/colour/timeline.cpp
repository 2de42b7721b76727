// The library-wide timeline, the track UGC values and the UGC command, and
// the slot hierarchy that composes a track's slots along a parent table.
#include <cstring>

#include "core/clock.h"
#include "core/opcodes.h"
#include "core/transport.h"
#include "kalvor/kalvor.h"
#include "state/masked.h"

using namespace kalvor;

// ---- timeline ------------------------------------------------------------------

namespace {

// Milliseconds since the timeline start, modulo 2^32.
uint32_t elapsed_ms() { return clock_ms() - g_library.timelineStart; }

}  // namespace

KALVOR_API uint32_t KALVOR_CALL displaystarttimeline(void) {
  g_library.timelineStart = clock_ms();
  return g_library.timelineStart;
}

KALVOR_API uint32_t KALVOR_CALL displaygettimelinetime(void) { return elapsed_ms(); }

// Both ends belong to the interval. start is signed, so a negative start
// lies before every elapsed time; end - start wraps in 32 bits, so an
// interval wider than the i32 range counts as reversed.
KALVOR_API uint8_t KALVOR_CALL displaygettimeline(int32_t start, int32_t end, double from, double to,
                                                  double* out) {
  double e = static_cast<double>(elapsed_ms());
  if (e < start) return 0;
  if (e > end) return 0;
  int32_t d = static_cast<int32_t>(static_cast<uint32_t>(end) - static_cast<uint32_t>(start));
  if (d <= 0) return 0;
  double t = (e - start) / d;
  if (out) *out = from + (to - from) * t;
  return 1;
}

// ---- UGC ----------------------------------------------------------------------

namespace {

constexpr Field<double> kUgc[10] = {track::ugc1, track::ugc2, track::ugc3, track::ugc4, track::ugc5,
                                    track::ugc6, track::ugc7, track::ugc8, track::ugc9, track::ugc10};

}  // namespace

KALVOR_API void KALVOR_CALL displaytrackugc(uint32_t scanner, uint32_t trackMask, double u1, double u2, double u3,
                                            double u4, double u5, double u6, double u7, double u8, double u9,
                                            double u10, uint8_t b) {
  const double u[10] = {u1, u2, u3, u4, u5, u6, u7, u8, u9, u10};
  for_each_track(scanner, trackMask, [&](uint8_t* tr) {
    for (uint32_t k = 0; k < 10; ++k) store(tr, kUgc[k], u[k]);
    store(tr, track::ugcByte, b);
  });
}

// u1..u8 are fractions of the coordinate range and go out times 65535; u9
// and u10 go out unchanged.
KALVOR_API void KALVOR_CALL displaysetugc(uint32_t scanner, double u1, double u2, double u3, double u4, double u5,
                                          double u6, double u7, double u8, double u9, double u10, uint8_t b) {
  const double u[10] = {u1, u2, u3, u4, u5, u6, u7, u8, u9, u10};
  uint8_t cmd[82] = {op(Opcode::Ugc)};
  for (uint32_t k = 0; k < 10; ++k) store_le<double>(cmd + 1 + 8 * k, k < 8 ? u[k] * 65535.0 : u[k]);
  cmd[81] = b;
  send(scanner, cmd);
}

// ---- slot hierarchy -------------------------------------------------------------

namespace {

constexpr uint32_t kHierarchySize = 8;

constexpr Field<int32_t> kPositions[] = {slot::pivotX,    slot::pivotY,    slot::pivotZ,
                                         slot::preMoveX,  slot::preMoveY,  slot::preMoveZ,
                                         slot::postMoveX, slot::postMoveY, slot::postMoveZ};
constexpr Field<double> kAngles[] = {slot::angleX, slot::angleY, slot::angleZ};
constexpr Field<double> kScales[] = {slot::scaleX, slot::scaleY, slot::scaleZ};

// Adds an ancestor's positions and angles to a slot and multiplies its scales.
void inherit(uint8_t* child, const uint8_t* ancestor) {
  for (Field<int32_t> f : kPositions) store(child, f, wrap_add(load(child, f), load(ancestor, f)));
  for (Field<double> f : kAngles) store(child, f, load(child, f) + load(ancestor, f));
  for (Field<double> f : kScales) store(child, f, load(child, f) * load(ancestor, f));
}

}  // namespace

KALVOR_API void KALVOR_CALL displayinithierarchy(int32_t* hierarchy) {
  if (!hierarchy) return;
  for (uint32_t i = 0; i < kHierarchySize; ++i) hierarchy[i] = -1;
}

// Works on a copy of the track and reads every ancestor from the track as it
// was before the call, so the order in which slots are composed does not
// matter. A chain ends at an entry outside 0..7 or after eight ancestors, so
// a cycle ends too.
KALVOR_API void KALVOR_CALL displayhierarchy(uint32_t scanner, uint32_t t, const int32_t* hierarchy) {
  uint8_t* live = track_record(scanner, t);
  if (!live || !hierarchy) return;
  uint8_t copy[track::size];
  memcpy(copy, live, track::size);
  for (uint32_t i = 0; i < kSlots; ++i) {
    uint8_t* child = slot_record(copy, i);
    int32_t p = hierarchy[i];
    for (uint32_t steps = 0; p >= 0 && p < static_cast<int32_t>(kSlots) && steps < kSlots; ++steps) {
      inherit(child, slot_record(live, static_cast<uint32_t>(p)));
      p = hierarchy[p];
    }
  }
  memcpy(live, copy, track::size);
}
