// Sockets and module paths on Linux and other POSIX systems.
#include <arpa/inet.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "transport_platform.h"

namespace kalvor::net {

#include "transport_sockets.inc"

bool startup() { return true; }

Socket open_udp(Address local, bool broadcast) {
  int s = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (s < 0) return kNoSocket;
  int on = 1;
  if (broadcast) setsockopt(s, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
  // Room for several whole frames each way (a 16,000-point frame is about
  // 130 kB), so that a burst is not dropped while the other side catches
  // up. The forced size, beyond the system's limit, needs privileges; the
  // plain one is the fallback.
  int bytes = kSocketBuffer;
  if (setsockopt(s, SOL_SOCKET, SO_SNDBUFFORCE, &bytes, sizeof bytes) != 0)
    setsockopt(s, SOL_SOCKET, SO_SNDBUF, &bytes, sizeof bytes);
  if (setsockopt(s, SOL_SOCKET, SO_RCVBUFFORCE, &bytes, sizeof bytes) != 0)
    setsockopt(s, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
  sockaddr_in a = to_sockaddr(local);
  if (bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) {
    close(s);
    return kNoSocket;
  }
  return s;
}

void close_socket(Socket s) {
  if (s != kNoSocket) close(static_cast<int>(s));
}

bool connect_socket(Socket s, Address peer) {
  sockaddr_in a = to_sockaddr(peer);
  return connect(static_cast<int>(s), reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
}

bool send_datagram(Socket s, const uint8_t* data, size_t size) {
  return send(static_cast<int>(s), data, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
}

bool send_datagram_to(Socket s, const uint8_t* data, size_t size, Address to) {
  sockaddr_in a = to_sockaddr(to);
  return sendto(static_cast<int>(s), data, size, MSG_NOSIGNAL, reinterpret_cast<sockaddr*>(&a), sizeof a) ==
         static_cast<ssize_t>(size);
}

int receive_datagram(Socket s, uint8_t* data, size_t capacity, Address* from) {
  sockaddr_in a{};
  socklen_t length = sizeof a;
  ssize_t n = recvfrom(static_cast<int>(s), data, capacity, 0, reinterpret_cast<sockaddr*>(&a), &length);
  if (n < 0) return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR ? kNothingWaiting : kRefused;
  if (from) *from = Address{ntohl(a.sin_addr.s_addr), ntohs(a.sin_port)};
  return static_cast<int>(n);
}

bool wait_readable(Socket s, int ms) {
  pollfd p{static_cast<int>(s), POLLIN, 0};
  return poll(&p, 1, ms) > 0 && (p.revents & POLLIN);
}

Address local_address(Socket s) {
  sockaddr_in a{};
  socklen_t length = sizeof a;
  if (getsockname(static_cast<int>(s), reinterpret_cast<sockaddr*>(&a), &length) != 0) return {};
  return Address{ntohl(a.sin_addr.s_addr), ntohs(a.sin_port)};
}

size_t broadcast_addresses(Address* out, size_t capacity) {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return 0;
  size_t n = 0;
  for (ifaddrs* i = list; i && n < capacity; i = i->ifa_next) {
    if (!i->ifa_addr || i->ifa_addr->sa_family != AF_INET) continue;
    if (!(i->ifa_flags & IFF_UP) || !(i->ifa_flags & IFF_BROADCAST) || !i->ifa_broadaddr) continue;
    out[n++] = Address{ntohl(reinterpret_cast<sockaddr_in*>(i->ifa_broadaddr)->sin_addr.s_addr), 0};
  }
  freeifaddrs(list);
  return n;
}

bool module_path(char* out, size_t size) {
  Dl_info info{};
  if (!dladdr(reinterpret_cast<void*>(&module_path), &info) || !info.dli_fname) return false;
  if (std::strlen(info.dli_fname) >= size) return false;
  std::strcpy(out, info.dli_fname);
  return true;
}

void report(const char* text) { std::fprintf(stderr, "%s\n", text); }

}  // namespace kalvor::net
