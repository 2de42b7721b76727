// DMX channels through the channel maps.
#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, DmxChannelsAreClampedOnTheirLow16BitsAndMapped) {
  struct Case { uint32_t channel; uint16_t wire; };
  for (Case c : {Case{7, 7}, Case{0, 1}, Case{512, 512}, Case{513, 512}, Case{65536 + 600, 512},
                 Case{65536 + 5, 5}, Case{65536, 1}}) {
    displaysetdmx(1, c.channel, 200);
    EXPECT_EQ(rec.last().bytes, concat({{0x2D}, le_bytes(c.wire), {200}})) << c.channel;
  }
  uint16_t in[512], out[512];
  for (int k = 0; k < 512; ++k) in[k] = out[k] = uint16_t(1000 + k);
  out[6] = 300;
  in[0] = 0x1234;
  displaymapdmx(1, in, out);
  displaysetdmx(1, 7, 1);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x2D, 0x2C, 0x01, 0x01}));
  displaysetdmx(1, 600, 1);  // the map's last entry
  EXPECT_EQ(le<uint16_t>(rec.last().bytes, 1), 1511);

  EXPECT_EQ(displaygetdmx(1, 3), 0);  // nothing answers: 0
  rec.set_reply(0x2E, {0x99});
  EXPECT_EQ(displaygetdmx(1, 1), 0x99);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x2E, 0x34, 0x12}));
  EXPECT_TRUE(rec.last().reply);
  displaymapdmx(1, nullptr, in);  // a null table leaves its map alone
  displaygetdmx(1, 1);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x2E, 0x34, 0x12}));
  displaysetdmx(1, 1, 0);
  EXPECT_EQ(le<uint16_t>(rec.last().bytes, 1), 0x1234);
  displaysetdmx(2, 7, 0);  // other scanners keep the identity
  EXPECT_EQ(le<uint16_t>(rec.last().bytes, 1), 7);
  displayenabledmxin(1, 1);
  EXPECT_EQ((Bytes{displaygetenabledmxin(1), displaygetenabledmxin(2)}), (Bytes{1, 0}));
}
