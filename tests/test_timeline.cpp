// Timeline and the slot hierarchy.
#include "track_probe.h"

using namespace kt;

TEST_F(KalvorTest, TimelineMeasuresFromItsStart) {
  displaystarttimeline();
  EXPECT_LT(displaygettimelinetime(), 1000u);
  // The elapsed time is a few milliseconds, far inside each wide interval.
  double out = -1.0;
  EXPECT_EQ(displaygettimeline(-100000, 100000, 2.0, 4.0, &out), 1);  // start is signed
  EXPECT_NEAR(out, 3.0, 0.01);
  EXPECT_EQ(displaygettimeline(-1000000, 1000000, 10.0, 10.0, nullptr), 1);  // null out is skipped
  out = -1.0;
  EXPECT_EQ(displaygettimeline(100000, 200000, 0.0, 1.0, &out), 0);    // not yet
  EXPECT_EQ(displaygettimeline(-200000, -100000, 0.0, 1.0, &out), 0);  // over
  // The elapsed time lies between the ends, but end - start wraps to a negative width.
  EXPECT_EQ(displaygettimeline(-2000000000, 2000000000, 0.0, 1.0, &out), 0);
  EXPECT_EQ(out, -1.0);  // untouched whenever the answer is 0
}

TEST_F(KalvorTest, HierarchyComposesSlotsFromTheTrackBeforeTheCall) {
  int32_t h[8];
  displayinithierarchy(h);
  EXPECT_EQ(std::vector<int32_t>(h, h + 8), std::vector<int32_t>(8, -1));
  displayinittrack(S);
  for (uint8_t s = 0; s < 3; ++s) {
    displaypivot(S, 0, s, 10 * (s + 1), 0, 0);
    displayang(S, 0, s, 1.0 + s, 0, 0);
    displayscale(S, 0, s, 2.0 + s, 1, 1);
    displaypre(S, 0, s, 0, 0, INT32_MAX);
  }
  // Slot 2's parent is 1, slot 1's is 0; slot 3 names slot 9, which ends its chain.
  h[1] = 0, h[2] = 1, h[3] = 9;
  displayhierarchy(S, 0, h);
  // Slot 2 adds slot 1 as it was before the call; the z pre-move wraps in 32 bits.
  EXPECT_EQ((std::vector<double>{double(displaygetpivotx(S, 0, 0)), double(displaygetpivotx(S, 0, 1)),
                                 double(displaygetpivotx(S, 0, 2)), double(displaygetpivotx(S, 0, 3)),
                                 displaygetangx(S, 0, 2), displaygetscalex(S, 0, 2), double(displaygetprez(S, 0, 1))}),
            (std::vector<double>{10, 20 + 10, 30 + 20 + 10, 0, 3.0 + 2.0 + 1.0, 4.0 * 3.0 * 2.0, -2}));
  displayframe(S, 0, 1);
  EXPECT_EQ(uploaded_tracks(1)[0][497], 3);  // slot count unchanged

  // A slot that is its own parent adds itself eight times; bad numbers and
  // null tables are ignored.
  displayinittrack(S);
  displaypivotx(S, 0, 0, 3);
  displayscalex(S, 0, 0, 2.0);
  displayinithierarchy(h);
  h[0] = 0;
  displayhierarchy(S, 0, h);
  displayhierarchy(S, 32, h);
  displayhierarchy(21, 0, h);
  displayhierarchy(S, 0, nullptr);
  displayinithierarchy(nullptr);
  EXPECT_EQ(displaygetpivotx(S, 0, 0), 27);
  EXPECT_EQ(displaygetscalex(S, 0, 0), 512.0);
}
