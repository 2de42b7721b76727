// The null transport. Single-threaded like the benchmarks that use it.
#include "null.h"

#include <cstring>

#if defined(_WIN32)
#define TRANSPORT_ENTRY extern "C" __declspec(dllexport) uint32_t __stdcall
#define NULL_API extern "C" __declspec(dllexport)
#else
#define TRANSPORT_ENTRY extern "C" __attribute__((visibility("default"))) uint32_t
#define NULL_API extern "C" __attribute__((visibility("default")))
#endif

namespace {

constexpr uint32_t kPointSize = 11;
constexpr uint32_t kPictureNumbers = 65536;
constexpr uint32_t kPoolBytes = 64u << 20;

uint64_t g_commands = 0, g_bytes = 0;
bool g_keep_pictures = false;

// Picture memory: points of each stored picture lie in one pool, appended in
// the order they arrive. A picture sent again reuses its place when it fits.
// When the pool is full, further pictures are dropped; a clear empties it.
struct Picture {
  uint32_t offset, capacity, count;
  bool present;
};
Picture g_index[kPictureNumbers];
uint8_t g_pool[kPoolBytes];
uint32_t g_pool_used = 0;
uint32_t g_total = 0;  // highest stored number + 1

uint16_t le16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }

void clear_pictures() {
  memset(g_index, 0, sizeof g_index);
  g_pool_used = 0;
  g_total = 0;
}

void store_picture(const uint8_t* bytes, uint32_t length) {
  if (length < 5) return;
  uint32_t number = le16(bytes + 1);
  uint32_t count = (length - 5) / kPointSize;
  if (count > 8192) count = 8192;  // what a reply area holds
  Picture& p = g_index[number];
  if (!p.present || count > p.capacity) {
    if (kPoolBytes - g_pool_used < count * kPointSize) return;
    p.offset = g_pool_used;
    p.capacity = count;
    g_pool_used += count * kPointSize;
  }
  p.count = count;
  p.present = true;
  memcpy(g_pool + p.offset, bytes + 5, count * kPointSize);
  if (number + 1 > g_total) g_total = number + 1;
}

void answer_picture(const uint8_t* bytes, uint32_t length, uint8_t* reply) {
  if (!reply || length < 3) return;
  const Picture& p = g_index[le16(bytes + 1)];
  uint32_t count = p.present ? p.count : 0;
  memset(reply, 0, 3);
  reply[3] = static_cast<uint8_t>(count);
  reply[4] = static_cast<uint8_t>(count >> 8);
  memcpy(reply + 5, g_pool + p.offset, count * kPointSize);
}

void answer_total(uint8_t* reply) {
  if (!reply) return;
  memset(reply, 0, 4);
  reply[0] = static_cast<uint8_t>(g_total);
  reply[1] = static_cast<uint8_t>(g_total >> 8);
}

}  // namespace

TRANSPORT_ENTRY NetScanConstructor() { return 1; }
TRANSPORT_ENTRY NetScanDestructor() { return 1; }
TRANSPORT_ENTRY NetScanPrint(uint32_t) { return 0; }

TRANSPORT_ENTRY NetScanCommand(uint32_t, uint8_t* bytes, uint32_t length, uint8_t* reply) {
  ++g_commands;
  g_bytes += length;
  if (!g_keep_pictures || length == 0) return 1;
  switch (bytes[0]) {
    case 0x00: store_picture(bytes, length); break;
    case 0x04: answer_picture(bytes, length, reply); break;
    case 0x21: clear_pictures(); break;
    case 0x2B: answer_total(reply); break;
    default: break;
  }
  return 1;
}

NULL_API void null_reset(void) {
  g_commands = g_bytes = 0;
  g_keep_pictures = false;
  clear_pictures();
}

NULL_API uint64_t null_commands(void) { return g_commands; }
NULL_API uint64_t null_bytes(void) { return g_bytes; }
NULL_API void null_keep_pictures(int on) { g_keep_pictures = on != 0; }
