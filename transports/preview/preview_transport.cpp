// The live preview: a LASER.DLL that answers every command as the virtual
// scanner does (it is the same projector engine) and shows each scanner's
// frames in a browser. The command path only renders into the engine and
// copies the frame into a message slot; sending is left to the server's
// threads, so a host never waits for a browser.
#include <cstdint>
#include <mutex>

#include "frames.h"
#include "projector/projector.h"
#include "server.h"

#define TRANSPORT_ENTRY extern "C" __attribute__((visibility("default"))) uint32_t

namespace {

using namespace kalvor;

projector::Projector g_projector;  // static: the engine holds every scanner's frame
preview::Board g_board;            // static: a message slot of up to 128 KB a scanner
preview::Server g_server;

}  // namespace

TRANSPORT_ENTRY NetScanConstructor() {
  g_server.start(g_board);
  return 1;
}

TRANSPORT_ENTRY NetScanDestructor() {
  g_server.stop();
  return 1;
}

// Scanners outside 1..20 are not connected: nothing is kept or answered.
TRANSPORT_ENTRY NetScanCommand(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply) {
  std::lock_guard<std::mutex> lock(g_board.mutex);
  uint32_t events = g_projector.command(scanner, bytes, length, reply);
  projector::Scanner* s = g_projector.scanner(scanner);
  if (s && (events & (projector::kNewFrame | projector::kOutputChanged))) {
    preview::Board::Slot& slot = g_board.slots[scanner];
    slot.length = preview::encode(scanner, *s, slot.bytes.data());
    slot.version = ++g_board.version;
    g_board.changed.notify_all();
  }
  return (events & projector::kTaken) ? 1 : 0;
}

// Printing echoes the value.
TRANSPORT_ENTRY NetScanPrint(uint32_t value) { return value; }
