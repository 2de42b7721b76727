// The virtual scanner: a LASER.DLL that behaves like a projector, with no
// output but its answers. It is a thin front end over the projector engine
// (projector/), which keeps the state of scanners 1 to 20 and renders their
// frames. One mutex guards the engine, so hosts may drive several scanners
// from several threads.
#include "virtual_scanner.h"

#include <algorithm>
#include <cstring>
#include <mutex>

#include "projector/projector.h"

#if defined(_WIN32)
#define TRANSPORT_ENTRY extern "C" __declspec(dllexport) uint32_t __stdcall
#define VIRTUAL_API extern "C" __declspec(dllexport)
#else
#define TRANSPORT_ENTRY extern "C" __attribute__((visibility("default"))) uint32_t
#define VIRTUAL_API extern "C" __attribute__((visibility("default")))
#endif

namespace {

using namespace kalvor::projector;

std::mutex g_mutex;
Projector g_projector;  // static: the engine holds every scanner's frame

}  // namespace

TRANSPORT_ENTRY NetScanConstructor() { return 1; }

TRANSPORT_ENTRY NetScanDestructor() { return 1; }

// Scanners outside 1..20 are not connected: nothing is kept or answered.
TRANSPORT_ENTRY NetScanCommand(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply) {
  std::lock_guard<std::mutex> lock(g_mutex);
  return (g_projector.command(scanner, bytes, length, reply) & kTaken) ? 1 : 0;
}

// Printing echoes the value.
TRANSPORT_ENTRY NetScanPrint(uint32_t value) { return value; }

VIRTUAL_API void virtual_scanner_reset(void) {
  std::lock_guard<std::mutex> lock(g_mutex);
  g_projector.reset();
}

VIRTUAL_API uint32_t virtual_scanner_pictures(uint32_t scanner) {
  std::lock_guard<std::mutex> lock(g_mutex);
  Scanner* s = g_projector.scanner(scanner);
  return s ? static_cast<uint32_t>(s->pictures.size()) : 0;
}

VIRTUAL_API uint32_t virtual_scanner_palette(uint32_t scanner, uint8_t* entries) {
  std::lock_guard<std::mutex> lock(g_mutex);
  Scanner* s = g_projector.scanner(scanner);
  if (!s) return 0;
  if (entries) std::memcpy(entries, s->palette, sizeof s->palette);
  return s->paletteOpcode;
}

VIRTUAL_API uint32_t virtual_scanner_last_command(uint32_t scanner, uint8_t opcode, uint8_t* bytes,
                                                  uint32_t capacity) {
  std::lock_guard<std::mutex> lock(g_mutex);
  Scanner* s = g_projector.scanner(scanner);
  if (!s) return 0;
  auto it = s->lastCommand.find(opcode);
  if (it == s->lastCommand.end()) return 0;
  if (bytes) std::memcpy(bytes, it->second.data(), std::min<size_t>(capacity, it->second.size()));
  return static_cast<uint32_t>(it->second.size());
}

VIRTUAL_API uint32_t virtual_scanner_file(uint32_t scanner, char* name, uint8_t* data, uint32_t capacity) {
  std::lock_guard<std::mutex> lock(g_mutex);
  Scanner* s = g_projector.scanner(scanner);
  if (!s || !s->file.complete) return 0;
  if (name) std::memcpy(name, s->file.name, sizeof s->file.name);
  if (data) std::memcpy(data, s->file.data.data(), std::min<size_t>(capacity, s->file.data.size()));
  return static_cast<uint32_t>(s->file.data.size());
}
