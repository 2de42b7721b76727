// A loopback IDN receiver for the tests: it answers scan and service-map
// requests like a projector with one laser service, decodes the stream of
// frames, and checks every rule a sender must keep. Each broken rule becomes
// a line in violations(); decoded frames are handed to the test.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/transport_platform.h"

namespace idntest {

namespace net = kalvor::net;

struct Sample {
  int16_t x, y;
  uint8_t r, g, b, i;
  bool operator==(const Sample&) const = default;
};

struct Frame {
  std::vector<Sample> samples;
  uint32_t duration = 0;  // µs
  uint32_t fragments = 0;
};

class Receiver {
 public:
  // Listens on 127.0.0.1:port (0: a port the system picks).
  explicit Receiver(uint16_t port = 0);
  ~Receiver();
  uint16_t port() const { return port_; }
  // Stops listening, as a projector switched off; start() listens again on the same port.
  void stop();
  void start();

  // Waits until `done` holds for the frames received, at most `ms` milliseconds.
  bool wait(const std::function<bool(const std::vector<Frame>&)>& done, int ms);
  // Waits until `n` sessions have been closed.
  bool wait_closes(int n, int ms);
  std::vector<Frame> frames() { return locked(frames_); }
  std::vector<std::string> violations() { return locked(violations_); }
  int keepalives() { return locked(keepalives_); }
  int closes() { return locked(closes_); }  // channel closes followed by a close command
  int scans() { return locked(scans_); }    // scan and service-map requests answered
  // Longest gap between the timestamps (the sender's clock) of channel
  // messages of an open session, sequels aside.
  uint32_t longest_silence_ms() { return locked(longestSilence_); }

 private:
  template <typename T>
  T locked(const T& value) {
    std::lock_guard<std::mutex> lock(mutex_);
    return value;
  }
  void loop();
  void take(const uint8_t* d, size_t n, net::Address from);
  void channel_message(const uint8_t* d, size_t n);
  void bad(const char* format, ...);  // printf-style

  uint16_t port_ = 0;
  net::Socket socket_ = net::kNoSocket;
  std::thread thread_;
  std::atomic<bool> stop_{false};
  std::mutex mutex_;
  std::condition_variable changed_;

  // Session state, reset when the sender closes or the receiver restarts.
  bool open_ = false;
  uint16_t sequence_ = 0;
  bool haveSequence_ = false;
  bool closing_ = false;     // the channel close came; the close command should follow
  bool inFrame_ = false;     // fragments of a frame are arriving
  uint32_t lastTimestamp_ = 0;
  uint32_t lastMessageTimestamp_ = 0;  // of the last message that is no sequel
  bool haveTimestamp_ = false;
  Frame partial_;

  std::vector<Frame> frames_;
  std::vector<std::string> violations_;
  int keepalives_ = 0, closes_ = 0, scans_ = 0;
  uint32_t longestSilence_ = 0;
};

}  // namespace idntest
