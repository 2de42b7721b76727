// The recording transport. Thread-safe, so that tests may drive several
// scanners from several threads at once.
#include "recorder.h"

#include <cstring>
#include <map>
#include <mutex>
#include <vector>

#if defined(_WIN32)
#define TRANSPORT_ENTRY extern "C" __declspec(dllexport) uint32_t __stdcall
#define RECORDER_API extern "C" __declspec(dllexport)
#else
#define TRANSPORT_ENTRY extern "C" __attribute__((visibility("default"))) uint32_t
#define RECORDER_API extern "C" __attribute__((visibility("default")))
#endif

namespace {

struct Command {
  uint32_t scanner;
  std::vector<uint8_t> bytes;
  bool had_reply;
};

std::mutex g_mutex;
std::vector<Command> g_commands;
std::map<uint8_t, std::vector<uint8_t>> g_replies;
bool g_emulate_pictures = false;
std::map<uint32_t, std::map<uint16_t, std::vector<uint8_t>>> g_pictures;  // scanner -> number -> points
int g_constructor_calls = 0, g_destructor_calls = 0;
uint32_t g_last_print = 0, g_print_result = 0;

uint16_t le16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }

// A scanner's picture memory: store on 0x00, answer 0x04 and 0x2B, clear on 0x21.
bool emulate(uint32_t scanner, const uint8_t* bytes, uint32_t length, uint8_t* reply) {
  auto& memory = g_pictures[scanner];
  switch (bytes[0]) {
    case 0x00:
      if (length >= 5) memory[le16(bytes + 1)].assign(bytes + 5, bytes + length);
      return true;
    case 0x21:
      memory.clear();
      return true;
    case 0x04: {
      if (!reply || length < 3) return true;
      auto it = memory.find(le16(bytes + 1));
      uint32_t n = it == memory.end() ? 0 : static_cast<uint32_t>(it->second.size() / 11);
      memset(reply, 0, 3);
      reply[3] = static_cast<uint8_t>(n);
      reply[4] = static_cast<uint8_t>(n >> 8);
      if (n) memcpy(reply + 5, it->second.data(), n * 11);
      return true;
    }
    case 0x2B: {
      if (!reply) return true;
      uint32_t total = memory.empty() ? 0 : memory.rbegin()->first + 1u;
      memset(reply, 0, 4);
      reply[0] = static_cast<uint8_t>(total);
      reply[1] = static_cast<uint8_t>(total >> 8);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace

TRANSPORT_ENTRY NetScanConstructor() {
  std::lock_guard<std::mutex> lock(g_mutex);
  ++g_constructor_calls;
  return 1;
}

TRANSPORT_ENTRY NetScanDestructor() {
  std::lock_guard<std::mutex> lock(g_mutex);
  ++g_destructor_calls;
  return 1;
}

TRANSPORT_ENTRY NetScanCommand(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply) {
  std::lock_guard<std::mutex> lock(g_mutex);
  g_commands.push_back(Command{scanner, std::vector<uint8_t>(bytes, bytes + length), reply != nullptr});
  if (length == 0) return 0;
  auto it = g_replies.find(bytes[0]);
  if (reply && it != g_replies.end()) {
    memcpy(reply, it->second.data(), it->second.size());
  } else if (g_emulate_pictures) {
    emulate(scanner, bytes, length, reply);
  }
  return 1;
}

#if !defined(RECORDER_WITHOUT_PRINT)
TRANSPORT_ENTRY NetScanPrint(uint32_t value) {
  std::lock_guard<std::mutex> lock(g_mutex);
  g_last_print = value;
  return g_print_result;
}
#endif

RECORDER_API int recorder_count(void) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return static_cast<int>(g_commands.size());
}

RECORDER_API uint32_t recorder_scanner(int index) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return g_commands.at(static_cast<size_t>(index)).scanner;
}

RECORDER_API uint32_t recorder_length(int index) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return static_cast<uint32_t>(g_commands.at(static_cast<size_t>(index)).bytes.size());
}

RECORDER_API const uint8_t* recorder_bytes(int index) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return g_commands.at(static_cast<size_t>(index)).bytes.data();
}

RECORDER_API int recorder_had_reply(int index) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return g_commands.at(static_cast<size_t>(index)).had_reply;
}

RECORDER_API void recorder_clear(void) {
  std::lock_guard<std::mutex> lock(g_mutex);
  g_commands.clear();
  g_replies.clear();
  g_pictures.clear();
  g_emulate_pictures = false;
  g_print_result = 0;
  g_last_print = 0;
}

RECORDER_API void recorder_set_reply(uint8_t opcode, const uint8_t* bytes, uint32_t length) {
  std::lock_guard<std::mutex> lock(g_mutex);
  if (length == 0)
    g_replies.erase(opcode);
  else
    g_replies[opcode].assign(bytes, bytes + length);
}

RECORDER_API void recorder_emulate_pictures(int on) {
  std::lock_guard<std::mutex> lock(g_mutex);
  g_emulate_pictures = on != 0;
}

RECORDER_API int recorder_constructor_calls(void) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return g_constructor_calls;
}

RECORDER_API int recorder_destructor_calls(void) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return g_destructor_calls;
}

RECORDER_API uint32_t recorder_last_print(void) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return g_last_print;
}

RECORDER_API void recorder_set_print_result(uint32_t result) {
  std::lock_guard<std::mutex> lock(g_mutex);
  g_print_result = result;
}
