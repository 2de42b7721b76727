// One scanner's IDN stream.
#include "sender.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace kalvor::idn {
namespace {

// Coordinates beyond the 16-bit range are held at its ends.
int16_t hold16(int64_t v) { return static_cast<int16_t>(std::clamp<int64_t>(v, INT16_MIN, INT16_MAX)); }

}  // namespace

uint64_t monotonic_us() {
  using namespace std::chrono;
  return static_cast<uint64_t>(duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count());
}

bool Sender::open(net::Address target, uint8_t service) {
  shut();
  socket_ = net::open_udp(net::Address{}, false);
  if (socket_ == net::kNoSocket) return false;
  if (!net::connect_socket(socket_, target)) {
    net::close_socket(socket_);
    socket_ = net::kNoSocket;
    return false;
  }
  // The channel is the service's number less one, channel 0 for the default service.
  stream_ = Stream{static_cast<uint8_t>(service ? (service - 1) & 63 : 0), service};
  sequence_ = 0;
  started_ = sessionOpen_ = resend_ = false;
  counters_ = Counters{};
  sampleCount_ = 0;
  return true;
}

void Sender::shut() {
  if (socket_ == net::kNoSocket) return;
  close_session(monotonic_us());
  net::close_socket(socket_);
  socket_ = net::kNoSocket;
}

// The frame's points in output order, each repeated as often as it is drawn,
// Y turned to point up. Blanked points and a dark output send no light.
// Frames are padded with their last sample to the shortest frame receivers
// take; an empty frame is a blank one at the centre.
void Sender::encode(const projector::Frame& frame, bool lit) {
  uint8_t* out = samples_.data();
  uint32_t n = 0;
  uint32_t count = lit ? std::min<uint32_t>(frame.count, projector::kMaxFramePoints) : 0;
  for (uint32_t i = 0; i < count && n < kMaxSamples; ++i) {
    const projector::FramePoint& p = frame.points[i];
    bool dark = p.blanked();
    for (uint32_t r = 0; r <= p.repeat && n < kMaxSamples; ++r, ++n)
      put_sample(out + size_t{n} * kSampleSize, hold16(p.x), hold16(-1 - int64_t{p.y}), dark ? 0 : p.channels[0],
                 dark ? 0 : p.channels[1], dark ? 0 : p.channels[2], dark ? 0 : 255);
  }
  if (n == 0) {
    put_sample(out, 0, 0, 0, 0, 0, 0);
    n = 1;
  }
  for (; n < kMinSamples; ++n) std::memcpy(out + size_t{n} * kSampleSize, out + size_t{n - 1} * kSampleSize, kSampleSize);
  sampleCount_ = n;
}

// A timestamp from the monotonic clock, always after every one sent before
// in the session; `span` timestamps are taken (one per fragment).
uint32_t Sender::next_timestamp(uint64_t nowUs, uint32_t span) {
  uint32_t t = static_cast<uint32_t>(nowUs);
  if (started_ && static_cast<int32_t>(t - lastTimestamp_) <= 0) t = lastTimestamp_ + 1;
  started_ = true;
  lastTimestamp_ = t + span - 1;
  return t;
}

bool Sender::send(size_t size) {
  bool ok = net::send_datagram(socket_, packet_.data(), size);
  ++(ok ? counters_.datagrams : counters_.failedSends);
  if (!ok) resend_ = true;
  return ok;
}

void Sender::send_encoded(uint64_t nowUs) {
  uint32_t fragments = fragment_count(sampleCount_);
  uint32_t timestamp = next_timestamp(nowUs, fragments);
  for (uint32_t k = 0; k < fragments; ++k)
    send(write_fragment(packet_.data(), stream_, sequence_++, timestamp, durationUs_, samples_.data(), sampleCount_, k));
  ++counters_.frames;
  lastSendUs_ = nowUs;
  sessionOpen_ = true;
}

void Sender::send_frame(const projector::Frame& frame, uint32_t pointRate, bool lit, uint64_t nowUs) {
  if (!is_open()) return;
  encode(frame, lit);
  uint64_t rate = pointRate ? pointRate : projector::kDefaultPointRate;
  durationUs_ = static_cast<uint32_t>(std::min<uint64_t>(sampleCount_ * uint64_t{1000000} / rate, kMaxDuration));
  send_encoded(nowUs);
}

void Sender::tick(uint64_t nowUs) {
  if (!is_open()) return;
  uint8_t in[kMaxDatagram];
  for (int n; (n = net::receive_datagram(socket_, in, sizeof in, nullptr)) != net::kNothingWaiting;) {
    Acknowledge ack;
    if (n == net::kRefused) {
      ++counters_.failedSends;  // an earlier datagram was refused
      resend_ = true;
    } else if (parse_acknowledge(in, static_cast<size_t>(n), &ack)) {
      ++counters_.acknowledgements;
    } else {
      ++counters_.dropped;
    }
  }
  if (!sessionOpen_ || nowUs - lastSendUs_ < kKeepaliveUs) return;
  if (resend_ && sampleCount_) {
    resend_ = false;
    send_encoded(nowUs);
    return;
  }
  send(write_void(packet_.data(), stream_, sequence_++, next_timestamp(nowUs, 1)));
  ++counters_.keepalives;
  lastSendUs_ = nowUs;
}

void Sender::close_session(uint64_t nowUs) {
  if (!is_open() || !sessionOpen_) return;
  send(write_channel_close(packet_.data(), stream_, sequence_++, next_timestamp(nowUs, 1)));
  send(write_request(packet_.data(), kClose, sequence_++));
  sessionOpen_ = resend_ = false;
}

}  // namespace kalvor::idn
