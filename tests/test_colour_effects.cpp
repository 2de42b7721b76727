// Track colour effects and UGC values: each setter seen at its offset in the
// next track upload, and the limits of the masked factors.
#include <limits>

#include "track_probe.h"

using namespace kt;

namespace {
const double kNaN = std::numeric_limits<double>::quiet_NaN();
}  // namespace

TEST_F(KalvorTest, EveryColourEffectAndUgcValueWritesItsFieldAndNothingElse) {
  // Limits let NaN pass: it is stored (or multiplies the field) unchanged.
  check_rows({
      SET(displayintensity, 0.25, {139, b(0.25)}),
      SET(displayintensity, 1.2),
      SET(displayintensity, -1.0, {139, b(0.0)}),
      SET(displayintensity, kNaN, {139, b(kNaN)}),
      SET(displaycolor, 0xA5, {121, {0xA5}}),
      SET(displayrgbcolor, -3.5, {122, b(-3.5)}),
      SET(displaycolorshift, 9.5, {131, b(9.5)}),
      ROW(displaysparkling(S, 2, 0xBEEF, 0xA5), T2, {0, b(u16(0xBEEF), uint8_t{0xA5})}),
      ROW(DisplayR(S, T02, 1, 2, 3, 4, 5, 6), T02, {19, b(1.)}, {43, b(2.)}, {67, b(3.)}, {91, b(4.)}, {115, {5}},
        {118, {6}}),
      ROW(DisplayG(S, T02, 1, 2, 3, 4, 5, 6), T02, {27, b(1.)}, {51, b(2.)}, {75, b(3.)}, {99, b(4.)}, {116, {5}},
        {119, {6}}),
      ROW(DisplayB(S, T02, 1, 2, 3, 4, 5, 6), T02, {35, b(1.)}, {59, b(2.)}, {83, b(3.)}, {107, b(4.)}, {117, {5}},
        {120, {6}}),
      ROW((DisplayIntensity(S, T02, 0xFF, 7, 0.5), DisplayIntensity(S, T02, 0, 0, 0.5)), T02, {139, b(0.25)}),
      MASK(DisplayIntensity, 1.7),
      MASK(TDisplayIntensity, 0.5, {139, b(0.25)}),
      MASK(DisplayRotR, 0.5, {147, b(0.25)}),
      MASK(DisplayRotG, 0.5, {155, b(0.25)}),
      MASK(DisplayRotB, 0.5, {163, b(0.25)}),
      MASK(DisplayCenterRecolorR, 0.5, {179, b(0.25)}),
      MASK(DisplayCenterRecolorG, 0.5, {187, b(0.25)}),
      MASK(DisplayCenterRecolorB, 0.5, {195, b(0.25)}),
      MASK(DisplayHue, 1.5, {284, b(2.25)}),
      MASK(DisplayHue, kNaN, {284, b(kNaN)}),
      MASK(DisplaySaturation, 2.5, {292, b(4.)}),
      MASK(DisplayLightness, -1, {300, b(0.)}),
      MASK2(DisplayHotSpot, 2.0, 4.0, {171, b(3.)}),
      MASK(DisplayHotSpot, -4.0),
      MASK(DisplayHotSpot, kNaN, {171, b(kNaN)}),
      ROW((DisplayHue(S, 0, 0xFF, 0, 0.5), DisplayR(S, 0, 1, 1, 1, 1, 1, 1)), 0),  // empty track mask
      ROW(displaytrackugc(S, T02, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10.5, 0xA5), T02,
        {203, b(1., 2., 3., 4., 5., 6., 7., 8., 9., 10.5, uint8_t{0xA5})}),
      ROW(displaytrackugc(S, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 1), 0),
  });
}

