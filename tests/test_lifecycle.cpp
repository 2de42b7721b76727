// Binding the transport, the scanner table and the command channel.
#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, BindingConstructsOnceAndExitUnbinds) {
  ASSERT_TRUE(rec.loaded());
  const int constructed = rec.constructor_calls(), destroyed = rec.destructor_calls();
  displayinittrack(1);
  testing::internal::CaptureStderr();
  DisplayInit();  // bound: no boxes, no constructor call, records kept
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(rec.constructor_calls(), constructed);
  displayupdate(1);
  // The tracks kept their defaults: one slot in use would show in an active
  // track; with none active the upload is the bare three-byte header.
  EXPECT_EQ(rec.at(0).bytes, (Bytes{0x01, 0x00, 0x00}));

  rec.clear();
  DisplayExit();
  EXPECT_EQ(rec.destructor_calls(), destroyed + 1);
  DisplaySetMaxScanner(1, 1);  // unbound now: nothing goes out
  EXPECT_EQ(rec.count(), 0);
  DisplayExit();  // a second exit is a no-op
  EXPECT_EQ(rec.destructor_calls(), destroyed + 1);
  DisplayInit();
  EXPECT_EQ(rec.constructor_calls(), constructed + 1);
  DisplaySetMaxScanner(3, 8);
  ASSERT_EQ(rec.count(), 1);
  EXPECT_EQ((std::vector<uint32_t>{rec.at(0).scanner, rec.at(0).reply}), (std::vector<uint32_t>{3, 0}));
  EXPECT_EQ(rec.at(0).bytes, (Bytes{0x35, 0x08}));
}

TEST_F(KalvorTest, MakeMaskTakesTheBitModulo32) {
  EXPECT_EQ((std::vector<uint32_t>{MAKEMASK(0), MAKEMASK(5), MAKEMASK(31), MAKEMASK(32), MAKEMASK(-1)}),
            (std::vector<uint32_t>{1, 32, 2147483648u, 1, 2147483648u}));
}

TEST_F(KalvorTest, ScannerNumbersAboveTwentyAreIgnored) {
  for (uint32_t scanner : {21u, 100u, 0xFFFFFFFFu}) {
    DisplaySetMaxScanner(scanner, 1);
    displayinittrack(scanner);
    displaycleartrack(scanner);
    EXPECT_EQ(displayupdate(scanner), 0u);
    EXPECT_EQ(displayvisualupdate(scanner), 0u);
  }
  EXPECT_EQ(rec.count(), 0);
  // Scanner 0 addresses record 0, which exists.
  displayinittrack(0);
  displayupdate(0);
  ASSERT_EQ(rec.count(), 2);
  EXPECT_EQ(rec.at(0).scanner, 0u);
}
