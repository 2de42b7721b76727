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
  char send[16], receive[16];
  getsendname(1, send);
  getreceivename(20, receive);
  EXPECT_EQ(std::string(send) + "/" + receive, "MASTER/SLAVE");
  uint16_t count = 9;
  uint32_t value = 9;
  displayupdatevistrelbuffer(1, &count, &value);
  EXPECT_EQ((std::vector<uint32_t>{displaygetsignal(1), displaygetoutput(1), displaygetpreviewflag(1),
                                   displaygetbeamshowflag(1), displaygetgraficflag(1), displaygetversion(1),
                                   HWManagerGetStatus(1), SoftwareGetCRC(1), GetRouting(1), displaygetdmx(1, 1),
                                   displayprint(5), count, value}),
            (std::vector<uint32_t>{2, 1, 0, 1, 1, 0, 99, 0, 0, 0, 0, 0, 0}));

  displayoutput(1, 2);
  displaysignal(1, 7);
  displayenabledmxin(1, 1);
  uint32_t output = displaygetoutput(1);
  displaystopoutput();
  std::string path = testing::TempDir() + "kalvor_unbound.rgb";
  std::ofstream(path, std::ios::binary) << "abc";
  displayloadRGB(1, 0, path.c_str());  // loading still fills the buffer
  uint8_t c[6] = {};
  displaygetcolorbuffer(1, 0, 0, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
  EXPECT_EQ((std::vector<uint32_t>{output, displaygetoutput(20), displaygetsignal(1), displaygetenabledmxin(1), c[0],
                                   c[1], c[2]}),
            (std::vector<uint32_t>{2, 0, 7, 1, 'a', 'b', 'c'}));
  std::remove(path.c_str());
  DisplayExit();
}
