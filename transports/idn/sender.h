// One scanner's IDN stream: a non-blocking UDP socket connected to the
// projector, the packet counters of the session and the frame being shown.
// Nothing here waits: a datagram the system cannot take at once is counted
// as a failed send and dropped.
#pragma once

#include <array>
#include <cstdint>

#include "platform/transport_platform.h"
#include "projector/projector.h"
#include "protocol.h"

namespace kalvor::idn {

struct Counters {
  uint32_t datagrams = 0;    // sent whole
  uint32_t failedSends = 0;  // refused or not taken by the system
  uint32_t frames = 0;       // frames sent (blank ones included)
  uint32_t keepalives = 0;   // void channel messages
  uint32_t acknowledgements = 0;  // well-formed acknowledgements received
  uint32_t dropped = 0;      // received datagrams that were not
};

class Sender {
 public:
  // Opens the socket toward `target`; false when the system gives none.
  bool open(net::Address target, uint8_t service);
  bool is_open() const { return socket_ != net::kNoSocket; }
  // Closes the channel and the connection, then the socket.
  void shut();

  // Sends the frame (or a blank one while the output is dark) now.
  void send_frame(const projector::Frame& frame, uint32_t pointRate, bool lit, uint64_t nowUs);
  // Called often by the keepalive thread: keeps the channel open while no
  // frame comes, and sends the last frame again after failed sends, so a
  // projector that comes back shows it. Reads whatever the projector sent.
  void tick(uint64_t nowUs);
  // The end of a session: closes channel and connection, keeps the socket;
  // the next frame opens them again.
  void close_session(uint64_t nowUs);

  const Counters& counters() const { return counters_; }
  net::Address local() const { return net::local_address(socket_); }

  // Keepalive cadence: well under the second after which receivers close.
  static constexpr uint64_t kKeepaliveUs = 350000;

 private:
  void encode(const projector::Frame& frame, bool lit);
  void send_encoded(uint64_t nowUs);
  bool send(size_t size);
  uint32_t next_timestamp(uint64_t nowUs, uint32_t span);

  net::Socket socket_ = net::kNoSocket;
  Stream stream_;
  uint16_t sequence_ = 0;
  uint32_t lastTimestamp_ = 0;
  bool started_ = false;    // a timestamp was sent in this session
  bool sessionOpen_ = false;  // messages were sent since the last close
  bool resend_ = false;     // a send failed: send the frame again on the next tick
  uint64_t lastSendUs_ = 0;
  uint32_t sampleCount_ = 0;
  uint32_t durationUs_ = 0;
  Counters counters_;
  std::array<uint8_t, kMaxSamples * kSampleSize> samples_{};
  std::array<uint8_t, kMaxDatagram> packet_{};
};

// Microseconds of a monotonic clock.
uint64_t monotonic_us();

}  // namespace kalvor::idn
