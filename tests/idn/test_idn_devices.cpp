// `kalvor devices` finds the loopback test receiver and prints a
// configuration line that the transport accepts; `kalvor play` streams a file
// to it.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "pictures_support.h"
#include "receiver.h"
#include "support/harness.h"
#include "transports/common/transport_config.h"

namespace {

// Runs the tool; returns its standard output and sets its exit status.
std::string run(const std::string& arguments, int* status) {
  std::string command = std::string("\"") + KALVOR_TOOL + "\" " + arguments;
  FILE* p = popen(command.c_str(), "r");
  std::string out;
  char buffer[512];
  while (p && std::fgets(buffer, sizeof buffer, p)) out += buffer;
  int rc = p ? pclose(p) : -1;
  *status = rc != -1 && WIFEXITED(rc) ? WEXITSTATUS(rc) : rc;
  return out;
}

}  // namespace

TEST(IdnDevices, ListsALaserServiceWithAConfigurationLineAndIgnoresSilenceAndLies) {
  idntest::Receiver rx;
  std::string where = "127.0.0.1:" + std::to_string(rx.port());
  int status = -1;
  std::string out = run("devices --host " + where + " --timeout 500", &status);
  EXPECT_EQ(status, 0) << out;
  EXPECT_NE(out.find(where + "  unit 01-02-00-5e-10-20-30  host \"kalvor-test\"  status realtime"), std::string::npos)
      << out;
  EXPECT_NE(out.find("service 1 \"Laser 1\" laser projector (default)"), std::string::npos) << out;
  std::string line = "Output=idn:" + where + "/1";
  ASSERT_NE(out.find(line), std::string::npos) << out;
  kalvor::transport::IdnTarget target;
  std::string problem;
  EXPECT_TRUE(kalvor::transport::parse_idn_output(line.substr(7), &target, &problem)) << problem;
  EXPECT_EQ(rx.scans(), 2);  // the scan and the service map

  // Nobody answers on a port with no receiver: status 1, within the timeout.
  rx.stop();
  out = run("devices --host " + where + " --timeout 200", &status);
  EXPECT_EQ(status, 1) << out;

  // On the same port, answers the scan with a response claiming 200 bytes,
  // one with another sequence number, and a service map claiming nine
  // services it does not hold.
  namespace net = kalvor::net;
  net::Socket liar = net::open_udp(net::Address{0x7F000001, rx.port()}, false);
  std::thread answer([liar] {
    uint8_t in[64];
    net::Address from;
    if (!net::wait_readable(liar, 5000) || net::receive_datagram(liar, in, sizeof in, &from) != 4) return;
    uint8_t scan[44] = {0x11, 0, in[2], in[3], 200};
    uint8_t other[44] = {0x11, 0, in[2], static_cast<uint8_t>(in[3] + 1), 40};
    uint8_t map[32] = {0x13, 0, 0, 9, 4, 24, 0, 9};
    for (auto* d : {scan, other}) net::send_datagram_to(liar, d, 44, from);
    net::send_datagram_to(liar, map, sizeof map, from);
  });
  out = run("devices --host " + where + " --timeout 500 2>&1", &status);
  answer.join();
  net::close_socket(liar);
  EXPECT_EQ(status, 1) << out;
  EXPECT_NE(out.find("3 unexpected or malformed datagrams ignored"), std::string::npos) << out;
}

// `kalvor play --output idn:` streams each picture of a file as one frame:
// the file's own coordinates (Y up, as in the file) and colours.
TEST(IdnDevices, PlayStreamsEveryPictureOfAFile) {
  kt::Bytes file;
  std::vector<std::vector<idntest::Sample>> pictures(2);
  for (int f = 0; f <= 2; ++f) {  // two frames of 24 true-colour 2-D points, then the closing header
    int n = f < 2 ? 24 : 0;
    kt::Bytes head = kt::head(kt::ilda_header(5, uint16_t(n)), 26);  // then frame f of 2
    file = kt::concat({file, head, kt::be16(uint16_t(f)), kt::be16(2), {0, 0}});
    for (int k = 0; k < n; ++k) {  // a dark first point: no travel point before it
      int x = 1000 * k - 12000, y = 500 * k - 300 * f;
      uint8_t r = static_cast<uint8_t>(10 * k + 5), g = static_cast<uint8_t>(100 * f), b = 7;
      const uint8_t status = k == 0 ? 0x40 : k == n - 1 ? 0x80 : 0;
      file = kt::concat({file, kt::be16(uint16_t(x)), kt::be16(uint16_t(y)), {status, b, g, r}});
      pictures[f].push_back(k == 0 ? idntest::Sample{int16_t(x), int16_t(y), 0, 0, 0, 0}
                                   : idntest::Sample{int16_t(x), int16_t(y), r, g, b, 255});
    }
  }
  std::string path = kt::temp_path("play-idn.ild");
  kt::write_file(path, file);

  idntest::Receiver rx;
  int status = -1;
  std::string said = run("play \"" + path + "\" --fps 20 --output idn:127.0.0.1:" + std::to_string(rx.port()) + " 2>&1",
                         &status);
  EXPECT_EQ(status, 0) << said;
  ASSERT_TRUE(rx.wait_closes(1, 3000)) << said;
  // The pictures' frames, in order, between the dark frames of the session's
  // start and end (output switched on before any picture, and off).
  const std::vector<idntest::Sample> dark(20, idntest::Sample{0, 0, 0, 0, 0, 0});
  std::vector<std::vector<idntest::Sample>> got;
  for (const idntest::Frame& frame : rx.frames())
    if (frame.samples != dark && (got.empty() || got.back() != frame.samples)) got.push_back(frame.samples);
  EXPECT_EQ(got, pictures);
  EXPECT_EQ(rx.violations(), std::vector<std::string>{});
  std::remove(path.c_str());
}
