// Twenty threads drive scanners 1 to 20 at once: each thread owns one
// scanner and sets its track, slot and colour fields, builds and uploads
// pictures, uploads its tracks, imports an ILDA file of its own and saves and
// reloads a palette file of its own. Calls for different scanners may run in
// parallel, so this must come out clean under ThreadSanitizer, and each
// scanner must receive exactly the commands it receives when the same work
// runs on one thread. The values the library shares between all scanners
// (Vistrel output, the timeline start) are left alone.
#include <string>
#include <thread>
#include <vector>

#include "pictures_support.h"

using namespace kt;

namespace {

constexpr uint32_t kScanners = 20;
constexpr int kRounds = 3;

// An ILDA file of one format-0 frame of n points and the closing header.
Bytes ilda_file(uint32_t seed, uint16_t n) {
  Bytes f = ilda_header(0, n);
  for (uint16_t i = 0; i < n; ++i)
    f = concat({f, be16(static_cast<uint16_t>(seed * 1000 + i)), be16(static_cast<uint16_t>(i * 3)),
                Bytes{0, 0, static_cast<uint8_t>(i % 2 ? 0x40 : 0), static_cast<uint8_t>(seed)}});
  return concat({f, ilda_header(0, 0)});
}

// Each scanner's own files.
std::string file_of(uint32_t s, const char* extension) { return temp_path("scanner" + std::to_string(s) + extension); }

// Everything one thread does to its scanner in one round.
void drive(uint32_t s, int round) {
  const double v = s + 0.125 * round;
  displayinittrack(s);
  for (uint16_t t = 0; t < 4; ++t) {
    displayframe(s, t, static_cast<uint16_t>(s * 10 + t));
    displayangx(s, t, static_cast<uint8_t>(t), v);
    displaypivot(s, t, 1, static_cast<int32_t>(s), -static_cast<int32_t>(s), round);
    displaysizex(s, t, v / 8);
    displayintensity(s, t, 0.5);
  }
  DisplayRotateZ(s, 0xF0, 0x3, 0, v / 360);
  DisplayShiftXY(s, 0x0F, 0x1, 0, 0.25, -0.25);
  displaysignal(s, static_cast<uint8_t>(s + round));
  setsendname(s, ("thread" + std::to_string(s)).c_str());
  displaysetcolorbuffer(s, 1, static_cast<uint8_t>(s), 1, 2, 3, 4, 5, static_cast<uint8_t>(round));
  for (uint32_t i = 0; i < 200; ++i) displaysetpoint(s, i, s * 100 + i, i, round, i % 64, i % 3 == 0, s, i, 255);
  displaysetpic(s, static_cast<uint16_t>(round + 1), 200);
  displaytestpic(s, 40);
  displayimportilda(s, file_of(s, ".ild").c_str(), static_cast<uint16_t>(100 + round));
  displaysavepal(s, 1, file_of(s, ".pal").c_str());
  displayloadpal(s, 2, file_of(s, ".pal").c_str());
  displayupdate(s);
  uint16_t count;
  uint32_t value;
  displayupdatepreviewbuffer(s, &count, &value);
  char name[16] = {};
  getsendname(s, name);
  DisplaySetMaxScanner(s, static_cast<uint8_t>(name[6] + displaygetsignal(s)));
}

// The commands each scanner received, in order.
std::vector<std::vector<Bytes>> by_scanner(Recorder& rec) {
  std::vector<std::vector<Bytes>> out(kScanners + 1);
  for (const Sent& sent : rec.all()) {
    EXPECT_GE(sent.scanner, 1u);
    EXPECT_LE(sent.scanner, kScanners);
    if (sent.scanner >= 1 && sent.scanner <= kScanners) out[sent.scanner].push_back(sent.bytes);
  }
  return out;
}

class Threads : public KalvorTest {};

}  // namespace

TEST_F(Threads, TwentyScannersFromTwentyThreads) {
  for (uint32_t s = 1; s <= kScanners; ++s) write_file(file_of(s, ".ild"), ilda_file(s, static_cast<uint16_t>(50 + s)));
  auto run_scanner = [](uint32_t s) {
    for (int round = 0; round < kRounds; ++round) drive(s, round);
  };

  // The reference: the same work, one scanner after the other.
  for (uint32_t s = 1; s <= kScanners; ++s) run_scanner(s);
  auto expected = by_scanner(rec);

  DisplayExit();
  DisplayInit();
  rec.clear();
  std::vector<std::thread> threads;
  for (uint32_t s = 1; s <= kScanners; ++s) threads.emplace_back(run_scanner, s);
  for (auto& t : threads) t.join();
  auto got = by_scanner(rec);

  for (uint32_t s = 1; s <= kScanners; ++s) {
    EXPECT_EQ(expected[s].size(), size_t{10 * kRounds}) << "scanner " << s;  // ten commands a round
    EXPECT_EQ(got[s], expected[s]) << "scanner " << s;
  }
}
