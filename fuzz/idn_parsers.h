// The parsers of what IDN devices send, under fuzzing: anything on the
// network may answer a scan, so each must read only within the datagram and
// refuse what claims more than it holds. Each entry names a parser; a fuzzer
// and the replay run one entry on one datagram (see idn_harness.cpp).
#pragma once

#include <cstddef>
#include <cstdint>

#define KALVOR_FUZZ_IDN_PARSERS(X) \
  X(idn_scan)                      \
  X(idn_service_map)               \
  X(idn_ack)

namespace kalvor_fuzz {

enum class IdnParser {
#define KALVOR_FUZZ_IDN_ENUM(name) name,
  KALVOR_FUZZ_IDN_PARSERS(KALVOR_FUZZ_IDN_ENUM)
#undef KALVOR_FUZZ_IDN_ENUM
};

bool idn_parser_by_name(const char* name, IdnParser* out);

// Parses the datagram and checks what the parser claims about it; a check
// that fails aborts the process.
void run_idn_parser(IdnParser parser, const uint8_t* data, size_t size);

}  // namespace kalvor_fuzz
