// A LASER.DLL without NetScanPrint: one message, and the library is bound.
#include <gtest/gtest.h>

#include <string>

#include "kalvor/kalvor.h"

TEST(NoPrint, InitReportsOnlyTheMissingPrintEntry) {
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
  DisplayExit();
}
