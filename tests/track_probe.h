// Track exports observed where the scanner sees them, in the next track
// upload. A row runs one export on freshly initialised tracks 0..2 of scanner
// S (track 2 active) and names the bytes it changes; all others must stay.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/harness.h"

namespace kt {

inline constexpr uint32_t S = 1, T2 = 0b100, T02 = 0b101;

// Tracks 0..count-1 of scanner S as the next upload sends them.
inline std::vector<Bytes> uploaded_tracks(int count = 3) {
  Recorder& rec = Recorder::get();
  rec.clear();
  displayupdate(S);
  std::vector<Bytes> tracks;
  for (int t = 0; t < count; ++t) tracks.push_back(upload_track(rec.at(0).bytes, t));
  rec.clear();
  return tracks;
}

// The little-endian bytes of each value in turn; Bytes are taken as they are.
inline Bytes raw(const Bytes& v) { return v; }
template <typename T>
Bytes raw(T v) { return le_bytes(v); }
template <typename... T>
Bytes b(T... v) { return concat({raw(v)...}); }

struct Row {
  std::string call;
  std::function<void()> run;
  uint32_t tracks;                                // bit t: track t shows the changes
  std::vector<std::pair<size_t, Bytes>> changes;  // offset in the track, new bytes
};
// Calls each masked export twice with its value on tracks 0 and 2, so that
// adding, multiplying and replacing differ.
inline void twice(std::initializer_list<std::pair<decltype(&DisplayRotateX), double>> calls) {
  for (int k = 0; k < 2; ++k)
    for (const auto& [export_, value] : calls) export_(S, T02, 0, 0, value);
}
// ROW(call, tracks, {offset, bytes}...); SET: an immediate setter on track 2;
// MASK: one masked export called twice; MASK2 gives it two values.
#define ROW(call, tracks, ...) ::kt::Row{#call, [] { call; }, tracks, {__VA_ARGS__}}
#define SET(name, value, ...) ROW(name(S, 2, value), T2, __VA_ARGS__)
#define MASK2(name, v1, v2, ...) ROW((name(S, T02, 0, 0, v1), name(S, T02, 0, 0, v2)), T02, __VA_ARGS__)
#define MASK(name, value, ...) MASK2(name, value, value, __VA_ARGS__)

inline void check_rows(const std::vector<Row>& rows, void (*setup)() = nullptr) {
  for (const Row& row : rows) {
    displayinittrack(S);
    displayframe(S, 2, 1);
    if (setup) setup();
    std::vector<Bytes> expected = uploaded_tracks();
    row.run();
    for (int t = 0; t < 3; ++t)
      for (const auto& [at, bytes] : row.changes) {
        if (!(row.tracks >> t & 1u)) continue;
        ASSERT_LE(at + bytes.size(), expected[t].size()) << row.call;
        std::copy(bytes.begin(), bytes.end(), expected[t].begin() + static_cast<long>(at));
      }
    EXPECT_EQ(uploaded_tracks(), expected) << row.call;
  }
}

}  // namespace kt
