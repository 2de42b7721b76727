// A process where no LASER.DLL can be found: five messages, records still
// initialised, nothing sent. Run with a loader path that holds no transport.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "kalvor/kalvor.h"

static std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(Unbound, InitShowsFiveMessagesInOrderEveryTime) {
  for (int round = 0; round < 2; ++round) {  // a failed load leaves the library unbound
    testing::internal::CaptureStderr();
    DisplayInit();
    auto lines = lines_of(testing::internal::GetCapturedStderr());
    const char* expected[] = {
        "LASER.DLL not found or not enough memory/virtual memory for LASER.DLL!",
        "Function NetScanConstructor not found !", "Function NetScanDestructor not found !",
        "Function NetScanCommand not found !", "NetScanPrint not found!"};
    ASSERT_EQ(lines.size(), 5u);
    for (int i = 0; i < 5; ++i) EXPECT_NE(lines[i].find(expected[i]), std::string::npos) << lines[i];
  }
}

TEST(Unbound, ExportsWorkOnTheRecordsWithoutSending) {
  DisplayInit();
  displayinittrack(1);
  EXPECT_EQ(displayupdate(1), 0u);
  EXPECT_EQ(displayvisualupdate(20), 0u);
  DisplaySetMaxScanner(1, 2);
  DisplayExit();  // no module: a no-op
}
