// Sockets (Winsock) and module paths on Windows.
#include <winsock2.h>
#include <ws2tcpip.h>
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "transport_platform.h"

namespace kalvor::net {

#include "transport_sockets.inc"

namespace {

SOCKET handle(Socket s) { return static_cast<SOCKET>(s); }

}  // namespace

bool startup() {
  static const bool started = [] {
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
  }();
  return started;
}

Socket open_udp(Address local, bool broadcast) {
  if (!startup()) return kNoSocket;
  SOCKET s = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
  if (s == INVALID_SOCKET) return kNoSocket;
  u_long nonBlocking = 1;
  ioctlsocket(s, FIONBIO, &nonBlocking);
  BOOL on = TRUE;
  if (broadcast) setsockopt(s, SOL_SOCKET, SO_BROADCAST, reinterpret_cast<const char*>(&on), sizeof on);
  // Room for several whole frames each way (a 16,000-point frame is about 130 kB).
  int bytes = kSocketBuffer;
  setsockopt(s, SOL_SOCKET, SO_SNDBUF, reinterpret_cast<const char*>(&bytes), sizeof bytes);
  setsockopt(s, SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&bytes), sizeof bytes);
  sockaddr_in a = to_sockaddr(local);
  if (bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) {
    closesocket(s);
    return kNoSocket;
  }
  return static_cast<Socket>(s);
}

void close_socket(Socket s) {
  if (s != kNoSocket) closesocket(handle(s));
}

bool connect_socket(Socket s, Address peer) {
  sockaddr_in a = to_sockaddr(peer);
  return connect(handle(s), reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
}

bool send_datagram(Socket s, const uint8_t* data, size_t size) {
  return send(handle(s), reinterpret_cast<const char*>(data), static_cast<int>(size), 0) == static_cast<int>(size);
}

bool send_datagram_to(Socket s, const uint8_t* data, size_t size, Address to) {
  sockaddr_in a = to_sockaddr(to);
  return sendto(handle(s), reinterpret_cast<const char*>(data), static_cast<int>(size), 0,
                reinterpret_cast<sockaddr*>(&a), sizeof a) == static_cast<int>(size);
}

int receive_datagram(Socket s, uint8_t* data, size_t capacity, Address* from) {
  sockaddr_in a{};
  int length = sizeof a;
  int n = recvfrom(handle(s), reinterpret_cast<char*>(data), static_cast<int>(capacity), 0,
                   reinterpret_cast<sockaddr*>(&a), &length);
  if (n < 0) return WSAGetLastError() == WSAEWOULDBLOCK ? kNothingWaiting : kRefused;
  if (from) *from = Address{ntohl(a.sin_addr.s_addr), ntohs(a.sin_port)};
  return n;
}

bool wait_readable(Socket s, int ms) {
  WSAPOLLFD p{handle(s), POLLRDNORM, 0};
  return WSAPoll(&p, 1, ms) > 0 && (p.revents & POLLRDNORM);
}

Address local_address(Socket s) {
  sockaddr_in a{};
  int length = sizeof a;
  if (getsockname(handle(s), reinterpret_cast<sockaddr*>(&a), &length) != 0) return {};
  return Address{ntohl(a.sin_addr.s_addr), ntohs(a.sin_port)};
}

// Windows lists its interfaces through the IP helper library; the limited
// broadcast address reaches every directly attached network instead.
size_t broadcast_addresses(Address* out, size_t capacity) {
  if (capacity == 0) return 0;
  out[0] = Address{0xFFFFFFFFu, 0};
  return 1;
}

bool module_path(char* out, size_t size) {
  HMODULE self = nullptr;
  if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                          reinterpret_cast<LPCSTR>(&module_path), &self))
    return false;
  DWORD n = GetModuleFileNameA(self, out, static_cast<DWORD>(size));
  return n > 0 && n < size;
}

void report(const char* text) {
  std::fprintf(stderr, "%s\n", text);
  char line[1024];
  std::snprintf(line, sizeof line, "%s\n", text);
  OutputDebugStringA(line);
}

}  // namespace kalvor::net
