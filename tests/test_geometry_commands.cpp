// Geometry commands: the bytes each one sends and what the queries hand back.
#include <limits>

#include "track_probe.h"

using namespace kt;

TEST_F(KalvorTest, GeometryCommandsSendTheirBytesAndQueriesCopyTheAnswer) {
  displaymorph(4, 0x0102, 0x0304, 0x0506, 0.4);
  for (double amount : {-0.3, 1.7, std::numeric_limits<double>::quiet_NaN()}) displaymorph(4, 0, 0, 0, amount);
  displayskew(4, 0x1234);
  displayglobalshiftsize(4, -2, 70000, 2.5, -0.5);
  displayworldsetshiftsize(4, 0x0708, -1, 2, 3.0, 4.0, 1.0, 0.5, 1.5, -0.5, 0.25);
  auto sent = rec.bytes();
  ASSERT_EQ(sent.size(), 7u);
  EXPECT_EQ(sent[0], b(Bytes{0x07, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05}, 0.4));
  EXPECT_EQ((std::vector<double>{le<double>(sent[1], 7), le<double>(sent[2], 7)}), (std::vector<double>{0.0, 1.0}));
  EXPECT_NE(le<double>(sent[3], 7), le<double>(sent[3], 7));  // NaN passes the limits
  EXPECT_EQ(sent[4], (Bytes{0x1A, 0x34, 0x12}));
  EXPECT_EQ(sent[5], b(uint8_t{0x1D}, -2, 70000, 2.5, -0.5));
  EXPECT_EQ(sent[6], b(Bytes{0x0E, 0x08, 0x07}, -1, 2, 3.0, 4.0, u16(65535), u16(32767), u16(32766), u16(32769), 90.0));
  EXPECT_EQ(rec.at(6).scanner, 4u);

  // Queries copy the answer, or zeros when nothing answers.
  rec.clear();
  Bytes answer = b(-5, 6, 70000, 1.5, -2.5, 360.0);
  rec.set_reply(0x09, answer);
  rec.set_reply(0x1E, answer);
  rec.set_reply(0x14, b(Bytes{0xEE, 0xEE, 0xEE}, -100, 200, 0.75, 1.25));
  int32_t v[3] = {};
  double d[3] = {};
  displaycamera(2, 0x0102, 2.0, 0xA5, &v[0], &v[1], &v[2], &d[0], &d[1], &d[2]);
  EXPECT_EQ(rec.at(0).bytes, b(Bytes{0x09, 0x02, 0x01}, 1.0, uint8_t{0xA5}));
  EXPECT_TRUE(rec.at(0).reply);
  EXPECT_EQ(b(v[0], v[1], v[2], d[0], d[1], d[2]), answer);
  v[0] = 0;
  displaycamera2(2, 0x0102, 0x0304, -1.0, &v[0], nullptr, nullptr, nullptr, nullptr, &d[2]);  // null outs skipped
  EXPECT_EQ(rec.at(1).bytes, b(Bytes{0x1E, 0x02, 0x01, 0x04, 0x03}, 0.0));
  EXPECT_EQ(v[0], -5);
  // One 27-byte buffer is both the command and the answer.
  displayworldgetshiftsize(5, 0x0203, &v[0], &v[1], &d[0], &d[1]);
  EXPECT_EQ(rec.at(2).bytes, b(Bytes{0x14, 0x03, 0x02}, Bytes(24, 0)));
  EXPECT_TRUE(rec.at(2).reply);
  EXPECT_EQ(b(v[0], v[1], d[0], d[1]), b(-100, 200, 0.75, 1.25));

  // No transport: every out-value becomes 0.
  DisplayExit();
  displaycamera(2, 0, 0.5, 0, &v[0], &v[1], &v[2], &d[0], &d[1], &d[2]);
  EXPECT_EQ(b(v[0], v[1], v[2], d[0], d[1], d[2]), Bytes(36, 0));
  v[0] = v[1] = 1, d[0] = d[1] = 1;
  displayworldgetshiftsize(5, 1, &v[0], &v[1], &d[0], &d[1]);
  EXPECT_EQ(b(v[0], v[1], d[0], d[1]), Bytes(24, 0));
}
