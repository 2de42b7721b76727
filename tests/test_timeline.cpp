// Timeline, track UGC values, the UGC command and the slot hierarchy.
#include "track_probe.h"

using namespace kt;

TEST_F(KalvorTest, TimelineMeasuresFromItsStart) {
  displaystarttimeline();
  EXPECT_LT(displaygettimelinetime(), 1000u);

  // Elapsed time E is a few milliseconds, far inside each wide interval.
  double out = -1.0;
  EXPECT_EQ(displaygettimeline(-100000, 100000, 0.0, 1.0, &out), 1);  // start is signed
  EXPECT_NEAR(out, 0.5, 0.01);
  EXPECT_EQ(displaygettimeline(-1000000, 1000000, 10.0, 10.0, nullptr), 1);  // null out is skipped
  out = -1.0;
  EXPECT_EQ(displaygettimeline(100000, 200000, 0.0, 1.0, &out), 0);  // not yet
  EXPECT_EQ(displaygettimeline(-200000, -100000, 0.0, 1.0, &out), 0);  // over
  EXPECT_EQ(displaygettimeline(500, 500, 0.0, 1.0, &out), 0);  // empty
  EXPECT_EQ(displaygettimeline(0x7FFFFFFF, -100, 0.0, 1.0, &out), 0);  // reversed
  // E lies between the ends, but end - start wraps to a negative width.
  EXPECT_EQ(displaygettimeline(-2000000000, 2000000000, 0.0, 1.0, &out), 0);
  EXPECT_EQ(out, -1.0);  // untouched whenever the answer is 0
}

TEST_F(KalvorTest, TrackUgcIsStoredAndUgcCommandIsScaled) {
  check_rows({
      {"displaytrackugc", [] { displaytrackugc(kProbeScanner, 0b101, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10.5, 0xA5); },
       0b101,
       {{203, concat({le_bytes(1.0), le_bytes(2.0), le_bytes(3.0), le_bytes(4.0), le_bytes(5.0), le_bytes(6.0),
                      le_bytes(7.0), le_bytes(8.0), le_bytes(9.0), le_bytes(10.5), {0xA5}})}}},
      {"trackMask 0", [] { displaytrackugc(kProbeScanner, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 1); }, 0, {}},
  });

  displaysetugc(6, 0.5, 1, 2, 3, 4, 5, 6, -1, 0.5, 7.25, 0x5A);
  Bytes expected{0x2C};
  for (double u : {32767.5, 65535.0, 131070.0, 196605.0, 262140.0, 327675.0, 393210.0, -65535.0, 0.5, 7.25})
    expected = concat({expected, le_bytes(u)});
  expected.push_back(0x5A);
  EXPECT_EQ(rec.last().bytes, expected);
  EXPECT_EQ(rec.last().scanner, 6u);
}

TEST_F(KalvorTest, HierarchyComposesSlotsFromTheTrackBeforeTheCall) {
  displayinittrack(1);
  for (uint8_t s = 0; s < 3; ++s) {
    displaypivot(1, 0, s, 10 * (s + 1), 0, 0);
    displayang(1, 0, s, 1.0 + s, 0, 0);
    displayscale(1, 0, s, 2.0 + s, 1, 1);
    displaypre(1, 0, s, 0, 0, INT32_MAX);
  }
  int32_t h[8];
  displayinithierarchy(h);
  for (int32_t e : h) EXPECT_EQ(e, -1);
  displayframe(1, 0, 1);
  Bytes before = uploaded_tracks(1)[0];
  displayhierarchy(1, 0, h);
  EXPECT_EQ(uploaded_tracks(1)[0], before);

  // Slot 2's parent is 1, slot 1's is 0; slot 3 names slot 9, which ends its chain.
  h[1] = 0;
  h[2] = 1;
  h[3] = 9;
  displayhierarchy(1, 0, h);
  EXPECT_EQ(displaygetpivotx(1, 0, 1), 20 + 10);
  EXPECT_EQ(displaygetpivotx(1, 0, 2), 30 + 20 + 10);  // slot 1 as it was before the call
  EXPECT_EQ(displaygetangx(1, 0, 2), 3.0 + 2.0 + 1.0);
  EXPECT_EQ(displaygetscalex(1, 0, 2), 4.0 * 3.0 * 2.0);
  EXPECT_EQ(displaygetprez(1, 0, 1), static_cast<int32_t>(0xFFFFFFFEu));  // 32-bit wrap
  EXPECT_EQ(displaygetpivotx(1, 0, 0), 10);
  EXPECT_EQ(displaygetpivotx(1, 0, 3), 0);
  EXPECT_EQ(le<uint8_t>(uploaded_tracks(1)[0], 497), 3);  // slot count unchanged

  // A slot that is its own parent adds itself eight times.
  displayinittrack(1);
  displaypivotx(1, 0, 0, 3);
  displayscalex(1, 0, 0, 2.0);
  displayinithierarchy(h);
  h[0] = 0;
  displayhierarchy(1, 0, h);
  EXPECT_EQ(displaygetpivotx(1, 0, 0), 27);
  EXPECT_EQ(displaygetscalex(1, 0, 0), 512.0);

  // Bad numbers and null tables are ignored.
  displayhierarchy(1, 32, h);
  displayhierarchy(21, 0, h);
  displayhierarchy(1, 0, nullptr);
  displayinithierarchy(nullptr);
  EXPECT_EQ(displaygetpivotx(1, 0, 0), 27);
}
