// Slot exports: each seen at its offset in the next track upload, the
// slotCount rule, and the arithmetic of the masked adjusters.
#include <limits>

#include "track_probe.h"

using namespace kt;

namespace {

// One quantity: the offset of its X field in a slot, its eleven exports,
// values for the setters, and what the masked adjusters leave in a default
// slot after being called twice with 0.25, 0.5 and -0.25.
template <typename T>
struct Family {
  size_t x;
  void (*one[3])(uint32_t, uint16_t, uint8_t, T);
  void (*three)(uint32_t, uint16_t, uint8_t, T, T, T);
  T (*get[3])(uint32_t, uint16_t, uint8_t);
  void (*masked1[3])(uint32_t, uint32_t, uint32_t, uint32_t, double);
  void (*masked3)(uint32_t, uint32_t, uint32_t, uint32_t, double, double, double);
  T v[3], masked[3];
};
#define FAMILY(at, lo, Up, ...) \
  {at, {display##lo##x, display##lo##y, display##lo##z}, display##lo, \
   {displayget##lo##x, displayget##lo##y, displayget##lo##z}, \
   {Display##Up##X, Display##Up##Y, Display##Up##Z}, Display##Up##XYZ, __VA_ARGS__}
// Positions truncate the sum: 16383 + 0.25 x 65535 = 32766.75 gives 32766.
#define POSITIONS {-7, 65535, INT32_MIN}, {32766, 65534, -32766}

const Family<double> kDoubles[] = {FAMILY(12, ang, Angle, {45, -1.5, 720.25}, {180, 360, -180}),
                                   FAMILY(60, scale, Scale, {2, -0.5, 0}, {0.0625, 0.25, 0.0625})};
const Family<int32_t> kPositions[] = {FAMILY(0, pivot, Pivot, POSITIONS), FAMILY(36, pre, PreMove, POSITIONS),
                                      FAMILY(48, post, PostMove, POSITIONS)};

constexpr size_t slot_at(int s, size_t field) { return 498 + 84 * static_cast<size_t>(s) + field; }

template <typename T>
void check_family(const Family<T>& f) {
  const double args[3] = {0.25, 0.5, -0.25};
  for (int a = 0; a < 3; ++a) {
    f.one[a](S, 4, 6, f.v[a]);
    EXPECT_EQ(f.get[a](S, 4, 6), f.v[a]) << "field " << f.x + sizeof(T) * a;
  }
  const Bytes values = b(f.v[0], f.v[1], f.v[2]), fields = b(f.masked[0], f.masked[1], f.masked[2]);
  // z to x, so that a write wider than its field shows on the next one. Slot
  // mask 0x102: bit 8 is ignored, so only slot 1 changes.
  auto one = [=] { for (int a = 2; a >= 0; --a) f.one[a](S, 2, 3, f.v[a]); };
  auto masked1 = [=] { for (int a = 2; a >= 0; --a) f.masked1[a](S, T02, 0x102, ~0u, args[a]); };
  auto masked3 = [=] { f.masked3(S, 1, 0x81, 0, 0.25, 0.5, -0.25); };
  // Every slot is sent, so that any slot write shows in the upload.
  check_rows({{"x, y, z", one, T2, {{slot_at(3, f.x), values}}},
              {"masked x, y, z", [=] { masked1(), masked1(); }, T02, {{slot_at(1, f.x), fields}}},
              {"xyz", [=] { f.three(S, 2, 7, f.v[0], f.v[1], f.v[2]); }, T2, {{slot_at(7, f.x), values}}},
              {"masked xyz", [=] { masked3(), masked3(); }, 1, {{slot_at(0, f.x), fields}, {slot_at(7, f.x), fields}}}},
             [] { displayscalex(S, 0, 7, 1), displayscalex(S, 1, 7, 1), displayscalex(S, 2, 7, 1); });
}

}  // namespace

TEST_F(KalvorTest, EverySlotExportWritesItsFieldAndNothingElse) {
  for (const auto& f : kDoubles) check_family(f);
  for (const auto& f : kPositions) check_family(f);
}

TEST_F(KalvorTest, SlotCountGrowsOnlyForWrittenSlots) {
  displayinittrack(S);
  displayframe(S, 3, 1);
  auto before = uploaded_tracks(4);
  DisplayAngleX(S, 0xF, 0, 0, 0.25);   // empty slot mask
  DisplayAngleX(S, 0, 0xFF, 0, 0.25);  // empty track mask
  displayangx(S, 0, 8, 1.0);           // bad numbers
  displayang(S, 32, 0, 1, 1, 1);
  DisplayAngleX(21, ~0u, 0xFF, 0, 1.0);
  EXPECT_EQ(displaygetangx(S, 0, 7) + displaygetangx(S, 0, 8) + displaygetangx(S, 32, 0) + displaygetangx(21, 0, 0),
            0);
  EXPECT_EQ(uploaded_tracks(4), before);  // getters never raise slotCount

  displayangx(S, 0, 0, 5.0);                      // slot 0 needs only one
  DisplayAngleX(S, 1, 0x80, 0, 0.25);             // slot 7 of track 0
  DisplayPivotXYZ(S, 0b0010, 0x105, 0, 0, 0, 0);  // slots 0 and 2 of track 1
  displayscalez(S, 3, 2, 1.0);
  displayangx(S, 0, 1, 0.0);  // never lowered
  std::vector<int> counts;  // slotCount of tracks 0..3
  for (const Bytes& t : uploaded_tracks(4)) counts.push_back(t.size() > 497 ? t[497] : -1);
  EXPECT_EQ(counts, (std::vector<int>{8, 3, 1, 3}));
  EXPECT_EQ(displaygetscalex(S, 0, 4), 1.0);  // slots between keep their defaults
}

TEST_F(KalvorTest, SlotPositionsTruncateTheSumAndSaturate) {
  displayinittrack(S);
  // The sign of the stored value decides which way the fraction goes.
  displaypivotx(S, 0, 0, 5);
  displaypivotx(S, 0, 1, -5);
  DisplayPivotX(S, 1, 0b11, 0, 0.3 / 65535);
  // Beyond the 32-bit range the sum saturates; NaN converts to 0.
  displayprey(S, 0, 0, INT32_MAX);
  displayprey(S, 0, 1, 7);
  DisplayPreMoveY(S, 1, 1, 0, 1.0);
  DisplayPreMoveY(S, 1, 2, 0, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ((std::vector<int32_t>{displaygetpivotx(S, 0, 0), displaygetpivotx(S, 0, 1), displaygetprey(S, 0, 0),
                                  displaygetprey(S, 0, 1)}),
            (std::vector<int32_t>{5, -4, INT32_MAX, 0}));
}
