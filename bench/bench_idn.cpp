// The IDN sender at full load: 20 scanners, each sending a frame of 4,000
// points (23 datagrams) to a loopback socket that nobody reads, against the
// floor of the same number of sendto calls of the same sizes with the
// datagrams built beforehand. One iteration is one frame of every scanner,
// 1/60 of a second of a 20-scanner show.
#include <memory>
#include <vector>

#include "platform/transport_platform.h"
#include "support.h"
#include "transports/idn/sender.h"

namespace {

using namespace kalvor;

constexpr uint32_t kScanners = 20, kPoints = 4000;

// A socket on 127.0.0.1 that takes the datagrams; the system drops what it cannot hold.
struct Sink {
  net::Socket socket = net::open_udp(net::Address{0x7F000001, 0}, false);
  net::Address address = net::local_address(socket);
  ~Sink() { net::close_socket(socket); }
};

const projector::Frame& frame() {
  static auto f = [] {
    auto frame = std::make_unique<projector::Frame>();
    frame->count = kPoints;
    for (uint32_t i = 0; i < kPoints; ++i)
      frame->points[i] = projector::FramePoint{int32_t(i * 16) - 32000, int32_t(i * 7) - 14000, 0,
                                               {uint8_t(i), 255, uint8_t(i >> 4), 0, 0, 0}, uint8_t(i % 9 ? 0x80 : 0xC0), 0};
    return frame;
  }();
  return *f;
}

void idn_frames(benchmark::State& state) {
  Sink sink;
  static idn::Sender senders[kScanners];  // each holds its frame's samples
  for (idn::Sender& s : senders) s.open(sink.address, 0);
  const projector::Frame& f = frame();
  uint64_t before = kb::allocations();
  for (auto _ : state)
    for (idn::Sender& s : senders) s.send_frame(f, 30000, true, idn::monotonic_us());
  kb::report_allocations(state, before);
  state.SetItemsProcessed(int64_t(state.iterations()) * kScanners * kPoints);
  state.counters["frames"] = benchmark::Counter(double(state.iterations()) * kScanners,
                                                benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.counters["datagrams"] = double(senders[0].counters().datagrams) / double(senders[0].counters().frames);
  for (idn::Sender& s : senders) s.shut();
}
BENCHMARK(idn_frames)->UseRealTime();

// The floor: the same datagrams, already built, one sendto each.
void idn_frames_floor(benchmark::State& state) {
  Sink sink;
  net::Socket sockets[kScanners];
  for (net::Socket& s : sockets) s = net::open_udp(net::Address{}, false);
  uint32_t fragments = idn::fragment_count(kPoints);
  std::vector<std::vector<uint8_t>> datagrams(fragments, std::vector<uint8_t>(idn::kMaxDatagram));
  std::vector<uint8_t> samples(kPoints * idn::kSampleSize);
  std::vector<size_t> sizes(fragments);
  for (uint32_t k = 0; k < fragments; ++k)
    sizes[k] = idn::write_fragment(datagrams[k].data(), idn::Stream{}, 0, 0, 1000, samples.data(), kPoints, k);
  for (auto _ : state)
    for (net::Socket s : sockets)
      for (uint32_t k = 0; k < fragments; ++k) net::send_datagram_to(s, datagrams[k].data(), sizes[k], sink.address);
  state.SetItemsProcessed(int64_t(state.iterations()) * kScanners * kPoints);
  state.counters["frames"] = benchmark::Counter(double(state.iterations()) * kScanners,
                                                benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  for (net::Socket s : sockets) net::close_socket(s);
}
BENCHMARK(idn_frames_floor)->UseRealTime();

const bool idn_rows = (kb::compare("IDN: 20 scanners x 4,000-point frames, vs the same sendto calls", "idn_frames/real_time",
                                   "idn_frames_floor/real_time", kb::Goal::measured),
                       true);

}  // namespace
