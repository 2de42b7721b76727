// The test receiver. It decodes by hand, from the datagram's bytes, rather
// than through the library's own packet code, so that a fault there shows.
#include "receiver.h"

#include <cstdarg>
#include <chrono>
#include <cstdio>
#include <cstring>

namespace idntest {
namespace {

uint16_t be16(const uint8_t* p) { return static_cast<uint16_t>(p[0] << 8 | p[1]); }
uint32_t be32(const uint8_t* p) { return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3]; }

// The whole samples of d[at..n) onto `out`.
void add_samples(const uint8_t* d, size_t at, size_t n, std::vector<Sample>& out) {
  for (; at + 8 <= n; at += 8)
    out.push_back(Sample{static_cast<int16_t>(be16(d + at)), static_cast<int16_t>(be16(d + at + 2)), d[at + 4],
                         d[at + 5], d[at + 6], d[at + 7]});
}

// The sample layout the transport announces: X, Y 16-bit, red, green, blue, intensity.
const uint8_t kLayout[16] = {0x42, 0x00, 0x40, 0x10, 0x42, 0x10, 0x40, 0x10,
                             0x52, 0x7E, 0x52, 0x14, 0x51, 0xCC, 0x5C, 0x10};

}  // namespace

Receiver::Receiver(uint16_t port) : port_(port) { start(); }

Receiver::~Receiver() { stop(); }

void Receiver::start() {
  stop();
  socket_ = net::open_udp(net::Address{0x7F000001, port_}, false);
  if (socket_ == net::kNoSocket) return;
  port_ = net::local_address(socket_).port;
  // The receiving thread has ended: the state is this thread's alone until the next one starts.
  stop_ = false;
  open_ = haveSequence_ = closing_ = inFrame_ = haveTimestamp_ = false;
  frames_.clear();  // a projector switched on again has shown nothing yet
  thread_ = std::thread([this] { loop(); });
}

void Receiver::stop() {
  stop_ = true;
  if (thread_.joinable()) thread_.join();
  net::close_socket(socket_);
  socket_ = net::kNoSocket;
}

void Receiver::loop() {
  uint8_t d[65536];
  while (!stop_) {
    if (!net::wait_readable(socket_, 20)) continue;
    net::Address from;
    int n;
    while ((n = net::receive_datagram(socket_, d, sizeof d, &from)) >= 0) {
      std::lock_guard<std::mutex> lock(mutex_);
      take(d, static_cast<size_t>(n), from);
      changed_.notify_all();
    }
  }
}

// Formatted with snprintf: GCC 12 misreads string concatenation at -O3.
void Receiver::bad(const char* format, ...) {
  char text[160];
  va_list values;
  va_start(values, format);
  std::vsnprintf(text, sizeof text, format, values);
  va_end(values);
  violations_.push_back(text);
}

void Receiver::take(const uint8_t* d, size_t n, net::Address from) {
  if (n < 4) return bad("datagram of %zu bytes", n);
  if (n > 1454) bad("datagram of %zu bytes, more than 1454", n);
  uint8_t command = d[0];
  if (command == 0x10 || command == 0x12) {
    ++scans_;
    static const uint8_t scan[40] = {40, 0x01, 0x01, 0, 7, 1, 0x02, 0x00, 0x5E, 0x10, 0x20, 0x30, 0, 0, 0, 0,
                                     0,  0,    0,    0, 'k', 'a', 'l', 'v', 'o', 'r', '-', 't', 'e', 's', 't'};
    static const uint8_t map[28] = {4, 24, 0, 1, 1, 0x80, 0x01, 0, 'L', 'a', 's', 'e', 'r', ' ', '1'};
    const size_t size = command == 0x10 ? sizeof scan : sizeof map;
    uint8_t answer[4 + 40] = {static_cast<uint8_t>(command + 1), d[1], d[2], d[3]};
    std::memcpy(answer + 4, command == 0x10 ? scan : map, size);
    net::send_datagram_to(socket_, answer, 4 + size, from);
    return;
  }
  if (command != 0x40 && command != 0x44) return bad("unexpected command %u", unsigned{command});
  if (d[1] != 0) bad("client group flags not 0");
  uint16_t sequence = be16(d + 2);
  if (haveSequence_ && sequence != static_cast<uint16_t>(sequence_ + 1))
    bad("sequence %u after %u", unsigned{sequence}, unsigned{sequence_});
  sequence_ = sequence;
  haveSequence_ = true;
  if (command == 0x44) {
    if (n != 4) bad("close command with a payload");
    if (!closing_) bad("close command without a channel close before it");
    if (closing_) ++closes_;
    open_ = haveSequence_ = closing_ = inFrame_ = haveTimestamp_ = false;
    return;
  }
  if (closing_) bad("channel message between the channel close and the close command");
  channel_message(d, n);
}

void Receiver::channel_message(const uint8_t* d, size_t n) {
  if (n < 12) return bad("channel message shorter than its header");
  if (be16(d + 4) != n - 4) bad("total size %u in a datagram of %zu", unsigned{be16(d + 4)}, n);
  uint16_t content = be16(d + 6);
  bool cclf = content & 0x4000;
  uint8_t chunk = content & 0xFF;
  uint32_t timestamp = be32(d + 8);
  if (!(content & 0x8000)) bad("content ID without the channel message bit");

  if (chunk == 0xC0) {
    if (!inFrame_) return bad("sequel fragment without a first fragment");
    if (timestamp != lastTimestamp_ + 1) bad("sequel timestamp not the previous one + 1");
    lastTimestamp_ = timestamp;
    if ((n - 12) % 8) bad("sequel with a part of a sample");
    add_samples(d, 12, n, partial_.samples);
    ++partial_.fragments;
    if (cclf) {
      inFrame_ = false;
      frames_.push_back(partial_);
    }
    return;
  }
  if (inFrame_) bad("a frame's fragments interrupted before the last one");
  inFrame_ = false;
  if (haveTimestamp_ && static_cast<int32_t>(timestamp - lastTimestamp_) <= 0) bad("timestamp did not move on");
  if (open_) longestSilence_ = std::max<uint32_t>(longestSilence_, (timestamp - lastMessageTimestamp_) / 1000);
  open_ = true;
  lastMessageTimestamp_ = timestamp;
  lastTimestamp_ = timestamp;
  haveTimestamp_ = true;
  // Every message that may carry a configuration carries one.
  if (!cclf) return bad("channel message without a configuration");
  if (n < 16) return bad("configuration cut short");
  uint8_t words = d[12], flags = d[13], mode = d[15];
  if (flags & 0x02) {
    if (chunk != 0x00 || words != 0) bad("channel close with a chunk or a layout");
    closing_ = true;
    return;
  }
  if (!(flags & 0x01)) bad("configuration without routing");
  if (mode != 0x02) bad("service mode %u is not discrete graphics", unsigned{mode});
  if (words != 4 || n < 32 || std::memcmp(d + 16, kLayout, sizeof kLayout) != 0)
    return bad("sample layout is not X, Y, R, G, B, I");
  uint8_t sdm = flags & 0x30;
  if (chunk == 0x00) {
    if (n != 32) bad("void message with a payload");
    ++keepalives_;
    return;
  }
  if (chunk != 0x02 && chunk != 0x03) return bad("chunk type %u", unsigned{chunk});
  if (n < 36) return bad("frame without a chunk header");
  uint32_t header = be32(d + 32);
  if (((header >> 24) & 0x30) != sdm) bad("SCM differs from SDM");
  if ((header >> 24) & ~0x30u) bad("reserved or once flags set in a chunk header");
  if ((n - 36) % 8) bad("frame with a part of a sample");
  partial_ = Frame{};
  partial_.duration = header & 0xFFFFFF;
  partial_.fragments = 1;
  add_samples(d, 36, n, partial_.samples);
  if (chunk == 0x02) frames_.push_back(partial_);
  inFrame_ = chunk == 0x03;
}

bool Receiver::wait(const std::function<bool(const std::vector<Frame>&)>& done, int ms) {
  std::unique_lock<std::mutex> lock(mutex_);
  return changed_.wait_for(lock, std::chrono::milliseconds(ms), [&] { return done(frames_); });
}

bool Receiver::wait_closes(int n, int ms) {
  std::unique_lock<std::mutex> lock(mutex_);
  return changed_.wait_for(lock, std::chrono::milliseconds(ms), [&] { return closes_ >= n; });
}

}  // namespace idntest
