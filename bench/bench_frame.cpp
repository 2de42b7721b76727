// The frame loop: displayupdate, the masked adjusters over every track and
// slot, DisplayInit, and the heap-allocation count of the picture commands.
#include <cstring>

#include "kalvor/kalvor.h"
#include "state/layout.h"
#include "support.h"

namespace {

constexpr uint32_t kScanner = 1;
constexpr uint32_t kAllTracks = 0xFFFFFFFFu;
constexpr uint32_t kAllSlots = 0xFFu;
constexpr size_t kRecordBytes = 1059137;  // one scanner's state record

// Upload sizes: 3 header bytes, then per track 498 bytes and 84 per slot.
constexpr uint32_t upload_bytes(uint32_t tracks, uint32_t slots) { return 3 + tracks * (498 + 84 * slots); }

// Marks the run failed unless every call sent `per_call` bytes in `sends`
// commands.
void check_sent(benchmark::State& state, uint64_t per_call, uint64_t sends) {
  kb::NullTransport& t = kb::null_transport();
  uint64_t n = state.iterations();
  if (t.bytes() != n * per_call || t.commands() != n * sends) state.SkipWithError("unexpected bytes sent");
}

// ---- displayupdate ------------------------------------------------------------

void update(benchmark::State& state, uint32_t tracks, uint32_t slots) {
  if (!kb::start(state)) return;
  displayinittrack(kScanner);
  for (uint32_t t = 0; t < tracks; ++t) {
    displayframe(kScanner, t, 1);
    displayangx(kScanner, t, slots - 1, 0.0);  // raises the slot count
  }
  uint64_t before = kb::allocations();
  for (auto _ : state) benchmark::DoNotOptimize(displayupdate(kScanner));
  kb::report_allocations(state, before);
  check_sent(state, upload_bytes(tracks, slots) + 1, 2);  // the upload, then 0x7B
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(update, 1_track_1_slot, 1, 1);
BENCHMARK_CAPTURE(update, 32_tracks_1_slot, 32, 1);
BENCHMARK_CAPTURE(update, 32_tracks_8_slots, 32, 8);

// The floor: copy the same bytes and make one call through a pointer.
void update_floor(benchmark::State& state, uint32_t length) {
  if (!kb::start(state)) return;
  kb::CommandFn command = kb::null_transport().command;
  alignas(64) static uint8_t tracks[upload_bytes(32, 8)];
  static uint8_t reply[6];
  for (auto _ : state) {
    alignas(64) uint8_t upload[upload_bytes(32, 8)];
    std::memcpy(upload, tracks, length);
    benchmark::DoNotOptimize(command(kScanner, upload, length, reply));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(update_floor, 1_track_1_slot, upload_bytes(1, 1));
BENCHMARK_CAPTURE(update_floor, 32_tracks_1_slot, upload_bytes(32, 1));
BENCHMARK_CAPTURE(update_floor, 32_tracks_8_slots, upload_bytes(32, 8));

const bool update_rows = (kb::compare("displayupdate, 1 track of 1 slot (585 bytes)", "update/1_track_1_slot",
                                      "update_floor/1_track_1_slot", kb::Goal::within, 2),
                          kb::compare("displayupdate, 32 tracks of 1 slot (18,627 bytes)",
                                      "update/32_tracks_1_slot", "update_floor/32_tracks_1_slot",
                                      kb::Goal::within, 2),
                          kb::compare("displayupdate, 32 tracks of 8 slots (37,443 bytes)",
                                      "update/32_tracks_8_slots", "update_floor/32_tracks_8_slots",
                                      kb::Goal::within, 2),
                          true);

// ---- masked adjusters ---------------------------------------------------------

// Each adjuster once with masks selecting all 32 tracks and 8 slots. The
// values leave the fields where they are, so the run never drifts into
// infinities or denormals.
template <typename Adjust>
void masked(benchmark::State& state, Adjust adjust) {
  if (!kb::start(state)) return;
  displayinittrack(kScanner);
  uint64_t before = kb::allocations();
  for (auto _ : state) adjust();
  kb::report_allocations(state, before);
  check_sent(state, 0, 0);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(masked, DisplayAngleXYZ,
                  [] { DisplayAngleXYZ(kScanner, kAllTracks, kAllSlots, 0, 0.0, 0.0, 0.0); });
BENCHMARK_CAPTURE(masked, DisplayPivotXYZ,
                  [] { DisplayPivotXYZ(kScanner, kAllTracks, kAllSlots, 0, 0.0, 0.0, 0.0); });
BENCHMARK_CAPTURE(masked, DisplaySizeXY, [] { DisplaySizeXY(kScanner, kAllTracks, kAllSlots, 0, 1.0, 1.0); });
BENCHMARK_CAPTURE(masked, DisplayIntensity, [] { DisplayIntensity(kScanner, kAllTracks, kAllSlots, 0, 1.0); });

// The floor of each: the same arithmetic on the same fields, in the same
// packed layout (32 track records of 1,170 bytes, each with 8 slot records of
// 84 bytes, doubles and integers at odd offsets), without the masks and the
// slot counts. The values come from volatile variables, as a call's
// arguments would, so the compiler cannot fold the arithmetic away.
volatile double g_zero = 0.0, g_one = 1.0;
namespace layout = kalvor;
alignas(64) uint8_t g_tracks[32 * layout::track::size];

uint8_t* track_at(uint32_t t) { return g_tracks + t * layout::track::size; }
uint8_t* slot_at(uint32_t t, uint32_t s) { return track_at(t) + layout::track::slotsOffset + s * layout::slot::size; }

// fn(base) for every track, or for every slot of every track.
template <typename Fn>
void every_track(Fn fn) {
  for (uint32_t t = 0; t < 32; ++t) fn(track_at(t));
}
template <typename Fn>
void every_slot(Fn fn) {
  for (uint32_t t = 0; t < 32; ++t)
    for (uint32_t s = 0; s < 8; ++s) fn(slot_at(t, s));
}

template <typename Adjust>
void masked_floor(benchmark::State& state, Adjust adjust) {
  for (auto _ : state) {
    adjust();
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(masked_floor, DisplayAngleXYZ, [] {
  double d = g_zero * 360.0;
  every_slot([d](uint8_t* sl) {
    for (auto f : {layout::slot::angleX, layout::slot::angleY, layout::slot::angleZ})
      layout::store(sl, f, layout::load(sl, f) + d);
  });
});
BENCHMARK_CAPTURE(masked_floor, DisplayPivotXYZ, [] {
  double p = g_zero * 65535.0;
  every_slot([p](uint8_t* sl) {
    for (auto f : {layout::slot::pivotX, layout::slot::pivotY, layout::slot::pivotZ})
      layout::store(sl, f, static_cast<int32_t>(layout::load(sl, f) + p));
  });
});
BENCHMARK_CAPTURE(masked_floor, DisplaySizeXY, [] {
  double x = g_one, y = g_one;
  every_track([x, y](uint8_t* tr) {
    layout::store(tr, layout::track::sizeX, layout::load(tr, layout::track::sizeX) * x);
    layout::store(tr, layout::track::sizeY, layout::load(tr, layout::track::sizeY) * y);
  });
});
BENCHMARK_CAPTURE(masked_floor, DisplayIntensity, [] {
  double v = g_one;
  every_track([v](uint8_t* tr) {
    layout::store(tr, layout::track::intensity, layout::load(tr, layout::track::intensity) * v);
  });
});

const bool masked_rows =
    (kb::compare("DisplayAngleXYZ, 32 tracks x 8 slots", "masked/DisplayAngleXYZ",
                 "masked_floor/DisplayAngleXYZ", kb::Goal::measured),
     kb::compare("DisplayPivotXYZ, 32 tracks x 8 slots", "masked/DisplayPivotXYZ",
                 "masked_floor/DisplayPivotXYZ", kb::Goal::measured),
     kb::compare("DisplaySizeXY, 32 tracks", "masked/DisplaySizeXY", "masked_floor/DisplaySizeXY",
                 kb::Goal::measured),
     kb::compare("DisplayIntensity, 32 tracks", "masked/DisplayIntensity", "masked_floor/DisplayIntensity",
                 kb::Goal::measured),
     true);

// ---- DisplayInit --------------------------------------------------------------

// DisplayExit and DisplayInit: unbinds and binds the transport again and
// initialises the 20 scanner records.
void init(benchmark::State& state) {
  if (!kb::start(state)) return;
  for (auto _ : state) {
    DisplayExit();
    DisplayInit();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(init)->Unit(benchmark::kMillisecond);

// The floor: clearing the same 20 records.
void init_floor(benchmark::State& state) {
  static uint8_t table[20][kRecordBytes];
  for (auto _ : state) {
    std::memset(table, 0, sizeof table);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(init_floor)->Unit(benchmark::kMillisecond);

const bool init_rows = (kb::compare("DisplayInit (20 records, 21 MB)", "init", "init_floor", kb::Goal::measured), true);

// ---- picture commands -----------------------------------------------------------

// One round of the picture commands: set points, send the picture, read it
// back, ask for the picture total, clear, the test picture, direct points.
void picture_commands(benchmark::State& state) {
  if (!kb::start(state)) return;
  uint64_t before = kb::allocations();
  for (auto _ : state) {
    for (uint32_t i = 0; i < 64; ++i) displaysetpoint(kScanner, i, i, i, 0, i & 63, 0, 255, 255, 255);
    displaysetpic(kScanner, 1, 64);
    benchmark::DoNotOptimize(displaygetpic(kScanner, 1));
    benchmark::DoNotOptimize(GetMaxPic(kScanner));
    clearpicmem(kScanner);
    displaytestpic(kScanner, 2);
    displaydirectpoint(kScanner, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    displaydirect(kScanner, 1, 0, 0);
  }
  kb::report_allocations(state, before);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(picture_commands);

}  // namespace
