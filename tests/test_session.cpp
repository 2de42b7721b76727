// Session, output switching, global parameters, reset and time. The plain
// commands are rows of the command table (test_commands.cpp).
#include <chrono>
#include <thread>

#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, BeginSessionReadsProfileQueriesVersionSendsSignalLoadsDefaults) {
  displaysignal(2, 7);  // the (absent) profile sets it back to 2 before it is sent
  displayoutput(2, 0);
  displayinitcolorbuffer(2, 7, 9);
  rec.clear();
  rec.set_reply(0x22, le_bytes<uint32_t>(0x01020304));
  displaybeginsession(2);
  displayendsession(2);
  // Nothing is sent for the colour buffers.
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x22}, {0x24, 0x02}, {0xFF}}));
  ASSERT_GT(rec.count(), 0);
  EXPECT_TRUE(rec.at(0).reply);
  EXPECT_EQ(displaygetoutput(2), 0);
  // The sixteen defaults, then the entries past them as they were.
  EXPECT_EQ(concat({colour_entry(2, 7, 15), colour_entry(2, 7, 16)}),
            concat({{255, 0, 255, 255, 0, 255, 255, 0, 255}, Bytes(9, 9)}));
  EXPECT_EQ(displaygetversion(2), 0x01020304u);
}

TEST_F(KalvorTest, OutputSwitchSendsTheSignalOnlyForOneAndReachesAllScanners) {
  struct Case { uint8_t on, sent, stored; };
  for (Case c : {Case{1, 2, 1}, Case{0, 0, 0}, Case{2, 0, 2}}) {
    displayoutput(1, c.on);
    EXPECT_EQ(rec.last().bytes, (Bytes{0x24, c.sent}));
    EXPECT_EQ(displaygetoutput(1), c.stored);
  }
  rec.clear();
  displaysignal(2, 5);
  EXPECT_EQ((Bytes{displaygetsignal(2), displaygetoutput(2)}), (Bytes{5, 1}));
  displayoutput(2, 1);
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x24, 5}, {0x24, 5}}));

  // Stop and enable address all twenty scanners in order; enable sends each one's own signal.
  for (uint8_t on : {0, 1}) {
    rec.clear();
    on ? displayenableoutput() : displaystopoutput();
    ASSERT_EQ(rec.count(), 20);
    for (uint32_t s = 1; s <= 20; ++s) {
      EXPECT_EQ(rec.at(int(s) - 1).scanner, s);
      EXPECT_EQ(rec.at(int(s) - 1).bytes, (Bytes{0x24, uint8_t(on ? (s == 2 ? 5 : 2) : 0)}));
      EXPECT_EQ(displaygetoutput(s), on);
    }
  }
}

TEST_F(KalvorTest, GlobalParametersArePackedWithoutGaps) {
  uint8_t extra[16] = {0xA0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 0xAF};
  displayglobal(1, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 9.5, 10.5, 11.5, 12.5, 13.5, 14.5, 15.5, 16.5, 17.5,
                18.5, 19.5, 20.5, 21.5, 22.5, 23.5, 24.5, 25.5, 26.5, 27.5, 28.5, 29.5, 30.5, 31.5, 32.5, 33.5,
                34.5, 35.5, 36.5, 37.5, 38.5, 39, 40, 41, 42, 43, 44.5, 45.5, 46.5, 47.5, 48.5, 49.5, 50.5, 51.5,
                52.5, 53.5, 0xABCD, extra);
  // Parameters 39 to 43 are single bytes, all others doubles.
  Bytes want = {0x32};
  for (int k = 1; k <= 53; ++k) want = concat({want, k >= 39 && k <= 43 ? Bytes{uint8_t(k)} : le_bytes(k + 0.5)});
  EXPECT_EQ(rec.last().bytes, concat({want, u16(0xABCD), Bytes(extra, extra + 16)}));
  displayglobal(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, nullptr);
  EXPECT_EQ(rec.last().bytes, concat({{0x32}, Bytes(407, 0)}));  // no block: zeros
}

TEST_F(KalvorTest, ResetSendsTheBufferAndClearsTwoPreviewCounts) {
  displayinitcolorbuffer(1, 3, 0);
  displaysetcolorbuffer(1, 3, 63, 63, 1, 2, 3, 4, 192);
  for (uint8_t opcode : {0x06, 0x7B, 0x7E}) rec.set_reply(opcode, concat({le_bytes<uint16_t>(5), le_bytes(opcode)}));
  for (auto refresh : {displayupdatepreviewbuffer, displayupdatefullpreviewbuffer, displayupdatevistrelbuffer})
    refresh(1, nullptr, nullptr);
  displayreset(1, 3);
  EXPECT_EQ(rec.last().bytes, concat({{0x1B, 0x40}, Bytes(63 * 6, 0), {63, 1, 2, 3, 4, 192}}));
  std::vector<uint16_t> counts;
  for (auto get : {displaygetpreviewbuffercnt, displaygetfullpreviewbuffercnt, displaygetvistrelbuffercnt})
    get(1, &counts.emplace_back());
  EXPECT_EQ(counts, (std::vector<uint16_t>{0, 0, 5}));
  EXPECT_EQ(DisplayGetTimeToWait(1), 6u);  // the preview's value; only the count is cleared
  rec.clear();
  displayreset(1, 8);  // no such buffer
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, TimeAdvancesInMilliseconds) {
  uint32_t start = displaygettime();
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  uint32_t elapsed = displaygettime() - start;
  EXPECT_GE(elapsed, 25u);
  EXPECT_LT(elapsed, 5000u);
}
