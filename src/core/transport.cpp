#include "core/transport.h"

#include "core/library.h"

namespace kalvor {

TransportBinding g_transport;

void send(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply) {
  if (!g_transport.command || scanner > kMaxScanner) return;
  g_transport.command(scanner, bytes, length, reply);
}

}  // namespace kalvor
