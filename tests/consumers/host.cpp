// A C++ host: the header read by a C++ compiler must give unmangled names.
// Drives scanners 1 and 2 for one frame each through the recording transport
// and checks every byte sent; the session object calls DisplayExit however
// main leaves.
#include <kalvor/kalvor.h>

#include <cstdint>
#include <cstdio>
#include <vector>

#include "recording.h"

namespace {

struct Session {
  Session() { DisplayInit(); }
  ~Session() { DisplayExit(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};

struct Expected {
  uint32_t scanner;
  std::vector<uint8_t> bytes;
};

}  // namespace

int main() {
  recording rec{};
  bool ok = true;
  {
    Session session;
    if (!recording_open(&rec)) {
      std::printf("LASER.DLL is not the recording transport\n");
      return 1;
    }
    const std::vector<uint8_t> answer{0x00, 0x00, 0x2A, 0x00, 0x00, 0x00};  // 0 points, wait 42
    rec.set_reply(0x01, answer.data(), static_cast<uint32_t>(answer.size()));
    for (uint32_t scanner : {1u, 2u}) {
      uint32_t wait = displayupdate(scanner);
      if (wait != 42) {
        std::printf("scanner %u: wait value %u, expected 42\n", scanner, wait);
        ok = false;
      }
    }
  }
  const std::vector<Expected> expected{
      {1, {0x01, 0x00, 0x00}}, {1, {0x7B}}, {2, {0x01, 0x00, 0x00}}, {2, {0x7B}}};
  if (rec.count() != static_cast<int>(expected.size())) {
    std::printf("%d commands sent, expected %zu\n", rec.count(), expected.size());
    ok = false;
  }
  for (size_t i = 0; i < expected.size(); ++i) {
    const Expected& e = expected[i];
    ok = recording_expect(&rec, static_cast<int>(i), e.scanner, e.bytes.data(),
                          static_cast<uint32_t>(e.bytes.size()), 1) && ok;
  }
  if (rec.destructor_calls() != 1) {
    std::printf("DisplayExit did not destroy the transport\n");
    ok = false;
  }
  std::printf("c++ host: %s\n", ok ? "ok" : "FAILED");
  return ok ? 0 : 1;
}
