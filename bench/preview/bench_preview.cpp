// What the live preview costs a host: twenty scanners, each turning the test
// picture and sending 60 frames in a second, through the virtual scanner and
// through the preview with one WebSocket client reading every frame. Only the
// displayupdate calls are timed. Each measurement runs in a child process of
// its own (a process holds one LASER.DLL), the two transports taking turns
// in the same run, and the table gives the median of the rounds.
//
//   kalvor_bench_preview BUILD_TRANSPORTS_DIR [ROUNDS]
#include <arpa/inet.h>
#include <civetweb.h>
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "kalvor/kalvor.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr uint32_t kScanners = 20;
constexpr int kFrames = 60;

struct Result {
  double nsPerUpdate = 0;
  long messages = 0;  // frames the WebSocket client received
};

std::atomic<long> g_messages{0};

int count_message(mg_connection*, int flags, char*, size_t, void*) {
  if ((flags & 0x0F) == MG_WEBSOCKET_OPCODE_BINARY) ++g_messages;
  return 1;
}

// A port nobody listens on now, for the preview to take.
int free_port() {
  int s = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in a{};
  a.sin_family = AF_INET;
  a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof a;
  bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
  getsockname(s, reinterpret_cast<sockaddr*>(&a), &length);
  close(s);
  return ntohs(a.sin_port);
}

// Runs in the child: one transport, twenty scanners, 60 paced frames each.
Result measure(const std::string& transport) {
  int port = free_port();
  setenv("KALVOR_PREVIEW_LISTEN", ("127.0.0.1:" + std::to_string(port)).c_str(), 1);
  if (!dlopen(transport.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    std::fprintf(stderr, "cannot load %s\n", transport.c_str());
    std::exit(1);
  }
  DisplayInit();
  for (uint32_t s = 1; s <= kScanners; ++s) {
    displaybeginsession(s);
    displayinittrack(s);
    displaytestpic(s, 1);
    displayframe(s, 0, 1);
  }
  mg_connection* client = nullptr;
  if (transport.find("/preview/") != std::string::npos) {
    mg_init_library(MG_FEATURES_WEBSOCKET);
    char error[256] = {};
    std::string origin = "http://127.0.0.1:" + std::to_string(port);
    client = mg_connect_websocket_client("127.0.0.1", port, 0, error, sizeof error, "/frames", origin.c_str(),
                                         count_message, nullptr, nullptr);
    if (!client) std::fprintf(stderr, "no WebSocket client: %s\n", error);
  }
  Clock::duration spent{};
  Clock::time_point next = Clock::now();
  for (int f = 0; f < 2 * kFrames; ++f) {  // the first second warms up
    for (uint32_t s = 1; s <= kScanners; ++s) {
      DisplayAngleZ(s, MAKEMASK(0), MAKEMASK(0), 0, 0.002);
      Clock::time_point before = Clock::now();
      displayupdate(s);
      if (f >= kFrames) spent += Clock::now() - before;
    }
    next += std::chrono::microseconds(1000000 / kFrames);
    std::this_thread::sleep_until(next);
  }
  Result r;
  r.nsPerUpdate = std::chrono::duration<double, std::nano>(spent).count() / (kScanners * kFrames);
  r.messages = g_messages.load();
  if (client) mg_close_connection(client);
  DisplayExit();
  return r;
}

Result in_child(const std::string& transport) {
  int fds[2];
  if (pipe(fds) != 0) std::exit(1);
  pid_t pid = fork();
  if (pid == 0) {
    close(fds[0]);
    Result r = measure(transport);
    ssize_t ignored = write(fds[1], &r, sizeof r);
    (void)ignored;
    _exit(0);
  }
  close(fds[1]);
  Result r;
  bool got = read(fds[0], &r, sizeof r) == static_cast<ssize_t>(sizeof r);
  close(fds[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  if (!got) {
    std::fprintf(stderr, "the measurement through %s failed\n", transport.c_str());
    std::exit(1);
  }
  return r;
}

double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s BUILD_TRANSPORTS_DIR [ROUNDS]\n", argv[0]);
    return 2;
  }
  std::string dir = argv[1];
  int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;
  std::vector<double> virtual_ns, preview_ns;
  long messages = 0;
  for (int i = 0; i < rounds; ++i) {
    virtual_ns.push_back(in_child(dir + "/virtual/LASER.DLL").nsPerUpdate);
    Result p = in_child(dir + "/preview/LASER.DLL");
    preview_ns.push_back(p.nsPerUpdate);
    messages += p.messages;
  }
  double v = median(virtual_ns), p = median(preview_ns);
  std::printf("displayupdate, 20 scanners x 60 frames a second, median of %d rounds\n", rounds);
  std::printf("  %-36s %10.0f ns\n", "through the virtual scanner", v);
  std::printf("  %-36s %10.0f ns\n", "through the preview, one client", p);
  std::printf("  %-36s %10.2f   (at most 2 wanted)\n", "ratio", p / v);
  std::printf("  frames the client received: %.0f a round (of %d sent)\n", double(messages) / rounds,
              2 * kFrames * int(kScanners));
  return 0;
}
