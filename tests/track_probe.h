// Observing track exports where the scanner sees them: in the bytes of the
// next track upload. A row runs one export on freshly initialised tracks and
// names the bytes it must change; every other byte must stay as it was.
#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "support/harness.h"

namespace kt {

inline constexpr uint32_t kProbeScanner = 1;
inline constexpr int kProbeTracks = 3;  // tracks 0..2; track 2 is made active

// Tracks 0..count-1 of the probe scanner as the next upload sends them.
inline std::vector<Bytes> uploaded_tracks(int count = kProbeTracks) {
  Recorder& rec = Recorder::get();
  rec.clear();
  displayupdate(kProbeScanner);
  std::vector<Bytes> tracks;
  for (int t = 0; t < count; ++t) tracks.push_back(upload_track(rec.at(0).bytes, t));
  rec.clear();
  return tracks;
}

struct Change {
  size_t offset;  // inside the uploaded track
  Bytes bytes;
};

struct Row {
  const char* name;
  std::function<void()> call;
  uint32_t tracks;  // bit t: track t must show the changes
  std::vector<Change> changes;
};

// Runs every row on initialised tracks (track 2 active, then `setup`).
inline void check_rows(const std::vector<Row>& rows, const std::function<void()>& setup = {}) {
  for (const Row& row : rows) {
    displayinittrack(kProbeScanner);
    displayframe(kProbeScanner, 2, 1);
    if (setup) setup();
    std::vector<Bytes> expected = uploaded_tracks();
    row.call();
    std::vector<Bytes> actual = uploaded_tracks();
    for (int t = 0; t < kProbeTracks; ++t) {
      if (!(row.tracks >> t & 1u)) continue;
      for (const Change& c : row.changes) {
        ASSERT_LE(c.offset + c.bytes.size(), expected[t].size()) << row.name;
        std::copy(c.bytes.begin(), c.bytes.end(), expected[t].begin() + static_cast<long>(c.offset));
      }
    }
    for (int t = 0; t < kProbeTracks; ++t) EXPECT_EQ(actual[t], expected[t]) << row.name << ", track " << t;
  }
}

inline Bytes f64(double v) { return le_bytes(v); }
inline Bytes i32(int32_t v) { return le_bytes(v); }
inline Bytes u16(uint16_t v) { return le_bytes(v); }
inline Bytes u8(uint8_t v) { return Bytes{v}; }

}  // namespace kt
