// The geometry net.
#include "support/harness.h"

using namespace kt;

namespace {
double coordinate(const Bytes& sent, int a, int b, int axis) { return le<double>(sent, 2 + 24 * (9 * a + b) + 8 * axis); }
}  // namespace

TEST_F(KalvorTest, GeonetIsZeroThenEvenThenEdited) {
  displayupdategeonet(1, 3);
  EXPECT_EQ(rec.last().bytes, concat({{0x29, 0x03}, Bytes(1944, 0)}));

  displayinitgeonet(1);
  displayupdategeonet(1, 4);
  Bytes sent = rec.last().bytes;
  EXPECT_EQ(sent[1], 4);
  EXPECT_EQ((std::vector<double>{coordinate(sent, 4, 4, 0), coordinate(sent, 4, 4, 1), coordinate(sent, 4, 4, 2),
                                 coordinate(sent, 8, 0, 0), coordinate(sent, 8, 0, 1), coordinate(sent, 0, 8, 1),
                                 coordinate(sent, 3, 1, 0)}),
            (std::vector<double>{32767.5, 32767.5, 0.0, 65535.0, 0.0, 65535.0, 3 * 8191.875}));

  // Only the two points set change, in units of the field's width; nothing is
  // limited, and points past the net are ignored.
  displaysetgeonet(1, 2, 5, 0.5, 0.25, 0.0);
  displaysetgeonet(1, 8, 8, 1.2, -0.5, 2.0);
  displaysetgeonet(1, 9, 0, 1, 1, 1);
  displaysetgeonet(1, 0, 9, 1, 1, 1);
  displayupdategeonet(1, 0);
  Bytes expected = sent;
  expected[1] = 0;
  for (auto [a, b, xyz] : {std::tuple{2, 5, concat({le_bytes(32767.5), le_bytes(16383.75), le_bytes(0.0)})},
                           std::tuple{8, 8, concat({le_bytes(1.2 * 65535), le_bytes(-32767.5), le_bytes(131070.0)})}})
    std::copy(xyz.begin(), xyz.end(), expected.begin() + 2 + 24 * (9 * a + b));
  EXPECT_EQ(rec.last().bytes, expected);
}
