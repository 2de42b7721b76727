// A LASER.DLL without NetScanPrint: one message, and the library is bound.
#include <gtest/gtest.h>

#include <string>

#include "kalvor/kalvor.h"
#include "support/harness.h"

TEST(NoPrint, InitReportsOnlyTheMissingPrintEntryAndCommandsStillGoOut) {
  testing::internal::CaptureStderr();
  DisplayInit();
  std::string text = testing::internal::GetCapturedStderr();
  EXPECT_NE(text.find("NetScanPrint not found!"), std::string::npos);
  EXPECT_EQ(text.find("Function"), std::string::npos);
  EXPECT_EQ(text.find("LASER.DLL not found"), std::string::npos);
  // Bound: a second DisplayInit shows nothing.
  testing::internal::CaptureStderr();
  DisplayInit();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

  // Printing gives 0; commands go out as ever.
  kt::Recorder& rec = kt::Recorder::get();
  rec.clear();
  EXPECT_EQ(displayprint(1234), 0u);
  displayendsession(3);
  ASSERT_EQ(rec.count(), 1);
  EXPECT_EQ(rec.at(0).bytes, kt::Bytes{0xFF});
  DisplayExit();
}
