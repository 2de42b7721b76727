// A process where no LASER.DLL can be found: five messages, records still
// initialised, nothing sent. Run with a loader path that holds no transport.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "kalvor/kalvor.h"

TEST(Unbound, InitShowsFiveMessagesAndExportsStillWorkOnTheRecords) {
  for (int round = 0; round < 2; ++round) {  // a failed load leaves the library unbound
    testing::internal::CaptureStderr();
    DisplayInit();
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5) << text;
    size_t at = 0;  // each message after the one before
    for (const char* message : {"LASER.DLL not found or not enough memory/virtual memory for LASER.DLL!",
                                "Function NetScanConstructor not found !", "Function NetScanDestructor not found !",
                                "Function NetScanCommand not found !", "NetScanPrint not found!"})
      EXPECT_NE(at = text.find(message, at), std::string::npos) << message << " in\n" << text;
  }

  // Nothing answers: queries give their presets, records still change.
  displayinittrack(1);
  DisplaySetMaxScanner(1, 2);
  char send[16], receive[16];
  getsendname(1, send);
  getreceivename(20, receive);
  EXPECT_EQ(std::string(send) + "/" + receive, "MASTER/SLAVE");
  uint16_t count = 9;
  uint32_t value = 9;
  displayupdatevistrelbuffer(1, &count, &value);
  EXPECT_EQ((std::vector<uint32_t>{displayupdate(1), displayvisualupdate(20), displaygetsignal(1),
                                   displaygetoutput(1), displaygetpreviewflag(1), displaygetbeamshowflag(1),
                                   displaygetgraficflag(1), displaygetversion(1), HWManagerGetStatus(1),
                                   SoftwareGetCRC(1), GetRouting(1), displaygetdmx(1, 1), displayprint(5), count,
                                   value}),
            (std::vector<uint32_t>{0, 0, 2, 1, 0, 1, 1, 0, 99, 0, 0, 0, 0, 0, 0}));

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
  DisplayExit();  // no module: a no-op
}
