// The geometry net.
#include "support/harness.h"

using namespace kt;

namespace {
double coordinate(const Bytes& sent, int a, int b, int axis) { return le<double>(sent, 2 + 24 * (9 * a + b) + 8 * axis); }
}  // namespace

TEST_F(KalvorTest, GeonetIsZeroThenEvenThenEdited) {
  displayupdategeonet(1, 3);
  Bytes sent = rec.last().bytes;
  ASSERT_EQ(sent.size(), 1946u);
  EXPECT_EQ(Bytes(sent.begin(), sent.begin() + 2), (Bytes{0x29, 0x03}));
  EXPECT_EQ(Bytes(sent.begin() + 2, sent.end()), Bytes(1944, 0));

  displayinitgeonet(1);
  displayupdategeonet(1, 4);
  sent = rec.last().bytes;
  EXPECT_EQ(sent[1], 4);
  EXPECT_EQ((std::vector<double>{coordinate(sent, 4, 4, 0), coordinate(sent, 4, 4, 1), coordinate(sent, 4, 4, 2),
                                 coordinate(sent, 8, 0, 0), coordinate(sent, 8, 0, 1), coordinate(sent, 0, 8, 1),
                                 coordinate(sent, 3, 1, 0)}),
            (std::vector<double>{32767.5, 32767.5, 0.0, 65535.0, 0.0, 65535.0, 3 * 8191.875}));

  displaysetgeonet(1, 2, 5, 0.5, 0.25, 0.0);
  displaysetgeonet(1, 8, 8, 1.2, -0.5, 2.0);  // nothing is limited
  displaysetgeonet(1, 9, 0, 1, 1, 1);         // no such point: ignored
  displaysetgeonet(1, 0, 9, 1, 1, 1);
  displayupdategeonet(1, 0);
  Bytes edited = rec.last().bytes;
  EXPECT_EQ((std::vector<double>{coordinate(edited, 2, 5, 0), coordinate(edited, 2, 5, 1), coordinate(edited, 2, 5, 2),
                                 coordinate(edited, 8, 8, 1), coordinate(edited, 8, 8, 2)}),
            (std::vector<double>{32767.5, 16383.75, 0.0, -32767.5, 131070.0}));
  EXPECT_DOUBLE_EQ(coordinate(edited, 8, 8, 0), 78642.0);
  // Everything else is as before, the ignored points included.
  for (int a = 0; a < 9; ++a)
    for (int b = 0; b < 9; ++b)
      for (int axis = 0; axis < 3 && !(a == 2 && b == 5) && !(a == 8 && b == 8); ++axis)
        EXPECT_EQ(coordinate(edited, a, b, axis), coordinate(sent, a, b, axis));

}
