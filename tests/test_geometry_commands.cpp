// Geometry commands: the bytes each one sends and what the queries hand back.
#include <limits>

#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, GeometryCommandsSendTheirBytes) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  displaymorph(4, 0x0102, 0x0304, 0x0506, 0.4);
  displaymorph(4, 0, 0, 0, -0.3);
  displaymorph(4, 0, 0, 0, 1.7);
  displaymorph(4, 0, 0, 0, nan);
  displayskew(4, 0x1234);
  displayglobalshiftsize(4, -2, 70000, 2.5, -0.5);
  displayworldsetshiftsize(4, 0x0708, -1, 2, 3.0, 4.0, 1.0, 0.5, 1.5, -0.5, 0.25);
  auto sent = rec.all();
  ASSERT_EQ(sent.size(), 7u);
  EXPECT_EQ(sent[0].bytes, concat({{0x07, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05}, le_bytes(0.4)}));
  EXPECT_EQ(le<double>(sent[1].bytes, 7), 0.0);
  EXPECT_EQ(le<double>(sent[2].bytes, 7), 1.0);
  EXPECT_EQ(sent[3].bytes.size(), 15u);
  EXPECT_NE(le<double>(sent[3].bytes, 7), le<double>(sent[3].bytes, 7));  // NaN passes the limits
  EXPECT_EQ(sent[4].bytes, (Bytes{0x1A, 0x34, 0x12}));
  EXPECT_EQ(sent[5].bytes, concat({{0x1D}, le_bytes<int32_t>(-2), le_bytes<int32_t>(70000), le_bytes(2.5),
                                   le_bytes(-0.5)}));
  EXPECT_EQ(sent[6].bytes,
            concat({{0x0E, 0x08, 0x07}, le_bytes<int32_t>(-1), le_bytes<int32_t>(2), le_bytes(3.0), le_bytes(4.0),
                    le_bytes<uint16_t>(65535), le_bytes<uint16_t>(32767), le_bytes<uint16_t>(32766),
                    le_bytes<uint16_t>(32769), le_bytes(90.0)}));
  for (const Sent& s : sent) {
    EXPECT_EQ(s.scanner, 4u);
    EXPECT_FALSE(s.reply);
  }
}

TEST_F(KalvorTest, CameraQueriesCopyTheAnswer) {
  Bytes answer = concat({le_bytes<int32_t>(-5), le_bytes<int32_t>(6), le_bytes<int32_t>(70000), le_bytes(1.5),
                         le_bytes(-2.5), le_bytes(360.0)});
  rec.set_reply(0x09, answer);
  rec.set_reply(0x1E, answer);
  int32_t v[3] = {};
  double d[3] = {};
  displaycamera(2, 0x0102, 2.0, 0xA5, &v[0], &v[1], &v[2], &d[0], &d[1], &d[2]);
  EXPECT_EQ(rec.at(0).bytes, concat({{0x09, 0x02, 0x01}, le_bytes(1.0), {0xA5}}));
  EXPECT_TRUE(rec.at(0).reply);
  EXPECT_EQ(v[0], -5);
  EXPECT_EQ(v[1], 6);
  EXPECT_EQ(v[2], 70000);
  EXPECT_EQ(d[0], 1.5);
  EXPECT_EQ(d[1], -2.5);
  EXPECT_EQ(d[2], 360.0);

  v[0] = 0;
  displaycamera2(2, 0x0102, 0x0304, -1.0, &v[0], nullptr, nullptr, nullptr, nullptr, &d[2]);  // null outs skipped
  EXPECT_EQ(rec.at(1).bytes, concat({{0x1E, 0x02, 0x01, 0x04, 0x03}, le_bytes(0.0)}));
  EXPECT_EQ(v[0], -5);

  // No answer: the cleared reply buffer gives zeros.
  rec.set_reply(0x09, {});
  rec.set_reply(0x1E, {});
  DisplayExit();
  displaycamera(2, 0, 0.5, 0, &v[0], &v[1], &v[2], &d[0], &d[1], &d[2]);
  EXPECT_EQ(v[2], 0);
  EXPECT_EQ(d[2], 0.0);
  EXPECT_EQ(rec.count(), 2);
}

TEST_F(KalvorTest, WorldShiftSizeQueryUsesOneBuffer) {
  Bytes answer = concat({{0xEE, 0xEE, 0xEE}, le_bytes<int32_t>(-100), le_bytes<int32_t>(200), le_bytes(0.75),
                         le_bytes(1.25)});
  rec.set_reply(0x14, answer);
  int32_t x = 0, y = 0;
  double sx = 0, sy = 0;
  displayworldgetshiftsize(5, 0x0203, &x, &y, &sx, &sy);
  Bytes sent = rec.at(0).bytes;
  ASSERT_EQ(sent.size(), 27u);
  EXPECT_EQ(sent, concat({{0x14, 0x03, 0x02}, Bytes(24, 0)}));
  EXPECT_TRUE(rec.at(0).reply);
  EXPECT_EQ(x, -100);
  EXPECT_EQ(y, 200);
  EXPECT_EQ(sx, 0.75);
  EXPECT_EQ(sy, 1.25);

  rec.set_reply(0x14, {});
  DisplayExit();
  displayworldgetshiftsize(5, 1, &x, &y, &sx, &sy);
  EXPECT_EQ(x, 0);
  EXPECT_EQ(sy, 0.0);
}
