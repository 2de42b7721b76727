// The preview's web server: serves the page and streams every scanner's
// latest frame to each connected browser over a WebSocket.
#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

#include "frames.h"

struct mg_context;

namespace kalvor::preview {

inline constexpr uint16_t kDefaultPort = 8020;
inline constexpr const char* kDefaultAddress = "127.0.0.1";

// What the host's side hands to the browsers: each scanner's latest message.
// The mutex also guards the projector engine, so a frame and its message
// change together. Senders copy a message out and write it without the lock,
// so the host never waits for a browser.
struct Board {
  struct Slot {
    std::array<uint8_t, message::largest> bytes{};
    size_t length = 0;
    uint64_t version = 0;  // 0 until the scanner has shown a frame
  };
  std::mutex mutex;
  std::condition_variable changed;
  std::array<Slot, projector::kScanners + 1> slots;  // index 0 unused
  uint64_t version = 0;
  bool stopping = false;
};

// Where to listen, from KALVOR_PREVIEW_LISTEN ("[ADDRESS:]PORT") or the
// defaults. Returns false, with the reason, for a value that is not one.
struct Listen {
  std::string address = kDefaultAddress;
  uint32_t port = kDefaultPort;
};
bool parse_listen(const char* text, Listen& listen, std::string& why);

// True when a request's Host header names this server by an IP address or
// "localhost", and its port if it gives one: a page reached through some
// other name (DNS rebinding) is refused.
bool host_allowed(const char* host, uint32_t port);

// True when a WebSocket's Origin is a page of this server (http, an IP
// address or "localhost", and this server's port), so no other site's page,
// not even another server's on this machine, can read the show.
bool origin_allowed(const char* origin, uint32_t port);

class Server {
 public:
  // Starts listening and prints the address to open; when it cannot, prints
  // one line saying why. Either way the transport goes on answering commands.
  void start(Board& board);
  void stop();

 private:
  mg_context* context_ = nullptr;
};

}  // namespace kalvor::preview
