// Runs one IDN parser on one datagram and checks its result against the bytes.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "idn_parsers.h"
#include "transports/idn/protocol.h"

namespace kalvor_fuzz {
namespace {

using namespace kalvor::idn;

void check(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "IDN parser check failed: %s\n", what);
  std::abort();
}

bool printable(const char* text, size_t capacity) {
  size_t n = strnlen(text, capacity);
  if (n == capacity) return false;
  for (size_t i = 0; i < n; ++i)
    if (text[i] < 0x20 || text[i] > 0x7E) return false;
  return true;
}

}  // namespace

bool idn_parser_by_name(const char* name, IdnParser* out) {
#define KALVOR_FUZZ_IDN_NAME(n)    \
  if (std::strcmp(name, #n) == 0) { \
    *out = IdnParser::n;            \
    return true;                    \
  }
  KALVOR_FUZZ_IDN_PARSERS(KALVOR_FUZZ_IDN_NAME)
#undef KALVOR_FUZZ_IDN_NAME
  return false;
}

void run_idn_parser(IdnParser parser, const uint8_t* data, size_t size) {
  // An exact copy, so that a read past the datagram is a read past the buffer.
  std::vector<uint8_t> d(data, data + size);
  const uint8_t* p = d.empty() ? nullptr : d.data();
  switch (parser) {
    case IdnParser::idn_scan: {
      ScanResponse r;
      if (!parse_scan_response(p, size, &r)) return;
      check(size >= 44 && d[4] >= 40 && d[4] <= size - 4, "a scan response larger than its datagram was accepted");
      check(r.unitIdLength <= sizeof r.unitId, "unit ID longer than its field");
      check(printable(r.hostName, sizeof r.hostName), "host name not printable or not terminated");
      break;
    }
    case IdnParser::idn_service_map: {
      static ServiceMap m;
      if (!parse_service_map(p, size, &m)) return;
      size_t entries = size_t{m.relayCount} + m.serviceCount;
      check(size >= 8 && d[4] + entries * d[5] <= size - 4, "service entries beyond the datagram were accepted");
      for (size_t i = 0; i < m.serviceCount; ++i)
        check(printable(m.services[i].name, sizeof m.services[i].name), "service name not printable");
      break;
    }
    case IdnParser::idn_ack: {
      Acknowledge a;
      if (!parse_acknowledge(p, size, &a)) return;
      check(size >= 8 && d[4] >= 4 && d[4] <= size - 4, "an acknowledgement larger than its datagram was accepted");
      if (d[4] < 12) check(a.latency == 0, "latency read beyond the stated size");
      break;
    }
  }
}

}  // namespace kalvor_fuzz
