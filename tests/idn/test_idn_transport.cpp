// The IDN transport driven through kalvor's exports the way a host drives
// it, streaming to loopback test receivers. Every test compares the frames
// the receiver decoded with the engine's frame read back through the full
// preview, and ends with no broken session rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "receiver.h"
#include "support/harness.h"
#include "transports/idn/idn_transport.h"
#include "virtual/points.h"

using namespace idntest;

namespace {

int16_t hold(int64_t v) { return static_cast<int16_t>(std::clamp<int64_t>(v, INT16_MIN, INT16_MAX)); }

// `count` points spread over the whole field, every seventh one blanked. The
// first is blanked too, so the projector adds no travel point before it.
std::vector<kt::Point> picture(size_t count, size_t first) {
  std::vector<kt::Point> points(count);
  for (size_t k = 0, i = first; k < count; ++k, ++i)
    points[k] = kt::Point{static_cast<int16_t>(i * 37 % 60000 - 30000), static_cast<int16_t>(i * 91 % 60000 - 30000), 0,
                          static_cast<uint8_t>(k == 0 || i % 7 == 3 ? 0xC0 : 0x80), 0, static_cast<uint8_t>(i),
                          static_cast<uint8_t>(i * 3), static_cast<uint8_t>(i * 7 + 1)};
  return points;
}

// The samples the engine's current frame should go out as: Y pointing up,
// held to 16 bits, blanked points dark, each point 1 + repeat times (the
// preview does not show repeats: the test knows them), padded to 20 with the
// last sample.
std::vector<Sample> engine_samples(uint32_t s, const std::vector<int>& repeats = {}) {
  displayupdatefullpreviewbuffer(s, nullptr, nullptr);
  const std::vector<kt::Out> frame = kt::frame(s);
  std::vector<Sample> out;
  for (size_t i = 0; i < frame.size(); ++i) {
    const kt::Out& p = frame[i];
    bool dark = p.status & 0x40;
    for (int k = 0; k <= (i < repeats.size() ? repeats[i] : 0); ++k)
      out.push_back(Sample{hold(p.x), hold(-1 - int64_t{p.y}), uint8_t(dark ? 0 : p.r), uint8_t(dark ? 0 : p.g),
                           uint8_t(dark ? 0 : p.b), uint8_t(dark ? 0 : 255)});
  }
  if (out.empty()) out.push_back(Sample{0, 0, 0, 0, 0, 0});
  while (out.size() < 20) out.push_back(out.back());
  return out;
}

const std::vector<Sample> kBlank(20, Sample{0, 0, 0, 0, 0, 0});

// Shows exactly `points` points on scanner s: a picture holds at most 8,192,
// so larger frames are pictures 1, 2, ... on tracks 0, 1, ...
void show(uint32_t s, size_t points) {
  displayinittrack(s);
  for (uint16_t t = 0; points; ++t) {
    size_t n = std::min<size_t>(points, 8000);
    kt::upload(s, static_cast<uint16_t>(t + 1), picture(n, t * 8000u));
    displayframe(s, t, static_cast<uint16_t>(t + 1));
    points -= n;
  }
  displayupdate(s);
}

auto last_is(const std::vector<Sample>& samples) {
  return [samples](const std::vector<Frame>& f) { return !f.empty() && f.back().samples == samples; };
}

class IdnTransport : public ::testing::Test {
 protected:
  // Writes the configuration file and starts the library with it.
  void start(const std::string& text) {
    std::string path = kt::temp_path("transport.ini");
    kt::write_file(path, kt::Bytes(text.begin(), text.end()));
    kt::set_env("KALVOR_TRANSPORT_CONFIG", path.c_str());
    DisplayExit();
    DisplayInit();
  }
  // Built by appending: GCC 12 at -O3 misreads a string inserted in front of another.
  static std::string output(int scanner, const Receiver& r) {
    std::string port = std::to_string(r.port());
    return std::string("[").append(std::to_string(scanner)) + "]\nOutput=idn:127.0.0.1:" + port + "\n";
  }
  // The session ends with the test: its close, too, keeps every rule.
  void TearDown() override {
    DisplayExit();
    EXPECT_EQ(rx.violations(), std::vector<std::string>{});
  }
  Receiver rx;  // the projector of every test, and projector a of the one with two
};

}  // namespace

TEST_F(IdnTransport, FramesOfEverySizeArriveWholeInFragmentsOfAtMost1454Bytes) {
  start(output(3, rx));
  displaypointrate(3, 20);  // 20,000 points per second: 50 µs a sample
  // Repeated points: 1 + 3 + 16 samples, no padding (a blanked first point
  // needs no travel point before it).
  kt::upload(3, 1, {{1, 2, 0, 0xC0, 0, 9, 9, 9}, {3, 4, 0, 0x80, 2, 8, 8, 8}, {5, 6, 0, 0xC0, 15, 7, 7, 7}});
  displayinittrack(3), displayframe(3, 0, 1), displayupdate(3);
  std::vector<Sample> repeated = engine_samples(3, {0, 2, 15});
  ASSERT_EQ(repeated.size(), 20u);
  EXPECT_TRUE(rx.wait(last_is(repeated), 3000));
  // One frame at a time: two of 16,000 points back to back can overrun the
  // receiver's socket buffer on a loaded machine.
  for (auto [points, fragments] : {std::pair<size_t, uint32_t>{1, 1}, {177, 1}, {178, 2}, {4000, 23}, {16000, 89}}) {
    show(3, points);
    std::vector<Sample> expected = engine_samples(3);
    ASSERT_TRUE(rx.wait(last_is(expected), 3000)) << points << " points";
    EXPECT_EQ(rx.frames().back().fragments, fragments) << points;
    EXPECT_EQ(rx.frames().back().duration, expected.size() * 50) << points;
  }
  // Points moved beyond the 16-bit range are held at its ends.
  DisplayShiftX(3, MAKEMASK(0) | MAKEMASK(1), 0, 0, 0.9);
  displayupdate(3);
  std::vector<Sample> shifted = engine_samples(3);
  EXPECT_TRUE(std::any_of(shifted.begin(), shifted.end(), [](const Sample& s) { return s.x == 32767; }));
  EXPECT_TRUE(rx.wait(last_is(shifted), 3000));
}

TEST_F(IdnTransport, SessionKeepsTheChannelOpenGoesDarkAndClosesCleanly) {
  start(output(1, rx));
  show(1, 50);
  std::vector<Sample> frame = engine_samples(1);
  ASSERT_TRUE(rx.wait(last_is(frame), 3000));
  // Idle: void messages keep the channel, well inside the receiver's second.
  std::this_thread::sleep_for(std::chrono::milliseconds(1300));
  IdnTransportCounters c{};
  idn_transport_counters(1, &c);
  EXPECT_GE(rx.keepalives(), 2);
  EXPECT_GE(c.keepalives, 2u);  // counted by the sender too
  EXPECT_LE(rx.longest_silence_ms(), 500u);
  // Each way of darkening the output blanks the projector and keeps the session.
  struct Row {
    const char* what;
    void (*off)();
    void (*on)();
  } rows[] = {
      {"output switch", [] { displayoutput(1, 0); }, [] { displayoutput(1, 1); }},
      {"all outputs", [] { displaystopoutput(); }, [] { displayenableoutput(); }},
      {"shutter", [] { displayshutter(1, 0); }, [] { displayshutter(1, 1); }},
      {"ILDA output", [] { DisableILDAOutput(1); }, [] { EnableILDAOutput(1); }},
  };
  for (const Row& row : rows) {
    row.off();
    EXPECT_TRUE(rx.wait(last_is(kBlank), 3000)) << row.what;
    row.on();
    EXPECT_TRUE(rx.wait(last_is(frame), 3000)) << row.what;
  }
  EXPECT_EQ(rx.closes(), 0);
  // The end of a session closes; the next frame opens a new one.
  displayendsession(1);
  EXPECT_TRUE(rx.wait_closes(1, 3000));
  show(1, 10);
  EXPECT_TRUE(rx.wait(last_is(engine_samples(1)), 3000));
  DisplayExit();
  EXPECT_TRUE(rx.wait_closes(2, 3000));
}

TEST_F(IdnTransport, TwoScannersStreamToTwoProjectorsAndOneComesBackAfterVanishing) {
  Receiver b;
  start(output(1, rx) + output(2, b));
  show(1, 300);
  show(2, 40);
  std::vector<Sample> one = engine_samples(1), two = engine_samples(2);
  EXPECT_TRUE(rx.wait(last_is(one), 3000));
  EXPECT_TRUE(b.wait(last_is(two), 3000));
  EXPECT_NE(one, two);

  // Projector b vanishes: sends fail and are counted, the host never waits.
  b.stop();
  auto started = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) displayupdate(2);
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(2));
  IdnTransportCounters c{};
  for (int i = 0; i < 40 && c.failedSends == 0; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    ASSERT_EQ(idn_transport_counters(2, &c), 1u);
  }
  EXPECT_GT(c.failedSends, 0u);
  // It comes back on the same port and shows the frame with no help from the host.
  b.start();
  EXPECT_TRUE(b.wait(last_is(two), 5000));
  EXPECT_TRUE(rx.wait(last_is(one), 100));
  EXPECT_EQ(b.violations(), std::vector<std::string>{});
}

TEST_F(IdnTransport, BadConfigurationEntriesAreReportedOnceAndLeaveTheirScannerUnconfigured) {
  testing::internal::CaptureStderr();
  start("; scanners\n[1]\nOutput=idn:127.0.0.1:99999\n[21]\nOutput=idn:127.0.0.1\n[4]\nOutput=preview:1\n"
        "Colour=red\nnonsense\n[5]\nOutput=idn:\n[6]\nOutput=idn:127.0.0.1/300\n" + output(2, rx));
  std::string messages = testing::internal::GetCapturedStderr();
  std::string file = kt::temp_path("transport.ini");
  for (const char* line : {":3: port '99999'", ":4: section [21]", ":7: Output 'preview:1'", ":8: unknown key Colour",
                           ":9: 'nonsense'", ":11: Output 'idn:' names no host", ":13: service '300'"})
    EXPECT_NE(messages.find(file + line), std::string::npos) << line << " in\n" << messages;
  EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 7) << messages;
  IdnTransportCounters c{};
  for (uint32_t s : {1u, 4u, 5u, 6u}) EXPECT_EQ(idn_transport_counters(s, &c), 0u) << s;
  show(2, 5);
  EXPECT_TRUE(rx.wait(last_is(engine_samples(2)), 3000));
}
