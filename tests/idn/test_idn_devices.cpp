// `kalvor devices` finds the loopback test receiver and prints a
// configuration line that the transport accepts.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>

#include "receiver.h"
#include "transports/common/transport_config.h"

#if defined(_WIN32)
#define popen _popen
#define pclose _pclose
#endif

namespace {

// Runs the tool; returns its standard output and sets its exit status.
std::string run(const std::string& arguments, int* status) {
  std::string command = std::string("\"") + KALVOR_TOOL + "\" " + arguments;
  FILE* p = popen(command.c_str(), "r");
  std::string out;
  char buffer[512];
  while (p && std::fgets(buffer, sizeof buffer, p)) out += buffer;
  int rc = p ? pclose(p) : -1;
#if !defined(_WIN32)
  if (rc != -1 && WIFEXITED(rc)) rc = WEXITSTATUS(rc);
#endif
  *status = rc;
  return out;
}

}  // namespace

TEST(IdnDevices, ListsTheReceiversLaserServiceWithAConfigurationLine) {
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
}

TEST(IdnDevices, AnswersThatLieAboutTheirSizeAreCountedAndIgnored) {
  namespace net = kalvor::net;
  net::Socket liar = net::open_udp(net::Address{0x7F000001, 0}, false);
  uint16_t port = net::local_address(liar).port;
  // Answers the scan with a response claiming 200 bytes, one with another
  // sequence number, and a service map claiming nine services it does not hold.
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
  int status = -1;
  std::string out = run("devices --host 127.0.0.1:" + std::to_string(port) + " --timeout 500 2>&1", &status);
  answer.join();
  net::close_socket(liar);
  EXPECT_EQ(status, 1) << out;
  EXPECT_NE(out.find("3 unexpected or malformed datagrams ignored"), std::string::npos) << out;
}
