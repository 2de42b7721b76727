// The operating-system services of the network transports and tools: UDP
// sockets, the transport module's own path and a message for the user.
// transport_posix.cpp and transport_win32.cpp implement them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace kalvor::net {

// An IPv4 address and port, both in host byte order.
struct Address {
  uint32_t ip = 0;
  uint16_t port = 0;
  bool operator==(const Address&) const = default;
};

using Socket = intptr_t;
inline constexpr Socket kNoSocket = -1;

// Starts the socket library (Windows); true when sockets can be used.
bool startup();
// Reads a dotted IPv4 address or looks a host name up (may wait for a name server).
bool resolve(const char* host, Address* out);
// True when text is a numeric IPv4 or IPv6 address (no name to look up).
bool is_ip_literal(const char* text);
// "a.b.c.d" into out (at least 16 bytes).
inline void format_ip(uint32_t ip, char* out) {
  std::snprintf(out, 16, "%u.%u.%u.%u", ip >> 24, (ip >> 16) & 255, (ip >> 8) & 255, ip & 255);
}

// A non-blocking UDP socket bound to `local` (0.0.0.0:0 for any), with
// broadcasts allowed when asked and buffers of kSocketBuffer bytes each way
// where the system grants them; kNoSocket on failure.
inline constexpr int kSocketBuffer = 1 << 20;
Socket open_udp(Address local, bool broadcast);
void close_socket(Socket s);
// Sends only to, and receives only from, `peer`.
bool connect_socket(Socket s, Address peer);
// Sends one datagram without waiting: false when it was not sent whole.
bool send_datagram(Socket s, const uint8_t* data, size_t size);
bool send_datagram_to(Socket s, const uint8_t* data, size_t size, Address to);
// Size of one waiting datagram; kNothingWaiting, or kRefused when the
// peer refused an earlier datagram (port unreachable) or another error came.
inline constexpr int kNothingWaiting = -1;
inline constexpr int kRefused = -2;
int receive_datagram(Socket s, uint8_t* data, size_t capacity, Address* from);
// Waits up to `ms` milliseconds for a datagram; true when one is waiting.
bool wait_readable(Socket s, int ms);
Address local_address(Socket s);

// Broadcast addresses of the IPv4 interfaces that are up; returns how many
// were written (at most `capacity`).
size_t broadcast_addresses(Address* out, size_t capacity);

// Path of the module (shared library or program) that holds this code.
bool module_path(char* out, size_t size);
// Shows a message for the user: standard error, and the debugger on Windows.
void report(const char* text);

}  // namespace kalvor::net
