// Track geometry: every export seen at its offset in the next track upload,
// and the arithmetic of the masked exports.
#include <cmath>
#include <limits>

#include "track_probe.h"

using namespace kt;

namespace {

constexpr uint32_t S = kProbeScanner;
constexpr uint32_t T2 = 0b100, T02 = 0b101;  // expected tracks: immediate on 2, masked on 0 and 2
const double kNaN = std::numeric_limits<double>::quiet_NaN();

Bytes f64s(std::initializer_list<double> v) {
  Bytes b;
  for (double d : v) b = concat({b, f64(d)});
  return b;
}

}  // namespace

TEST_F(KalvorTest, EveryTrackGeometryExportWritesItsFieldAndNothingElse) {
  check_rows({
      {"displayworldangx", [] { displayworldangx(S, 2, 12.5); }, T2, {{341, f64(12.5)}}},
      {"displayworldangy", [] { displayworldangy(S, 2, 12.5); }, T2, {{349, f64(12.5)}}},
      {"displayworldangz", [] { displayworldangz(S, 2, 12.5); }, T2, {{357, f64(12.5)}}},
      {"displayworldang", [] { displayworldang(S, 2, 1, 2, 3); }, T2, {{341, f64s({1, 2, 3})}}},
      {"displaysizex", [] { displaysizex(S, 2, 3.5); }, T2, {{381, f64(3.5)}}},
      {"displaysizey", [] { displaysizey(S, 2, 3.5); }, T2, {{389, f64(3.5)}}},
      {"displaysize", [] { displaysize(S, 2, 4, 5); }, T2, {{381, f64s({4, 5})}}},
      {"displayclip", [] { displayclip(S, 2, 1, 2, -3, 4, 5, 6); }, T2,
       {{365, concat({u16(1), u16(2), u16(4), u16(5), i32(-3), i32(6)})}}},
      {"displayclipx1", [] { displayclipx1(S, 2, 0xBEEF); }, T2, {{365, u16(0xBEEF)}}},
      {"displayclipy1", [] { displayclipy1(S, 2, 0xBEEF); }, T2, {{367, u16(0xBEEF)}}},
      {"displayclipx2", [] { displayclipx2(S, 2, 0xBEEF); }, T2, {{369, u16(0xBEEF)}}},
      {"displayclipy2", [] { displayclipy2(S, 2, 0xBEEF); }, T2, {{371, u16(0xBEEF)}}},
      {"displayclipz1", [] { displayclipz1(S, 2, -70000); }, T2, {{373, i32(-70000)}}},
      {"displayclipz2", [] { displayclipz2(S, 2, -70000); }, T2, {{377, i32(-70000)}}},
      {"displaydepthcue", [] { displaydepthcue(S, 2, 0x01020304, 0xF0E0D0C0); }, T2,
       {{429, concat({le_bytes<uint32_t>(0x01020304), le_bytes<uint32_t>(0xF0E0D0C0)})}}},
      {"displayscanlimits", [] { displayscanlimits(S, 2, -0.5, 7.0); }, T2, {{3, f64s({-0.5, 7.0})}}},
      {"displayscanlimits 65539", [] { displayscanlimits(S, 65536 + 2, 1, 1); }, 0, {}},
      {"displayrotationorder", [] { displayrotationorder(S, 2, 0xA5); }, T2, {{340, u8(0xA5)}}},
      {"displaypipeline", [] { displaypipeline(S, 2, 0xDEADBEEF); }, T2, {{336, le_bytes<uint32_t>(0xDEADBEEF)}}},
      {"displaysurface", [] { displaysurface(S, 2, 0xA5); }, T2, {{321, u8(0xA5)}}},
      {"displayflags", [] { displayflags(S, 2, 0xA55A); }, T2, {{334, u16(0xA55A)}}},
      {"displaysetflag", [] { displayflags(S, 2, 1), displaysetflag(S, 2, 4); }, T2, {{334, u16(5)}}},
      {"displayworld", [] { displayworld(S, 2, 0xA5); }, T2, {{130, u8(0xA5)}}},
      {"displayframe", [] { displayframe(S, 2, 0x1234); }, T2, {{322, u16(0x1234)}}},
      {"displaymorphing", [] { displaymorphing(S, 2, 7, 8, 1.7); }, T2, {{322, concat({u16(7), u16(8), f64(1.7)})}}},

      {"DisplayWorldAngleX", [] { DisplayWorldAngleX(S, T02, 0xFF, 9, 0.25); }, T02, {{341, f64(90)}}},
      {"DisplayWorldAngleY", [] { DisplayWorldAngleY(S, T02, 0, 0, 0.25); }, T02, {{349, f64(90)}}},
      {"DisplayWorldAngleZ", [] { DisplayWorldAngleZ(S, T02, 0, 0, 0.25); }, T02, {{357, f64(90)}}},
      {"DisplayWorldAngleXYZ", [] { DisplayWorldAngleXYZ(S, T02, 0, 0, 0.25, 0, -0.5); }, T02,
       {{341, f64s({90, 0, -180})}}},
      {"DisplayRotateX", [] { DisplayRotateX(S, T02, 0, 0, 0.25); }, T02, {{405, f64(90)}}},
      {"DisplayRotateY", [] { DisplayRotateY(S, T02, 0, 0, 0.25); }, T02, {{413, f64(90)}}},
      {"DisplayRotateZ", [] { DisplayRotateZ(S, T02, 0, 0, 1), DisplayRotateZ(S, T02, 0, 0, 1); }, T02,
       {{421, f64(720)}}},
      {"DisplaySizeX", [] { DisplaySizeX(S, T02, 0, 0, 0.5), DisplaySizeX(S, T02, 0, 0, 0.5); }, T02,
       {{381, f64(0.25)}}},
      {"DisplaySizeY", [] { DisplaySizeY(S, T02, 0, 0, 0.5); }, T02, {{389, f64(0.5)}}},
      {"TDisplaySizeX", [] { TDisplaySizeX(S, T02, 0, 0, 0.5); }, T02, {{381, f64(0.5)}}},
      {"TDisplaySizeY", [] { TDisplaySizeY(S, T02, 0, 0, 0.5); }, T02, {{389, f64(0.5)}}},
      {"DisplaySizeXY", [] { DisplaySizeXY(S, T02, 0, 0, 3, -2); }, T02, {{381, f64s({3, -2})}}},
      // Shift and view truncate the increment: twice 0.5 is 65534, 0.00001 moves nothing.
      {"DisplayShiftX", [] { DisplayShiftX(S, T02, 0, 0, 0.5), DisplayShiftX(S, T02, 0, 0, 0.5); }, T02,
       {{397, i32(65534)}}},
      {"DisplayShiftY", [] { DisplayShiftY(S, T02, 0, 0, -0.5), DisplayShiftY(S, T02, 0, 0, 0.00001); }, T02,
       {{401, i32(-32767)}}},
      {"TDisplayShiftX", [] { TDisplayShiftX(S, T02, 0, 0, 0.5), TDisplayShiftX(S, T02, 0, 0, 0.5); }, T02,
       {{397, i32(65534)}}},
      {"TDisplayShiftY", [] { TDisplayShiftY(S, T02, 0, 0, -0.5); }, T02, {{401, i32(-32767)}}},
      {"DisplayShiftXY", [] { DisplayShiftXY(S, T02, 0, 0, 1, -1); }, T02, {{397, concat({i32(65535), i32(-65535)})}}},
      {"DisplayViewX", [] { DisplayViewX(S, T02, 0, 0, 0.5); }, T02, {{485, i32(32767)}}},
      {"DisplayViewY", [] { DisplayViewY(S, T02, 0, 0, 0.5); }, T02, {{489, i32(32767)}}},
      {"DisplayViewZ", [] { DisplayViewZ(S, T02, 0, 0, 0.5); }, T02, {{493, i32(32767)}}},
      {"DisplayViewXYZ", [] { DisplayViewXYZ(S, T02, 0, 0, 0.5, -1, 2); }, T02,
       {{485, concat({i32(32767), i32(-65535), i32(131070)})}}},
      {"DisplayShearXByY", [] { DisplayShearXByY(S, T02, 0, 0, 0.1), DisplayShearXByY(S, T02, 0, 0, 0.1); }, T02,
       {{437, f64(0.1)}}},
      {"DisplayShearXByZ", [] { DisplayShearXByZ(S, T02, 0, 0, 0.1); }, T02, {{445, f64(0.1)}}},
      {"DisplayShearYByX", [] { DisplayShearYByX(S, T02, 0, 0, 0.1); }, T02, {{453, f64(0.1)}}},
      {"DisplayShearYByZ", [] { DisplayShearYByZ(S, T02, 0, 0, 0.1); }, T02, {{461, f64(0.1)}}},
      {"DisplayShearZByX", [] { DisplayShearZByX(S, T02, 0, 0, 0.1); }, T02, {{469, f64(0.1)}}},
      {"DisplayShearZByY", [] { DisplayShearZByY(S, T02, 0, 0, 0.1); }, T02, {{477, f64(0.1)}}},
      {"DisplayShear", [] { DisplayShear(S, T02, 0, 0, 1, 2, 3, 4, 5, 6); }, T02, {{437, f64s({1, 2, 3, 4, 5, 6})}}},
      // Clip rectangle: low 16 bits of the truncated product.
      {"DisplayClipX1", [] { DisplayClipX1(S, T02, 0, 0, 1.5); }, T02, {{365, u16(32766)}}},
      {"DisplayClipY1", [] { DisplayClipY1(S, T02, 0, 0, -0.5); }, T02, {{367, u16(32769)}}},
      {"DisplayClipX2", [] { DisplayClipX2(S, T02, 0, 0, 0.5); }, T02, {{369, u16(32767)}}},
      {"DisplayClipY2", [] { DisplayClipY2(S, T02, 0, 0, 0.0); }, T02, {{371, u16(0)}}},
      {"DisplayClipZ1", [] { DisplayClipZ1(S, T02, 0, 0, 1.5); }, T02, {{373, i32(98302)}}},
      {"DisplayClipZ2", [] { DisplayClipZ2(S, T02, 0, 0, -0.5); }, T02, {{377, i32(-32767)}}},
      {"DisplayClipCube", [] { DisplayClipCube(S, T02, 0, 0, 0.5, 1.5, -2, 0.25, 0, 3); }, T02,
       {{365, concat({u16(32767), u16(32766), u16(16383), u16(0), i32(-131070), i32(196605)})}}},
      {"DisplayPipeline", [] { DisplayPipeline(S, T02, 0, 0, 2.0); }, T02, {{336, le_bytes<uint32_t>(131070)}}},
      {"DisplayPipeline negative", [] { displaypipeline(S, 2, 77), DisplayPipeline(S, T02, 0, 0, -0.2); }, T02, {}},
      {"DisplayPrism", [] { DisplayPrism(S, T02, 30, 5.0, 0xA5); }, T02,
       {{308, concat({le_bytes<uint32_t>(24), f64(4.0), u8(0xA5)})}}},
      {"DisplayPrism low", [] { DisplayPrism(S, T02, -1, -10.0, 1); }, T02,
       {{308, concat({le_bytes<uint32_t>(0), f64(-4.0), u8(1)})}}},
      {"trackMask 0", [] { DisplayViewX(S, 0, 0xFF, 0xFF, 1), DisplayPrism(S, 0, 3, 1, 1); }, 0, {}},
  });
}

TEST_F(KalvorTest, TrackGeometryArithmetic) {
  displayinittrack(1);
  // The increment is truncated, not the sum: 32767 - 0.65535 stays 32767.
  DisplayShiftX(1, 1, 0, 0, 0.5);
  DisplayShiftX(1, 1, 0, 0, -0.00001);
  displayframe(1, 0, 1);
  EXPECT_EQ(le<int32_t>(uploaded_tracks(1)[0], 397), 32767);
  // Additions wrap around in 32 bits.
  DisplayViewY(1, 1, 0, 0, 30000.0);  // 1,966,050,000
  DisplayViewY(1, 1, 0, 0, 30000.0);
  EXPECT_EQ(le<int32_t>(uploaded_tracks(1)[0], 489), static_cast<int32_t>(3932100000u));

  // NaN: the pipeline's lower bound lets it pass and it converts to 0; the
  // prism factor passes its limits and is stored.
  displaypipeline(1, 0, 77);
  DisplayPipeline(1, 1, 0, 0, kNaN);
  DisplayPrism(1, 1, 100, kNaN, 0);
  Bytes t = uploaded_tracks(1)[0];
  EXPECT_EQ(le<uint32_t>(t, 336), 0u);
  EXPECT_TRUE(std::isnan(le<double>(t, 312)));
  EXPECT_EQ(le<uint32_t>(t, 308), 24u);

  // Getters and out-of-range tracks.
  displaysize(1, 5, 2.5, -1.0);
  EXPECT_EQ(displaygetsizex(1, 5), 2.5);
  EXPECT_EQ(displaygetsizey(1, 5), -1.0);
  EXPECT_EQ(displaygetsizex(1, 32), 0.0);
  EXPECT_EQ(displaygetsizey(21, 5), 0.0);
  displaysizex(1, 32, 9.0);
  displaysetflag(21, 0, 1);
  EXPECT_EQ(uploaded_tracks(1)[0], t);
}

TEST_F(KalvorTest, FrameDecidesWhichTracksAreSent) {
  displayinittrack(1);
  displayframe(1, 2, 5);
  displayframe(1, 6, 5);
  displayupdate(1);
  EXPECT_EQ(le<uint16_t>(rec.at(0).bytes, 1), 7);
  displayframe(1, 2, 0);  // below another active track: only its number changes
  rec.clear();
  displayupdate(1);
  EXPECT_EQ(le<uint16_t>(rec.at(0).bytes, 1), 7);
  displaymorphing(1, 6, 0, 3, 0.5);  // the highest one goes: fewer tracks are sent
  rec.clear();
  displayupdate(1);
  EXPECT_EQ(rec.at(0).bytes, (Bytes{0x01, 0x00, 0x00}));
}
