// Twenty threads drive scanners 1 to 20 at once: each thread owns one
// scanner, sets its fields, uploads its tracks and sends its commands. Calls
// for different scanners may run in parallel, so this must come out clean
// under ThreadSanitizer, and each scanner must receive exactly what its own
// thread asked for. The library-wide values shared by all scanners (Vistrel
// output, the timeline start) are left alone.
#include <thread>
#include <vector>

#include "support/harness.h"

using namespace kt;

namespace {

constexpr uint32_t kScanners = 20;
constexpr int kRounds = 3;

// Everything one thread does to its scanner in one round.
void drive(uint32_t s, int round) {
  displayinittrack(s);
  DisplaySetMaxScanner(s, static_cast<uint8_t>(s + round));
  displayupdate(s);
}

}  // namespace

class Threads : public KalvorTest {};

TEST_F(Threads, TwentyScannersFromTwentyThreads) {
  std::vector<std::thread> threads;
  for (uint32_t s = 1; s <= kScanners; ++s)
    threads.emplace_back([s] {
      for (int round = 0; round < kRounds; ++round) drive(s, round);
    });
  for (auto& t : threads) t.join();

  // Per scanner, the commands arrive in the order its thread sent them.
  std::vector<std::vector<Bytes>> per_scanner(kScanners + 1);
  for (const Sent& sent : rec.all()) {
    ASSERT_GE(sent.scanner, 1u);
    ASSERT_LE(sent.scanner, kScanners);
    per_scanner[sent.scanner].push_back(sent.bytes);
  }
  for (uint32_t s = 1; s <= kScanners; ++s) {
    SCOPED_TRACE(s);
    const auto& got = per_scanner[s];
    ASSERT_EQ(got.size(), size_t{3 * kRounds});
    for (int round = 0; round < kRounds; ++round) {
      EXPECT_EQ(got[3 * round], (Bytes{0x35, static_cast<uint8_t>(s + round)}));
      EXPECT_EQ(got[3 * round + 1], (Bytes{0x01, 0x00, 0x00}));
      EXPECT_EQ(got[3 * round + 2], (Bytes{0x7B}));
    }
  }
}
