// Point setters, picture transfer and read-back, the test picture, direct
// points and raster frames.
#include "pictures_support.h"

using namespace kt;

TEST_F(KalvorTest, PicturePointsArePackedSentReadBackAndCounted) {
  displaysetpicstruct(1, 0, 1, 2, 3, 70, 3, 2, 17, 30, 4, 5, 6);       // each field masked to its width
  displaysetpoint(1, 65536 + 1, 0xFFFF8000u, 7, 8, 9, 1, 10, 11, 12);  // index and x taken on 16 bits
  DisplaySetPicPoint(1, 2, 0xFFFF, 0, 0, 0x3F, 0xF7, 1, 2, 3);
  DisplaySetPicPoint(1, 8192, 1, 1, 1, 1, 1, 1, 1, 1);  // past the buffer: ignored
  displaysetpic(1, 0x0102, 3);
  EXPECT_EQ(rec.last().bytes, concat({Bytes{0x00, 0x02, 0x01, 0x03, 0x00}, pt(1, 2, 3, 0x46, 0xE1, 4, 5, 6),
                                      pt(-32768, 7, 8, 0xC9, 0, 10, 11, 12), pt(-1, 0, 0, 0x3F, 0xF7, 1, 2, 3)}));
  displaysetpic(1, 9, 9000);  // more than the buffer holds: 8192 points
  EXPECT_EQ(rec.last().bytes.size(), 5u + 11u * 8192);
  EXPECT_EQ(le<uint16_t>(rec.last().bytes, 3), 8192);

  // Read-back unpacks the reply into the same fields.
  rec.set_reply(0x04, picture_reply(concat({pt(5, -6, 7, 0xC9, 0x21, 1, 2, 3), pt(1, 1, 1, 0x3F, 0xF0, 9, 9, 9)})));
  EXPECT_EQ(displaygetpic(2, 0x0304), 2);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x04, 0x04, 0x03}));
  uint16_t count = 0, x = 0, y = 0, z = 0;
  uint8_t index = 0, blank = 0, flag7 = 0, repeat = 0, high = 0, r = 0, g = 0, b = 0;
  displaygetpicstruct(2, 0, &x, &y, &z, &index, &blank, &flag7, &repeat, &high, &r, &g, &b);
  EXPECT_EQ((std::vector<int>{x, static_cast<int16_t>(y), z, index, blank, flag7, repeat, high, r, g, b}),
            (std::vector<int>{5, -6, 7, 9, 1, 1, 1, 2, 1, 2, 3}));
  DisplayGetPicPoint(2, 1, &x, &y, &z, &index, &repeat, &r, &g, &b);
  EXPECT_EQ((std::vector<int>{x, y, z, index, repeat, r, g, b}), (std::vector<int>{1, 1, 1, 0x3F, 0xF0, 9, 9, 9}));
  DisplayGetPicPoint(2, 8192, &x, &y, &z, &index, &repeat, &r, &g, &b);  // past the area: untouched
  EXPECT_EQ(x, 1);
  rec.set_reply(0x04, {});  // no answer: the previous reply stays
  displaygetpic(2, 1);
  displaygetpiccnt(2, &count);
  EXPECT_EQ(count, 2);

  // Clearing and counting the picture memory.
  clearpicmem(3);
  EXPECT_EQ(rec.last().bytes, Bytes{0x21});
  EXPECT_EQ(GetMaxPic(3), 0);  // no answer
  EXPECT_EQ(rec.last().bytes, Bytes{0x2B});
  rec.set_reply(0x2B, {0x05, 0x01, 0x09, 0x09});
  EXPECT_EQ(GetMaxPic(3), 0x0105);
}

TEST_F(KalvorTest, TestPictureDrawsTwentyNineLinesTopToBottom) {
  displaytestpic(1, 77);
  auto pics = sent_pictures();
  ASSERT_EQ(numbers(pics), (Numbers{{77, 58}}));
  for (auto [line, y] : {std::pair{0, 32767}, {1, 30426}, {14, 0}, {15, -2341}, {28, -32768}}) {
    EXPECT_EQ(pics[0].point(2 * line), pt(-32768, static_cast<int16_t>(y), 0, 0xC0, 0, 0, 0, 0)) << line;
    EXPECT_EQ(pics[0].point(2 * line + 1), pt(32767, static_cast<int16_t>(y), 0, 0x80, 0, 0, 0, 0)) << line;
  }
}

TEST_F(KalvorTest, DirectPointsAndRasterFrameAreSentWhole) {
  displaydirectpoint(4, 0, 0x0102, 0x0304, 1, 2, 3, 4, 5, 6, 7);
  displaydirectpoint(4, 15999, 9, 9, 9, 9, 9, 9, 9, 9, 9);
  displaydirectpoint(4, 16000, 8, 8, 8, 8, 8, 8, 8, 8, 8);  // ignored
  displaydirect(4, 0x1111, 0x2222, 0x3333);
  Bytes sent = rec.last().bytes;
  ASSERT_EQ(sent.size(), 176007u);
  EXPECT_TRUE(rec.last().reply);
  EXPECT_EQ(head(sent, 18), (Bytes{0x33, 0x11, 0x11, 0x22, 0x22, 0x33, 0x33, 2, 1, 4, 3, 1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(Bytes(sent.end() - 11, sent.end()), (Bytes{9, 0, 9, 0, 9, 9, 9, 9, 9, 9, 9}));

  displayrasterframe(4, 1, 2, 3, 4, 5.5, 6, 7, 8, 9, 10, 11, 12, 13.0, 14.0, 15.0, 16.0, 17.0, 0x1234);
  EXPECT_EQ(rec.last().bytes, concat({Bytes{0x2F, 1, 0, 2, 0, 3, 0, 4, 0}, le_bytes(5.5),
                                      Bytes{6, 0, 7, 0, 8, 0, 9, 10, 0, 11, 0, 12, 0}, le_bytes(13.0), le_bytes(14.0),
                                      le_bytes(15.0), le_bytes(16.0), le_bytes(17.0), Bytes{0x34, 0x12}}));
  EXPECT_TRUE(rec.last().reply);
}
