// Track geometry: each export seen at its offset in the next track upload,
// and the arithmetic of the masked exports.
#include <cmath>
#include <limits>

#include "track_probe.h"

using namespace kt;

TEST_F(KalvorTest, EveryTrackGeometryExportWritesItsFieldAndNothingElse) {
  // Exports of one family run from the last field to the first, so that a
  // write wider than its field shows on the field after it.
  check_rows({
      ROW((displayworldangz(S, 2, 3), displayworldangy(S, 2, 2), displayworldangx(S, 2, 1)), T2, {341, b(1., 2., 3.)}),
      ROW(displayworldang(S, 2, 1, 2, 3), T2, {341, b(1., 2., 3.)}),
      ROW((displaysizey(S, 2, 4.5), displaysizex(S, 2, 3.5)), T2, {381, b(3.5, 4.5)}),
      ROW(displaysize(S, 2, 4, 5), T2, {381, b(4., 5.)}),
      ROW(displayclip(S, 2, 1, 2, -3, 4, 5, 6), T2, {365, b(u16(1), u16(2), u16(4), u16(5), -3, 6)}),
      ROW((displayclipz2(S, 2, 70001), displayclipz1(S, 2, -70000), displayclipy2(S, 2, 0x5678),
           displayclipx2(S, 2, 0x1234), displayclipy1(S, 2, 0xCAFE), displayclipx1(S, 2, 0xBEEF)),
          T2, {365, b(u16(0xBEEF), u16(0xCAFE), u16(0x1234), u16(0x5678), -70000, 70001)}),
      ROW(displaydepthcue(S, 2, 0x01020304, 0xF0E0D0C0), T2, {429, b(0x01020304u, 0xF0E0D0C0u)}),
      ROW(displayscanlimits(S, 2, -0.5, 7.0), T2, {3, b(-0.5, 7.0)}),
      ROW(displayscanlimits(S, 65536 + 2, 1, 1), 0),  // the track is taken on 32 bits
      ROW((displayrotationorder(S, 2, 0xA5), displaysurface(S, 2, 0x5A)), T2, {340, {0xA5}}, {321, {0x5A}}),
      ROW((displaypipeline(S, 2, 0xDEADBEEF), displayflags(S, 2, 0xA55A)), T2, {334, b(u16(0xA55A), 0xDEADBEEFu)}),
      ROW((displayflags(S, 2, 5), displaysetflag(S, 2, 0x14)), T2, {334, u16(0x15)}),
      SET(displayworld, 0xA5, {130, {0xA5}}),
      SET(displayframe, 0x1234, {322, u16(0x1234)}),
      ROW(displaymorphing(S, 2, 7, 8, 1.7), T2, {322, b(u16(7), u16(8), 1.7)}),

      ROW(DisplayWorldAngleX(S, T02, 0xFF, 9, 0.25), T02, {341, b(90.)}),
      ROW(twice({{DisplayWorldAngleZ, 0.5}, {DisplayWorldAngleY, 0.25}}), T02, {349, b(180., 360.)}),
      ROW(DisplayWorldAngleXYZ(S, T02, 0, 0, 0.25, 0, -0.5), T02, {341, b(90., 0., -180.)}),
      ROW(twice({{DisplayRotateZ, 1}, {DisplayRotateY, 0.5}, {DisplayRotateX, 0.25}}), T02, {405, b(180., 360., 720.)}),
      ROW(twice({{DisplaySizeY, 0.25}, {DisplaySizeX, 0.5}}), T02, {381, b(0.25, 0.0625)}),
      ROW(twice({{TDisplaySizeY, 0.5}, {TDisplaySizeX, 0.25}}), T02, {381, b(0.0625, 0.25)}),
      ROW(DisplaySizeXY(S, T02, 0, 0, 3, -2), T02, {381, b(3., -2.)}),
      // Shift and view truncate the increment, not the sum: a small step back moves nothing.
      MASK(DisplayShiftX, 0.5, {397, b(65534)}),
      MASK2(DisplayShiftY, -0.5, 0.00001, {401, b(-32767)}),
      ROW(twice({{TDisplayShiftY, -0.5}, {TDisplayShiftX, 0.5}}), T02, {397, b(65534, -65534)}),
      ROW((DisplayShiftXY(S, T02, 0, 0, 1, -1), DisplayShiftXY(S, T02, 0, 0, -1e-6, 1e-6)), T02,
          {397, b(65535, -65535)}),
      ROW(twice({{DisplayViewZ, -0.5}, {DisplayViewY, 0.25}, {DisplayViewX, 0.5}}), T02,
          {485, b(65534, 32766, -65534)}),
      ROW((DisplayViewXYZ(S, T02, 0, 0, 0.5, -1, 2), DisplayViewXYZ(S, T02, 0, 0, -1e-6, 1e-6, 0)), T02,
          {485, b(32767, -65535, 131070)}),
      ROW(twice({{DisplayShearZByY, 0.6}, {DisplayShearZByX, 0.5}, {DisplayShearYByZ, 0.4}, {DisplayShearYByX, 0.3},
                 {DisplayShearXByZ, 0.2}, {DisplayShearXByY, 0.1}}),
          T02, {437, b(0.1, 0.2, 0.3, 0.4, 0.5, 0.6)}),
      ROW(DisplayShear(S, T02, 0, 0, 1, 2, 3, 4, 5, 6), T02, {437, b(1., 2., 3., 4., 5., 6.)}),
      // The clip rectangle keeps the low 16 bits of the truncated product.
      ROW(twice({{DisplayClipZ2, -0.5}, {DisplayClipZ1, 1.5}, {DisplayClipY2, 0.0}, {DisplayClipX2, 0.5},
                 {DisplayClipY1, -0.5}, {DisplayClipX1, 1.5}}),
          T02, {365, b(u16(32766), u16(32769), u16(32767), u16(0), 98302, -32767)}),
      ROW(DisplayClipCube(S, T02, 0, 0, 0.5, 1.5, -2, 0.25, 0, 3), T02,
          {365, b(u16(32767), u16(32766), u16(16383), u16(0), -131070, 196605)}),
      MASK(DisplayPipeline, 2.0, {336, b(131070)}),
      ROW((displaypipeline(S, 2, 77), DisplayPipeline(S, T02, 0, 0, -0.2)), T02, {336, b(0)}),
      ROW(DisplayPrism(S, T02, 30, 5.0, 0xA5), T02, {308, b(24, 4.0, uint8_t{0xA5})}),
      ROW(DisplayPrism(S, T02, -1, -10.0, 1), T02, {308, b(0, -4.0, uint8_t{1})}),
      ROW((DisplayViewX(S, 0, 0xFF, 0xFF, 1), DisplayPrism(S, 0, 3, 1, 1)), 0),  // empty track mask
  });
}

TEST_F(KalvorTest, TrackGeometryArithmetic) {
  displayinittrack(S);
  displayframe(S, 0, 1);
  // Additions wrap around in 32 bits.
  DisplayViewY(S, 1, 0, 0, 30000.0);  // 1,966,050,000
  DisplayViewY(S, 1, 0, 0, 30000.0);
  // NaN: the pipeline's lower bound lets it pass and it converts to 0; the
  // prism factor passes its limits and is stored.
  displaypipeline(S, 0, 77);
  DisplayPipeline(S, 1, 0, 0, std::numeric_limits<double>::quiet_NaN());
  DisplayPrism(S, 1, 100, std::numeric_limits<double>::quiet_NaN(), 0);
  Bytes t = uploaded_tracks(1)[0];
  EXPECT_EQ(le<int32_t>(t, 489), static_cast<int32_t>(3932100000u));
  EXPECT_EQ(le<uint32_t>(t, 336), 0u);
  EXPECT_TRUE(std::isnan(le<double>(t, 312)));

  displaysize(S, 5, 2.5, -1.0);
  EXPECT_EQ((std::vector<double>{displaygetsizex(S, 5), displaygetsizey(S, 5), displaygetsizex(S, 32),
                                 displaygetsizey(21, 5)}),
            (std::vector<double>{2.5, -1.0, 0.0, 0.0}));
  displaysizex(S, 32, 9.0);
  displaysetflag(21, 0, 1);
  EXPECT_EQ(uploaded_tracks(1)[0], t);
}
