// The IDN transport: the projector engine with an IDN sender per configured
// scanner. NetScanCommand runs the command through the engine and, when it
// made a new frame, an end of session or a change of the output switches,
// sends at once on the scanner's non-blocking socket; a small thread keeps
// idle channels open. One mutex guards the engine and the senders.
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>

#include "idn_transport.h"
#include "platform/transport_platform.h"
#include "projector/projector.h"
#include "sender.h"
#include "transports/common/transport_config.h"

#if defined(_WIN32)
#define TRANSPORT_ENTRY extern "C" __declspec(dllexport) uint32_t __stdcall
#define IDN_API extern "C" __declspec(dllexport)
#else
#define TRANSPORT_ENTRY extern "C" __attribute__((visibility("default"))) uint32_t
#define IDN_API extern "C" __attribute__((visibility("default")))
#endif

namespace {

using namespace kalvor;
using projector::Projector;

std::mutex g_mutex;
Projector g_projector;  // static: the engine holds every scanner's frame
idn::Sender g_senders[projector::kScanners + 1];

// The keepalive thread runs while any scanner streams.
std::thread g_thread;
std::condition_variable g_wake;
bool g_stop = false;

constexpr auto kTickPeriod = std::chrono::milliseconds(50);

void keepalive_loop() {
  std::unique_lock<std::mutex> lock(g_mutex);
  while (!g_stop) {
    uint64_t now = idn::monotonic_us();
    for (idn::Sender& s : g_senders) s.tick(now);
    g_wake.wait_for(lock, kTickPeriod);
  }
}

// Opens a sender for every scanner with a usable Output; reports the rest.
bool open_senders() {
  char module[4096] = {};
  if (!net::module_path(module, sizeof module)) module[0] = 0;
  const char* named = std::getenv("KALVOR_TRANSPORT_CONFIG");
  std::string path = transport::config_path(named, module);
  transport::Config config = transport::read_config(path, named && *named, net::report);
  bool any = false;
  for (uint32_t n = 1; n <= projector::kScanners; ++n) {
    const transport::OutputEntry& entry = config.outputs[n];
    if (!entry.line) continue;
    transport::IdnTarget target;
    std::string problem;
    net::Address address;
    if (!transport::parse_idn_output(entry.value, &target, &problem)) {
      net::report(transport::config_message(path, entry.line, problem + "; scanner " + std::to_string(n) +
                                                                   " has no output").c_str());
      continue;
    }
    if (!net::resolve(target.host.c_str(), &address)) {
      net::report(transport::config_message(path, entry.line, "host '" + target.host + "' not found; scanner " +
                                                                   std::to_string(n) + " has no output").c_str());
      continue;
    }
    address.port = target.port;
    if (!g_senders[n].open(address, target.service)) {
      net::report(transport::config_message(path, entry.line, "no UDP socket for scanner " + std::to_string(n)).c_str());
      continue;
    }
    any = true;
  }
  return any;
}

void stop_thread() {
  {
    std::lock_guard<std::mutex> lock(g_mutex);
    g_stop = true;
  }
  g_wake.notify_all();
  if (g_thread.joinable()) g_thread.join();
}

// A host that unloads the transport without NetScanDestructor still stops
// the thread. On Windows a process that exits has ended it already, and
// waiting for a thread while the module unloads would hang the loader.
struct ThreadGuard {
  ~ThreadGuard() {
#if defined(_WIN32)
    if (g_thread.joinable()) g_thread.detach();
#else
    stop_thread();
#endif
  }
} g_threadGuard;

// Closes every stream (channel close, then close) and the sockets.
void shut_senders() {
  stop_thread();
  std::lock_guard<std::mutex> lock(g_mutex);
  for (idn::Sender& s : g_senders) s.shut();
}

}  // namespace

// Reads the configuration afresh: a host that starts the library again
// picks up a changed file. Every scanner starts switched on, as a projector.
TRANSPORT_ENTRY NetScanConstructor() {
  shut_senders();
  std::lock_guard<std::mutex> lock(g_mutex);
  g_projector.reset();
  if (open_senders()) {
    g_stop = false;
    g_thread = std::thread(keepalive_loop);
  }
  return 1;
}

TRANSPORT_ENTRY NetScanDestructor() {
  shut_senders();
  return 1;
}

// Scanners outside 1..20 are not connected: nothing is kept, answered or sent.
TRANSPORT_ENTRY NetScanCommand(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply) {
  std::lock_guard<std::mutex> lock(g_mutex);
  uint32_t events = g_projector.command(scanner, bytes, length, reply);
  if (!(events & projector::kTaken)) return 0;
  idn::Sender& sender = g_senders[scanner];
  if (!sender.is_open()) return 1;
  projector::Scanner* s = g_projector.scanner(scanner);
  uint64_t now = idn::monotonic_us();
  if (events & projector::kEndSession)
    sender.close_session(now);
  else if (events & (projector::kNewFrame | projector::kOutputChanged))
    sender.send_frame(s->frame, s->pointRate, s->lit(), now);
  return 1;
}

// Printing echoes the value.
TRANSPORT_ENTRY NetScanPrint(uint32_t value) { return value; }

IDN_API uint32_t idn_transport_counters(uint32_t scanner, IdnTransportCounters* out) {
  std::lock_guard<std::mutex> lock(g_mutex);
  bool streams = scanner >= 1 && scanner <= projector::kScanners && g_senders[scanner].is_open();
  idn::Counters c = streams ? g_senders[scanner].counters() : idn::Counters{};
  if (out) *out = IdnTransportCounters{c.datagrams, c.failedSends, c.frames, c.keepalives, c.acknowledgements, c.dropped};
  return streams ? 1 : 0;
}
