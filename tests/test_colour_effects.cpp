// Track colour effects: every setter seen at its offset in the next track
// upload, the limits of the masked factors, and the three colour commands.
#include <cmath>
#include <limits>

#include "track_probe.h"

using namespace kt;

namespace {
constexpr uint32_t S = kProbeScanner;
constexpr uint32_t T2 = 0b100, T02 = 0b101;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
}  // namespace

TEST_F(KalvorTest, EveryColourEffectWritesItsFieldAndNothingElse) {
  check_rows({
      {"displayintensity", [] { displayintensity(S, 2, 0.25); }, T2, {{139, f64(0.25)}}},
      {"displayintensity high", [] { displayintensity(S, 2, 1.2); }, T2, {}},
      {"displayintensity low", [] { displayintensity(S, 2, -1.0); }, T2, {{139, f64(0.0)}}},
      {"displaycolor", [] { displaycolor(S, 2, 0xA5); }, T2, {{121, u8(0xA5)}}},
      {"displayrgbcolor", [] { displayrgbcolor(S, 2, -3.5); }, T2, {{122, f64(-3.5)}}},
      {"displaycolorshift", [] { displaycolorshift(S, 2, 9.5); }, T2, {{131, f64(9.5)}}},
      {"displaysparkling", [] { displaysparkling(S, 2, 0xBEEF, 0xA5); }, T2, {{0, concat({u16(0xBEEF), u8(0xA5)})}}},
      {"DisplayR", [] { DisplayR(S, T02, 1, 2, 3, 4, 5, 6); }, T02,
       {{19, f64(1)}, {43, f64(2)}, {67, f64(3)}, {91, f64(4)}, {115, u8(5)}, {118, u8(6)}}},
      {"DisplayG", [] { DisplayG(S, T02, 1, 2, 3, 4, 5, 6); }, T02,
       {{27, f64(1)}, {51, f64(2)}, {75, f64(3)}, {99, f64(4)}, {116, u8(5)}, {119, u8(6)}}},
      {"DisplayB", [] { DisplayB(S, T02, 1, 2, 3, 4, 5, 6); }, T02,
       {{35, f64(1)}, {59, f64(2)}, {83, f64(3)}, {107, f64(4)}, {117, u8(5)}, {120, u8(6)}}},
      {"DisplayIntensity", [] { DisplayIntensity(S, T02, 0xFF, 7, 0.5), DisplayIntensity(S, T02, 0, 0, 0.5); }, T02,
       {{139, f64(0.25)}}},
      {"DisplayIntensity high", [] { DisplayIntensity(S, T02, 0, 0, 1.7); }, T02, {}},
      {"TDisplayIntensity", [] { TDisplayIntensity(S, T02, 0, 0, -0.3); }, T02, {{139, f64(0)}}},
      {"DisplayRotR", [] { DisplayRotR(S, T02, 0, 0, 0.5); }, T02, {{147, f64(0.5)}}},
      {"DisplayRotG", [] { DisplayRotG(S, T02, 0, 0, 0.5); }, T02, {{155, f64(0.5)}}},
      {"DisplayRotB", [] { DisplayRotB(S, T02, 0, 0, 1.5); }, T02, {}},
      {"DisplayCenterRecolorR", [] { DisplayCenterRecolorR(S, T02, 0, 0, 0.5); }, T02, {{179, f64(0.5)}}},
      {"DisplayCenterRecolorG", [] { DisplayCenterRecolorG(S, T02, 0, 0, 0.5); }, T02, {{187, f64(0.5)}}},
      {"DisplayCenterRecolorB", [] { DisplayCenterRecolorB(S, T02, 0, 0, 0.5); }, T02, {{195, f64(0.5)}}},
      {"DisplayHue", [] { DisplayHue(S, T02, 0, 0, 1.5); }, T02, {{284, f64(1.5)}}},
      {"DisplaySaturation", [] { DisplaySaturation(S, T02, 0, 0, 2.5), DisplaySaturation(S, T02, 0, 0, 2.5); },
       T02, {{292, f64(4.0)}}},
      {"DisplayLightness", [] { DisplayLightness(S, T02, 0, 0, -1); }, T02, {{300, f64(0)}}},
      {"DisplayHotSpot", [] { DisplayHotSpot(S, T02, 0, 0, 2.0), DisplayHotSpot(S, T02, 0, 0, 4.0); }, T02,
       {{171, f64(3.0)}}},
      {"DisplayHotSpot low", [] { DisplayHotSpot(S, T02, 0, 0, -4.0); }, T02, {}},
      {"trackMask 0", [] { DisplayHue(S, 0, 0xFF, 0, 0.5), DisplayR(S, 0, 1, 1, 1, 1, 1, 1); }, 0, {}},
  });
}

TEST_F(KalvorTest, ColourLimitsLetNaNPass) {
  displayinittrack(1);
  displayframe(1, 0, 1);
  displayintensity(1, 0, kNaN);
  DisplayHue(1, 1, 0, 0, kNaN);
  DisplayHotSpot(1, 1, 0, 0, kNaN);
  Bytes t = uploaded_tracks(1)[0];
  for (size_t offset : {139, 284, 171}) EXPECT_TRUE(std::isnan(le<double>(t, offset))) << offset;
}

TEST_F(KalvorTest, ColourCommands) {
  displaysparkle(3, 0x0102, 0x0304, 0x0506, 1.0);
  displaysparkle(3, 0, 0, 0, 0.99);
  displaysparkle(3, 0, 0, 0, 0.5);
  displaysparkle(3, 0, 0, 0, -2.0);
  displaysparkle(3, 0, 0, 0, kNaN);
  displayequalize(3, 0x0102, 0x0304, 0x0506);
  displaydynamicint(3, 200, 200, 16, 15, 16, 50, 0x1234);
  displaydynamicint(3, 1, 2, 3, 4, 5, 100, 99);
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{
                             {0x20, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05, 15},
                             {0x20, 0, 0, 0, 0, 0, 0, 14},
                             {0x20, 0, 0, 0, 0, 0, 0, 7},
                             {0x20, 0, 0, 0, 0, 0, 0, 0},
                             {0x20, 0, 0, 0, 0, 0, 0, 0},
                             {0x1F, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05},
                             {0x17, 200, 15, 16, 15, 15, 100, 0, 0x34, 0x12},
                             {0x17, 1, 2, 3, 4, 5, 100, 0, 100, 0},
                         }));
  EXPECT_FALSE(rec.at(0).reply);
  EXPECT_EQ(rec.at(0).scanner, 3u);
  rec.clear();
  DisplayExit();
  displayequalize(3, 1, 2, 3);
  EXPECT_EQ(rec.count(), 0);
}
