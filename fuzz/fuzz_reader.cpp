// libFuzzer entry for one reader, chosen when the fuzzer is built
// (KALVOR_FUZZ_READER=<name of an entry of readers.h>).
#include "readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  kalvor_fuzz::run_reader(kalvor_fuzz::Reader::KALVOR_FUZZ_READER, data, size);
  return 0;
}
