// A short IDN session for the capture test: discovery of the loopback test
// receiver, frames with fragments, an idle keepalive and the close. It prints
// the receiver's port, waits for a line on standard input (the capture is
// running), plays the session and exits 0 when the receiver saw no broken
// rule. Usage: KALVOR_TRANSPORT_CONFIG=FILE kalvor_idn_session; it writes
// FILE, the library's transport configuration, once it knows the port.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "kalvor/kalvor.h"
#include "receiver.h"
#include "transports/idn/protocol.h"

namespace idn = kalvor::idn;
namespace net = kalvor::net;

namespace {

// Sends a request to the receiver and waits for its answer.
bool ask(net::Socket s, net::Address to, idn::Command command, uint16_t sequence) {
  uint8_t packet[idn::kMaxDatagram], in[2048];
  net::send_datagram_to(s, packet, idn::write_request(packet, command, sequence), to);
  return net::wait_readable(s, 2000) && net::receive_datagram(s, in, sizeof in, nullptr) > 0;
}

// The first point is blanked, so the projector adds no travel point before
// it: the frame holds exactly `points` points.
void show(uint32_t scanner, int points) {
  for (int i = 0; i < points; ++i)
    DisplaySetPicPoint(scanner, static_cast<uint16_t>(i), static_cast<uint16_t>(i * 97), static_cast<uint16_t>(i * 41), 0,
                       i == 0 ? 0xC0 : 0x80, 0, static_cast<uint8_t>(i), 255, 0);
  displaysetpic(scanner, 1, static_cast<uint16_t>(points));
  displayinittrack(scanner);
  displayframe(scanner, 0, 1);
  displayupdate(scanner);
}

}  // namespace

int main(int, char** argv) {
  const char* config = std::getenv("KALVOR_TRANSPORT_CONFIG");
  if (!config) {
    std::fprintf(stderr, "usage: KALVOR_TRANSPORT_CONFIG=FILE %s\n", argv[0]);
    return 2;
  }
  idntest::Receiver rx;
  std::printf("%u\n", rx.port());
  std::fflush(stdout);
  std::string go;
  std::getline(std::cin, go);

  net::Address to{0x7F000001, rx.port()};
  net::Socket s = net::open_udp(net::Address{}, false);
  bool found = ask(s, to, idn::kScanRequest, 1) && ask(s, to, idn::kServiceMapRequest, 2);
  net::close_socket(s);

  std::ofstream(config) << "[1]\nOutput=idn:127.0.0.1:" << rx.port() << "\n";
  DisplayInit();
  show(1, 400);  // three fragments
  show(1, 60);   // one message
  std::this_thread::sleep_for(std::chrono::milliseconds(600));  // a keepalive
  DisplayExit();  // the close
  bool closed = rx.wait_closes(1, 2000);
  for (const std::string& v : rx.violations()) std::fprintf(stderr, "receiver: %s\n", v.c_str());
  std::fprintf(stderr, "found %d, frames %zu, keepalives %d, closes %d\n", found, rx.frames().size(), rx.keepalives(),
               rx.closes());
  return found && closed && rx.frames().size() == 2 && rx.keepalives() >= 1 && rx.violations().empty() ? 0 : 1;
}
