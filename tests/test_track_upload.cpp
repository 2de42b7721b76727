// The track upload of displayupdate and displayvisualupdate.
#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, UploadReturnsTheWaitValueOfTheAnswer) {
  // Preview answer: point count 0, wait value 0x01020304.
  rec.set_reply(0x01, {0x00, 0x00, 0x04, 0x03, 0x02, 0x01});
  EXPECT_EQ(displayupdate(1), 0x01020304u);
  rec.set_reply(0x01, {});
  // The value stays in the preview buffer for later uploads that get no answer.
  rec.set_reply(0x16, {0x00, 0x00, 0x09, 0x00, 0x00, 0x00});
  EXPECT_EQ(displayvisualupdate(1), 9u);
  DisplayExit();
  EXPECT_EQ(displayupdate(1), 9u);
  DisplayInit();
  EXPECT_EQ(displayupdate(1), 0u);  // records were initialised again
}

// ---- uploads with active tracks ----------------------------------------------

TEST_F(KalvorTest, UploadSendsEveryTrackUpToTheHighestActiveWithItsSlotsInUse) {
  // No active track: the header alone, then the full preview's refresh.
  displayinittrack(2);
  displayupdate(2);
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x01, 0x00, 0x00}, {0x7B}}));
  for (const Sent& s : rec.all()) EXPECT_EQ((std::vector<uint32_t>{s.scanner, s.reply}), (std::vector<uint32_t>{2, 1}));
  rec.clear();
  displayvisualupdate(2);
  EXPECT_EQ(rec.at(0).bytes, (Bytes{0x16, 0x00, 0x00}));

  displayinittrack(1);
  displayframe(1, 5, 9);
  rec.clear();
  displayupdate(1);
  Bytes sent = rec.at(0).bytes;
  // Six tracks of one slot each; track 5 shows picture 9.
  EXPECT_EQ((std::vector<size_t>{sent.size(), le<uint16_t>(sent, 1), le<uint16_t>(upload_track(sent, 5), 322)}),
            (std::vector<size_t>{3 + 6 * 582, 6, 9}));

  displayangx(1, 2, 2, 1.0);  // track 2 sends 3 slots
  displayangx(1, 4, 7, 1.0);  // track 4 all 8
  rec.clear();
  displayupdate(1);
  sent = rec.at(0).bytes;
  EXPECT_EQ((std::vector<size_t>{sent.size(), upload_track(sent, 2).size(), upload_track(sent, 4).size()}),
            (std::vector<size_t>{3 + 4 * 582 + 750 + 1170, 750, 1170}));
  // A track made active without initialisation sends no slots.
  displayframe(3, 0, 1);
  rec.clear();
  displayupdate(3);
  EXPECT_EQ(rec.at(0).bytes.size(), 3u + 498);
}

TEST_F(KalvorTest, InitTrackWritesEveryDefaultAndKeepsUgcAndPrismMode) {
  // Every field of track 0 away from its default first.
  displaysparkling(1, 0, 1, 2);
  displayscanlimits(1, 0, 3, 4);
  for (auto f : {DisplayR, DisplayG, DisplayB}) f(1, 1, 5, 5, 5, 5, 5, 5);
  for (auto f : {displaycolor, displayworld, displaysurface, displayrotationorder}) f(1, 0, 9);
  for (auto f : {displayrgbcolor, displaycolorshift, displayintensity}) f(1, 0, 0.5);
  for (auto f : {DisplayRotR, DisplayRotG, DisplayRotB, DisplayHotSpot, DisplayCenterRecolorR, DisplayCenterRecolorG,
                 DisplayCenterRecolorB, DisplayHue, DisplaySaturation, DisplayLightness, DisplayRotateX, DisplayRotateY,
                 DisplayRotateZ, DisplayPipeline})
    f(1, 1, 0, 0, 0.5);
  displaytrackugc(1, 1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12);
  DisplayPrism(1, 1, 3, 2.0, 13);
  displaymorphing(1, 0, 15, 16, 0.5);
  displayflags(1, 0, 17);
  displayclip(1, 0, 23, 24, 25, 26, 27, 28);
  displaysize(1, 0, 29, 30);
  DisplayShiftXY(1, 1, 0, 0, 1, 1);
  displaydepthcue(1, 0, 31, 32);
  DisplayShear(1, 1, 0, 0, 1, 2, 3, 4, 5, 6);
  for (auto f : {DisplayPivotXYZ, DisplayAngleXYZ, DisplayPreMoveXYZ, DisplayPostMoveXYZ, DisplayScaleXYZ,
                 DisplayWorldAngleXYZ, DisplayViewXYZ})
    f(1, 1, 0xFF, 0, 2, 3, 4);  // every slot of track 0

  displaycleartrack(1);
  displayupdate(1);
  EXPECT_EQ(rec.at(0).bytes, (Bytes{0x01, 0x00, 0x00}));
  EXPECT_EQ(displaygetsizex(1, 0), 29.0);  // only the picture number was cleared

  displayinittrack(1);
  displayscalex(1, 0, 7, 1.0);  // all 8 slots in the upload
  displayframe(1, 1, 1);
  rec.clear();
  displayupdate(1);

  Bytes expected(1170, 0);
  auto put = [&](size_t offset, const Bytes& b) { std::copy(b.begin(), b.end(), expected.begin() + offset); };
  for (size_t offset : {11, 139, 147, 155, 163, 179, 187, 195, 284, 292, 300, 381, 389}) put(offset, le_bytes(1.0));
  for (int k = 0; k < 10; ++k) put(203 + 8 * k, le_bytes(1.0 + k));  // UGC values kept
  put(320, {13});                                                     // prism mode kept
  put(321, {1});
  put(340, {3});
  put(369, concat({le_bytes<uint16_t>(65535), le_bytes<uint16_t>(65535), le_bytes<int32_t>(-131070),
                   le_bytes<int32_t>(131070)}));
  put(497, {8});  // 1 after initialisation, raised by displayscalex above
  for (size_t s = 0; s < 8; ++s) put(498 + 84 * s + 60, concat({le_bytes(1.0), le_bytes(1.0), le_bytes(1.0)}));
  EXPECT_EQ(upload_track(rec.at(0).bytes, 0), expected);
}
