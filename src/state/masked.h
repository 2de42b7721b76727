// The shared machinery of the track and slot exports: immediate setters and
// getters on one track or slot, the masked loop over tracks and slots, and
// the operations the masked exports apply to each selected field. Every
// family of exports is a table of (name, operation, fields) rows expanded
// over these templates, so each behaviour is written once.
#pragma once

#include <cstdint>
#include <type_traits>

#include "core/convert.h"
#include "core/library.h"

namespace kalvor {

// ---- slotCount ---------------------------------------------------------------

// Makes sure slot s of a track is sent: raises slotCount to s + 1 when it is
// lower. Never lowers it.
inline void raise_slot_count(uint8_t* track, uint32_t s) {
  if (load(track, track::slotCount) < s + 1) store(track, track::slotCount, static_cast<uint8_t>(s + 1));
}

// ---- immediate setters and getters -----------------------------------------

// Stores (field, value) pairs into one record, values converted to the
// field's own type.
inline void store_all(uint8_t*) {}
template <typename T, typename... Rest>
inline void store_all(uint8_t* base, Field<T> f, std::type_identity_t<T> v, Rest... rest) {
  store(base, f, v);
  store_all(base, rest...);
}

// Writes (field, value) pairs into one track; an out-of-range scanner or
// track makes it do nothing.
template <typename... Pairs>
inline void set_track(uint32_t scanner, uint32_t t, Pairs... pairs) {
  if (uint8_t* tr = track_record(scanner, t)) store_all(tr, pairs...);
}

// Writes (field, value) pairs into one slot after raising the track's
// slotCount so that the slot is sent.
template <typename... Pairs>
inline void set_slot(uint32_t scanner, uint32_t t, uint32_t s, Pairs... pairs) {
  uint8_t* tr = track_record(scanner, t);
  uint8_t* sl = slot_record(tr, s);
  if (!sl) return;
  raise_slot_count(tr, s);
  store_all(sl, pairs...);
}

// A track field, or 0 for an out-of-range scanner or track.
template <typename T>
inline T get_track(uint32_t scanner, uint32_t t, Field<T> f) {
  const uint8_t* tr = track_record(scanner, t);
  return tr ? load(tr, f) : T{};
}

// A slot field, or 0 for an out-of-range scanner, track or slot. Reading
// never changes slotCount.
template <typename T>
inline T get_slot(uint32_t scanner, uint32_t t, uint32_t s, Field<T> f) {
  const uint8_t* sl = slot_record(track_record(scanner, t), s);
  return sl ? load(sl, f) : T{};
}

// Defines a one-field immediate setter (scanner, track, value) that stores
// the value unchanged.
#define KALVOR_TRACK_SETTER(name, T, f)                                         \
  KALVOR_API void KALVOR_CALL name(uint32_t scanner, uint16_t track, T value) { \
    ::kalvor::set_track(scanner, track, ::kalvor::track::f, value);             \
  }

// ---- the masked loop -------------------------------------------------------

// Calls fn(track) for every track t = 0..31 whose bit is set in the mask.
template <typename Fn>
inline void for_each_track(uint32_t scanner, uint32_t trackMask, Fn fn) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  for (uint32_t t = 0; t < kTracks; ++t)
    if (trackMask >> t & 1u) fn(track_at(rec, t));
}

// Calls fn(slot) for every selected slot of every selected track, raising
// each track's slotCount for the slots visited. Bits 8..31 of slotMask are
// ignored.
template <typename Fn>
inline void for_each_slot(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, Fn fn) {
  for_each_track(scanner, trackMask, [&](uint8_t* tr) {
    for (uint32_t s = 0; s < kSlots; ++s) {
      if (!(slotMask >> s & 1u)) continue;
      raise_slot_count(tr, s);
      fn(slot_record(tr, s));
    }
  });
}

// ---- operations --------------------------------------------------------------
// Each operation turns the caller's double into its argument once, before the
// loop (prepare), and then computes each selected field's new value from the
// old one (apply). `Value` is the type of the fields it works on.

// field + value x K (angles: K = 360, a full turn). Constants are whole
// numbers, given as integers so that every compiler accepts them.
template <int K>
struct AddScaled {
  using Value = double;
  static double prepare(double v) { return v * K; }
  static double apply(double field, double d) { return field + d; }
};

// Slot positions: the sum field + value x 65535 is truncated, so the result
// depends on the sign of the stored value.
struct AddPositionTruncSum {
  using Value = int32_t;
  static double prepare(double v) { return v * 65535.0; }
  static int32_t apply(int32_t field, double p) { return trunc_to_i32(static_cast<double>(field) + p); }
};

// Track shift and view: the increment is truncated once, then added with
// 32-bit wrap-around, so a value always moves the field by the same amount.
struct AddPositionTruncIncrement {
  using Value = int32_t;
  static int32_t prepare(double v) { return trunc_to_i32(v * 65535.0); }
  static int32_t apply(int32_t field, int32_t n) { return wrap_add(field, n); }
};

// field x value.
struct Multiply {
  using Value = double;
  static double prepare(double v) { return v; }
  static double apply(double field, double f) { return field * f; }
};

// field x value, with the value limited to 0..Hi first (NaN passes).
template <int Hi>
struct MultiplyLimited {
  using Value = double;
  static double prepare(double v) { return limit(v, 0.0, Hi); }
  static double apply(double field, double f) { return field * f; }
};

// Replacers: the prepared value becomes the field.
template <typename T>
struct ReplaceWith {
  using Value = T;
  static T apply(T, T v) { return v; }
};

struct Replace : ReplaceWith<double> {
  static double prepare(double v) { return v; }
};

// The value limited to 0..Hi (NaN passes).
template <int Hi>
struct ReplaceLimited : ReplaceWith<double> {
  static double prepare(double v) { return limit(v, 0.0, Hi); }
};

// Clip rectangle: the low 16 bits of trunc(value x 65535), i.e. modulo 65536.
struct ReplaceClip16 : ReplaceWith<uint16_t> {
  static uint16_t prepare(double v) { return trunc_low16(v * 65535.0); }
};

// Clip depth: the whole trunc(value x 65535).
struct ReplaceClipZ : ReplaceWith<int32_t> {
  static int32_t prepare(double v) { return trunc_to_i32(v * 65535.0); }
};

// Pipeline: value x 65535 raised to 0 when negative (NaN is not raised and
// converts to 0), then truncated; there is no upper limit beyond the range.
struct ReplacePipeline : ReplaceWith<uint32_t> {
  static uint32_t prepare(double v) {
    double p = v * 65535.0;
    if (p < 0.0) p = 0.0;
    return static_cast<uint32_t>(trunc_to_i32(p));
  }
};

// ---- masked exports ------------------------------------------------------------

// Applies Op to N fields of every selected track: value i goes to field i,
// in order. The arguments are prepared once, before the loop.
template <typename Op, uint32_t N>
inline void masked_tracks(uint32_t scanner, uint32_t trackMask, const Field<typename Op::Value> (&fields)[N],
                          const double (&values)[N]) {
  decltype(Op::prepare(0.0)) args[N];
  for (uint32_t i = 0; i < N; ++i) args[i] = Op::prepare(values[i]);
  for_each_track(scanner, trackMask, [&](uint8_t* tr) {
    for (uint32_t i = 0; i < N; ++i) store(tr, fields[i], Op::apply(load(tr, fields[i]), args[i]));
  });
}

// The same on N fields of every selected slot of every selected track.
template <typename Op, uint32_t N>
inline void masked_slots(uint32_t scanner, uint32_t trackMask, uint32_t slotMask,
                         const Field<typename Op::Value> (&fields)[N], const double (&values)[N]) {
  decltype(Op::prepare(0.0)) args[N];
  for (uint32_t i = 0; i < N; ++i) args[i] = Op::prepare(values[i]);
  for_each_slot(scanner, trackMask, slotMask, [&](uint8_t* sl) {
    for (uint32_t i = 0; i < N; ++i) store(sl, fields[i], Op::apply(load(sl, fields[i]), args[i]));
  });
}

}  // namespace kalvor

// Definitions of masked exports with the common signature (scanner,
// trackMask, slotMask, reserved, one double per field, in field order).
// Track exports do not read slotMask; no export reads reserved.
#define KALVOR_MASKED_TRACK_1(name, Op, f)                                                   \
  KALVOR_API void KALVOR_CALL name(uint32_t scanner, uint32_t trackMask, uint32_t, uint32_t, \
                                   double value) {                                           \
    ::kalvor::masked_tracks<Op>(scanner, trackMask, {::kalvor::track::f}, {value});          \
  }
#define KALVOR_MASKED_TRACK_2(name, Op, fx, fy)                                                 \
  KALVOR_API void KALVOR_CALL name(uint32_t scanner, uint32_t trackMask, uint32_t, uint32_t,    \
                                   double x, double y) {                                        \
    ::kalvor::masked_tracks<Op>(scanner, trackMask, {::kalvor::track::fx, ::kalvor::track::fy}, \
                                {x, y});                                                        \
  }
#define KALVOR_MASKED_TRACK_3(name, Op, fx, fy, fz)                                              \
  KALVOR_API void KALVOR_CALL name(uint32_t scanner, uint32_t trackMask, uint32_t, uint32_t,     \
                                   double x, double y, double z) {                               \
    ::kalvor::masked_tracks<Op>(scanner, trackMask,                                              \
                                {::kalvor::track::fx, ::kalvor::track::fy, ::kalvor::track::fz}, \
                                {x, y, z});                                                      \
  }
