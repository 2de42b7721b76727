// libFuzzer entry for one IDN parser, chosen when the fuzzer is built
// (KALVOR_FUZZ_IDN_PARSER=<name of an entry of idn_parsers.h>).
#include "idn_parsers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  kalvor_fuzz::run_idn_parser(kalvor_fuzz::IdnParser::KALVOR_FUZZ_IDN_PARSER, data, size);
  return 0;
}
