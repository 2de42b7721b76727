// `kalvor devices`: sends an IDN scan request, asks every responder for its
// service map, and lists the responders with a configuration line for each
// laser-projector service. Answers are read through the parsers that refuse
// anything whose sizes or counts claim more than the datagram holds.
#include "devices.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/transport_platform.h"
#include "transports/common/transport_config.h"
#include "transports/idn/protocol.h"

namespace cli {
namespace {

namespace net = kalvor::net;
namespace idn = kalvor::idn;

struct Responder {
  net::Address address;
  idn::ScanResponse scan;
  bool haveMap = false;
  std::vector<idn::Service> services;
};

std::string ip_text(net::Address a) {
  char text[16];
  net::format_ip(a.ip, text);
  return text;
}

std::string status_text(uint8_t s) {
  std::string t;
  const struct {
    uint8_t bit;
    const char* name;
  } bits[] = {{0x80, "malfunction"}, {0x40, "offline"}, {0x20, "excluded"}, {0x10, "occupied"}, {0x01, "realtime"}};
  for (auto& b : bits)
    if (s & b.bit) t += std::string(t.empty() ? "" : ", ") + b.name;
  return t.empty() ? "-" : t;
}

std::string unit_text(const idn::ScanResponse& r) {
  std::string t;
  char hex[4];
  for (uint8_t i = 0; i < r.unitIdLength; ++i) {
    std::snprintf(hex, sizeof hex, i ? "-%02x" : "%02x", r.unitId[i]);
    t += hex;
  }
  return t.empty() ? "-" : t;
}

void print(const Responder& r) {
  std::string where = ip_text(r.address);
  if (r.address.port != kalvor::transport::kIdnPort) where += ":" + std::to_string(r.address.port);
  std::printf("%s  unit %s  host \"%s\"  status %s\n", where.c_str(), unit_text(r.scan).c_str(), r.scan.hostName,
              status_text(r.scan.status).c_str());
  if (!r.haveMap) {
    std::printf("  no service map received; the default service:\n    Output=idn:%s\n", where.c_str());
    return;
  }
  bool any = false;
  for (const idn::Service& s : r.services) {
    if (s.type != idn::kServiceLaser) continue;
    any = true;
    std::printf("  service %u \"%s\" laser projector%s\n    Output=idn:%s/%u\n", s.id, s.name,
                (s.flags & idn::kServiceDefault) ? " (default)" : "", where.c_str(), s.id);
  }
  if (!any) std::printf("  no laser-projector service\n");
}

}  // namespace

CLI::App* add_devices_command(CLI::App& app, DevicesOptions& options) {
  CLI::App* cmd = app.add_subcommand(
      "devices", "Lists the IDN projectors that answer a scan, their laser services and a configuration line "
                 "for each (the transport configuration file's Output=).");
  cmd->add_option("--host", options.host,
                  "Ask only this address (HOST or HOST:PORT) instead of broadcasting on every IPv4 interface");
  cmd->add_option("--timeout", options.timeoutMs, "Milliseconds to wait for answers (default 1000)")
      ->check(CLI::Range(1, 60000));
  return cmd;
}

int run_devices(const DevicesOptions& options) {
  std::vector<net::Address> targets;
  if (!options.host.empty()) {
    kalvor::transport::IdnTarget target;
    std::string problem;
    net::Address a;
    if (!kalvor::transport::parse_idn_output("idn:" + options.host, &target, &problem) ||
        !net::resolve(target.host.c_str(), &a)) {
      std::fprintf(stderr, "kalvor: --host %s is not an address or known host name\n", options.host.c_str());
      return 2;
    }
    a.port = target.port;
    targets.push_back(a);
  } else {
    net::Address found[64];
    size_t n = net::broadcast_addresses(found, 64);
    for (size_t i = 0; i < n; ++i) targets.push_back(net::Address{found[i].ip, idn::kPort});
  }
  net::Socket s = net::open_udp(net::Address{}, options.host.empty());
  if (s == net::kNoSocket) {
    std::fprintf(stderr, "kalvor: no UDP socket\n");
    return 1;
  }
  uint16_t sequence = 1;
  const uint16_t scanSequence = sequence;
  uint8_t packet[idn::kMaxDatagram];
  size_t size = idn::write_request(packet, idn::kScanRequest, scanSequence);
  for (net::Address t : targets) net::send_datagram_to(s, packet, size, t);

  std::vector<Responder> responders;
  std::vector<uint16_t> mapSequences;
  size_t ignored = 0;
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(options.timeoutMs);
  static uint8_t in[65536];
  idn::ScanResponse scan;
  idn::ServiceMap map;
  for (;;) {
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
    if (left <= 0) break;
    if (!net::wait_readable(s, static_cast<int>(left))) continue;
    net::Address from;
    for (int n; (n = net::receive_datagram(s, in, sizeof in, &from)) >= 0;) {
      // Scan answers count only from the port asked, with the request's sequence.
      bool fromTarget = options.host.empty() ? from.port == idn::kPort : from == targets.front();
      if (fromTarget && idn::parse_scan_response(in, size_t(n), &scan) && scan.sequence == scanSequence) {
        bool known = false;
        for (const Responder& r : responders) known |= r.address == from;
        if (!known) {
          responders.push_back(Responder{from, scan, false, {}});
          mapSequences.push_back(++sequence);
          size = idn::write_request(packet, idn::kServiceMapRequest, sequence);
          net::send_datagram_to(s, packet, size, from);
        }
      } else if (idn::parse_service_map(in, size_t(n), &map)) {
        bool used = false;
        for (size_t i = 0; i < responders.size(); ++i) {
          Responder& r = responders[i];
          if (r.address == from && mapSequences[i] == map.sequence && !r.haveMap) {
            r.haveMap = used = true;
            r.services.assign(map.services, map.services + map.serviceCount);
          }
        }
        if (!used) ++ignored;
      } else {
        ++ignored;
      }
    }
  }
  net::close_socket(s);
  for (const Responder& r : responders) print(r);
  if (ignored) std::fprintf(stderr, "kalvor: %zu unexpected or malformed datagram%s ignored\n", ignored, ignored == 1 ? "" : "s");
  if (responders.empty()) {
    std::fprintf(stderr, "kalvor: no IDN device answered within %d ms\n", options.timeoutMs);
    return 1;
  }
  return 0;
}

}  // namespace cli
