// The binding to the transport library LASER.DLL and the one send path that
// every command of the library takes.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace kalvor {

using NetScanConstructorFn = uint32_t(KALVOR_TRANSPORT_CALL*)();
using NetScanDestructorFn = uint32_t(KALVOR_TRANSPORT_CALL*)();
using NetScanCommandFn = uint32_t(KALVOR_TRANSPORT_CALL*)(uint32_t scanner, uint8_t* bytes,
                                                           uint32_t length, uint8_t* reply);
using NetScanPrintFn = uint32_t(KALVOR_TRANSPORT_CALL*)(uint32_t value);

struct TransportBinding {
  platform::Module module = nullptr;
  NetScanConstructorFn constructor = nullptr;
  NetScanDestructorFn destructor = nullptr;
  NetScanCommandFn command = nullptr;
  NetScanPrintFn print = nullptr;
};

extern TransportBinding g_transport;

// Hands one command to the transport. Skipped when NetScanCommand is not
// bound or the scanner number is above 20; the reply area is then left as it
// was. `reply` is null when no answer is expected.
void send(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply);

// Sends a command built on the stack.
template <uint32_t N>
inline void send(uint32_t scanner, uint8_t (&bytes)[N], uint8_t* reply = nullptr) {
  send(scanner, bytes, N, reply);
}

}  // namespace kalvor
