// DisplayInit, DisplayExit, DisplaySetMaxScanner and MAKEMASK.
#include "kalvor/kalvor.h"

#include "core/library.h"
#include "core/opcodes.h"
#include "core/transport.h"
#include "platform/platform.h"

using namespace kalvor;

namespace {

// Looks up one transport entry; a missing one is reported in a message box.
template <typename Fn>
Fn bind_entry(const char* name, const char* missing_text) {
  void* address = platform::find_entry(g_transport.module, name);
  if (!address) platform::show_error(missing_text);
  return reinterpret_cast<Fn>(address);
}

}  // namespace

KALVOR_API void KALVOR_CALL DisplayInit(void) {
  if (g_transport.module) return;
  g_transport.module = platform::load_library("LASER.DLL");
  if (!g_transport.module)
    platform::show_error("LASER.DLL not found or not enough memory/virtual memory for LASER.DLL!");
  g_transport.constructor =
      bind_entry<NetScanConstructorFn>("NetScanConstructor", "Function NetScanConstructor not found !");
  g_transport.destructor =
      bind_entry<NetScanDestructorFn>("NetScanDestructor", "Function NetScanDestructor not found !");
  g_transport.command = bind_entry<NetScanCommandFn>("NetScanCommand", "Function NetScanCommand not found !");
  g_transport.print = bind_entry<NetScanPrintFn>("NetScanPrint", "NetScanPrint not found!");
  if (g_transport.constructor) g_transport.constructor();
  initialise_scanner_table();
}

KALVOR_API void KALVOR_CALL DisplayExit(void) {
  if (!g_transport.module) return;
  if (g_transport.destructor) g_transport.destructor();
  platform::Module module = g_transport.module;
  g_transport = TransportBinding{};
  platform::free_library(module);
}

KALVOR_API void KALVOR_CALL DisplaySetMaxScanner(uint32_t scanner, uint8_t value) {
  uint8_t cmd[2] = {op(Opcode::SetMaxScanner), value};
  send(scanner, cmd);
}

KALVOR_API uint32_t KALVOR_CALL MAKEMASK(int32_t n) {
  return 1u << (static_cast<uint32_t>(n) & 31u);
}
