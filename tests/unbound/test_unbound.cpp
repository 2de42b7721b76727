// A process where no LASER.DLL can be found: five messages, records still
// initialised, nothing sent. Run with a loader path that holds no transport.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
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

// Nothing answers: queries give their presets, records still change.
TEST(Unbound, QueriesGivePresetsAndRecordsStillChange) {
  DisplayInit();
  char name[16];
  getsendname(1, name);
  EXPECT_STREQ(name, "MASTER");
  getreceivename(20, name);
  EXPECT_STREQ(name, "SLAVE");
  EXPECT_EQ(displaygetsignal(1), 2);
  EXPECT_EQ(displaygetoutput(1), 1);
  EXPECT_EQ(displaygetpreviewflag(1), 0);
  EXPECT_EQ(displaygetbeamshowflag(1), 1);
  EXPECT_EQ(displaygetgraficflag(1), 1);
  EXPECT_EQ(displaygetversion(1), 0u);
  EXPECT_EQ(HWManagerGetStatus(1), 99);
  EXPECT_EQ(SoftwareGetCRC(1), 0u);
  EXPECT_EQ(GetRouting(1), 0);
  EXPECT_EQ(displaygetdmx(1, 1), 0);
  EXPECT_EQ(displayprint(5), 0u);
  uint16_t count = 9;
  uint32_t value = 9;
  displayupdatevistrelbuffer(1, &count, &value);
  EXPECT_EQ(count + value, 0u);

  displayoutput(1, 2);
  EXPECT_EQ(displaygetoutput(1), 2);
  displaystopoutput();
  EXPECT_EQ(displaygetoutput(20), 0);
  displaysignal(1, 7);
  EXPECT_EQ(displaygetsignal(1), 7);
  displayenabledmxin(1, 1);
  EXPECT_EQ(displaygetenabledmxin(1), 1);
  std::string path = testing::TempDir() + "kalvor_unbound.rgb";
  std::ofstream(path, std::ios::binary) << "abc";
  displayloadRGB(1, 0, path.c_str());  // loading still fills the buffer
  uint8_t c[6] = {};
  displaygetcolorbuffer(1, 0, 0, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
  EXPECT_EQ(std::string(c, c + 3), "abc");
  std::remove(path.c_str());
  DisplayExit();
}
