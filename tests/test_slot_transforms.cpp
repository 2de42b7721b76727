// Slot exports: every export seen at its offset in the next track upload,
// the slotCount rule, and the arithmetic of the masked adjusters.
#include <cmath>
#include <limits>

#include "track_probe.h"

using namespace kt;

namespace {

constexpr size_t slot_at(int s, size_t field) { return 498 + 84 * static_cast<size_t>(s) + field; }

using Masked1 = void (*)(uint32_t, uint32_t, uint32_t, uint32_t, double);
using Masked3 = void (*)(uint32_t, uint32_t, uint32_t, uint32_t, double, double, double);

// One quantity: its X field's offset in the slot and its eleven exports.
// `masked` holds what the masked adjusters leave in a default slot for the
// arguments 0.25, 0.5 and -0.25.
template <typename T>
struct Family {
  const char* name;
  size_t x;
  void (*one[3])(uint32_t, uint16_t, uint8_t, T);
  void (*three)(uint32_t, uint16_t, uint8_t, T, T, T);
  T (*get[3])(uint32_t, uint16_t, uint8_t);
  Masked1 masked1[3];
  Masked3 masked3;
  T masked[3];
};

const Family<double> kDoubles[] = {
    {"angle", 12, {displayangx, displayangy, displayangz}, displayang,
     {displaygetangx, displaygetangy, displaygetangz}, {DisplayAngleX, DisplayAngleY, DisplayAngleZ}, DisplayAngleXYZ,
     {90.0, 180.0, -90.0}},
    {"scale", 60, {displayscalex, displayscaley, displayscalez}, displayscale,
     {displaygetscalex, displaygetscaley, displaygetscalez}, {DisplayScaleX, DisplayScaleY, DisplayScaleZ},
     DisplayScaleXYZ, {0.25, 0.5, -0.25}},
};
// Positions truncate the sum: 0.25 x 65535 = 16383.75 gives 16383.
const Family<int32_t> kPositions[] = {
    {"pivot", 0, {displaypivotx, displaypivoty, displaypivotz}, displaypivot,
     {displaygetpivotx, displaygetpivoty, displaygetpivotz}, {DisplayPivotX, DisplayPivotY, DisplayPivotZ},
     DisplayPivotXYZ, {16383, 32767, -16383}},
    {"pre-move", 36, {displayprex, displayprey, displayprez}, displaypre,
     {displaygetprex, displaygetprey, displaygetprez}, {DisplayPreMoveX, DisplayPreMoveY, DisplayPreMoveZ},
     DisplayPreMoveXYZ, {16383, 32767, -16383}},
    {"post-move", 48, {displaypostx, displayposty, displaypostz}, displaypost,
     {displaygetpostx, displaygetposty, displaygetpostz}, {DisplayPostMoveX, DisplayPostMoveY, DisplayPostMoveZ},
     DisplayPostMoveXYZ, {16383, 32767, -16383}},
};

// Every slot is sent, so that any slot write shows in the upload.
void all_slots_sent() {
  for (uint16_t t = 0; t < 3; ++t) displayscalex(kProbeScanner, t, 7, 1.0);
}

template <typename T>
std::vector<Row> family_rows(const Family<T>& f, const T (&v)[3]) {
  std::vector<Row> rows;
  const double args[3] = {0.25, 0.5, -0.25};
  for (int a = 0; a < 3; ++a) {
    size_t at = f.x + sizeof(T) * a;
    rows.push_back({f.name, [=] { f.one[a](kProbeScanner, 2, 3, v[a]); }, 0b100, {{slot_at(3, at), le_bytes(v[a])}}});
    // Slot mask 0x102: bit 8 is ignored, so only slot 1 changes.
    rows.push_back({f.name, [=] { f.masked1[a](kProbeScanner, 0b101, 0x102, 0xFFFFFFFF, args[a]); }, 0b101,
                    {{slot_at(1, at), le_bytes(f.masked[a])}}});
  }
  rows.push_back({f.name, [=] { f.three(kProbeScanner, 2, 7, v[0], v[1], v[2]); }, 0b100,
                  {{slot_at(7, f.x), concat({le_bytes(v[0]), le_bytes(v[1]), le_bytes(v[2])})}}});
  rows.push_back({f.name, [=] { f.masked3(kProbeScanner, 0b001, 0x81, 0, 0.25, 0.5, -0.25); }, 0b001,
                  {{slot_at(0, f.x), concat({le_bytes(f.masked[0]), le_bytes(f.masked[1]), le_bytes(f.masked[2])})},
                   {slot_at(7, f.x), concat({le_bytes(f.masked[0]), le_bytes(f.masked[1]), le_bytes(f.masked[2])})}}});
  return rows;
}

template <typename T>
void check_getters(const Family<T>& f, const T (&v)[3]) {
  for (int a = 0; a < 3; ++a) {
    f.one[a](kProbeScanner, 4, 6, v[a]);
    EXPECT_EQ(f.get[a](kProbeScanner, 4, 6), v[a]) << f.name;
    EXPECT_EQ(f.get[a](kProbeScanner, 4, 8), T{}) << f.name;   // slot out of range
    EXPECT_EQ(f.get[a](kProbeScanner, 32, 6), T{}) << f.name;  // track out of range
    EXPECT_EQ(f.get[a](21, 4, 6), T{}) << f.name;
  }
}

// slotCount of tracks 0..3 (track 3 must be active).
std::vector<int> slot_counts() {
  std::vector<int> counts;
  for (const Bytes& t : uploaded_tracks(4)) counts.push_back(t.empty() ? -1 : t[497]);
  return counts;
}

}  // namespace

TEST_F(KalvorTest, EverySlotExportWritesItsFieldAndNothingElse) {
  const double angles[3] = {45.0, -1.5, 720.25};
  const double scales[3] = {2.0, -0.5, 0.0};
  const int32_t positions[3] = {-7, 65535, INT32_MIN};
  std::vector<Row> rows = family_rows(kDoubles[0], angles);
  for (const Row& r : family_rows(kDoubles[1], scales)) rows.push_back(r);
  for (const auto& f : kPositions)
    for (const Row& r : family_rows(f, positions)) rows.push_back(r);
  ASSERT_EQ(rows.size(), 40u);
  check_rows(rows, all_slots_sent);

  check_getters(kDoubles[0], angles);
  check_getters(kDoubles[1], scales);
  for (const auto& f : kPositions) check_getters(f, positions);
}

TEST_F(KalvorTest, SlotCountGrowsOnlyForWrittenSlots) {
  displayinittrack(1);
  displayframe(1, 3, 1);
  EXPECT_EQ(slot_counts(), (std::vector<int>{1, 1, 1, 1}));

  DisplayAngleX(1, 0xF, 0, 0, 0.25);  // empty slot mask
  DisplayAngleX(1, 0, 0xFF, 0, 0.25);  // empty track mask
  EXPECT_EQ(displaygetangx(1, 7, 7), 0.0);  // getters never raise it
  displayangx(1, 0, 0, 5.0);  // slot 0 needs only one
  EXPECT_EQ(slot_counts(), (std::vector<int>{1, 1, 1, 1}));

  DisplayAngleX(1, 0b0001, 0x80, 0, 0.25);   // slot 7 of track 0
  DisplayPivotXYZ(1, 0b0010, 0x105, 0, 0, 0, 0);  // slots 0 and 2 of track 1
  displayscalez(1, 3, 2, 1.0);
  EXPECT_EQ(slot_counts(), (std::vector<int>{8, 3, 1, 3}));
  EXPECT_EQ(displaygetangx(1, 0, 7), 90.0);
  EXPECT_EQ(displaygetscalex(1, 0, 4), 1.0);  // slots between keep their defaults

  displayangx(1, 0, 1, 0.0);  // never lowered
  EXPECT_EQ(slot_counts()[0], 8);
  displayinittrack(1);
  displayframe(1, 3, 1);
  EXPECT_EQ(slot_counts(), (std::vector<int>{1, 1, 1, 1}));
}

TEST_F(KalvorTest, SlotArithmetic) {
  displayinittrack(1);
  // Positions truncate the sum, so the sign of the stored value matters.
  const double p03 = 0.3 / 65535.0;
  displaypivotx(1, 0, 0, 5);
  DisplayPivotX(1, 1, 1, 0, p03);
  EXPECT_EQ(displaygetpivotx(1, 0, 0), 5);
  displaypivotx(1, 0, 0, -5);
  DisplayPivotX(1, 1, 1, 0, p03);
  EXPECT_EQ(displaygetpivotx(1, 0, 0), -4);
  displaypostz(1, 0, 0, 0);
  DisplayPostMoveZ(1, 1, 1, 0, -0.5);
  EXPECT_EQ(displaygetpostz(1, 0, 0), -32767);
  // Beyond the 32-bit range the sum saturates; NaN converts to 0.
  displayprey(1, 0, 0, INT32_MAX);
  DisplayPreMoveY(1, 1, 1, 0, 1.0);
  EXPECT_EQ(displaygetprey(1, 0, 0), INT32_MAX);
  DisplayPreMoveY(1, 1, 1, 0, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(displaygetprey(1, 0, 0), 0);

  // Angles accumulate without reduction.
  for (int i = 0; i < 4; ++i) DisplayAngleZ(1, 1, 1, 0, 0.5);
  EXPECT_EQ(displaygetangz(1, 0, 0), 720.0);

  // A scale of 0 stays 0 under masked scaling; a negative factor flips it.
  DisplayScaleX(1, 1, 1, 0, 0.0);
  DisplayScaleX(1, 1, 1, 0, 3.0);
  EXPECT_EQ(displaygetscalex(1, 0, 0), 0.0);
  DisplayScaleY(1, 1, 1, 0, -2.0);
  EXPECT_EQ(displaygetscaley(1, 0, 0), -2.0);
}

TEST_F(KalvorTest, SlotNumbersOutOfRangeAreIgnored) {
  displayinittrack(1);
  displayframe(1, 3, 1);
  auto before = uploaded_tracks(4);
  displayangx(1, 0, 8, 1.0);
  displayang(1, 32, 0, 1.0, 1.0, 1.0);
  displaypivot(21, 0, 0, 1, 1, 1);
  DisplayAngleX(21, 0xFFFFFFFF, 0xFF, 0, 1.0);
  EXPECT_EQ(uploaded_tracks(4), before);
}
