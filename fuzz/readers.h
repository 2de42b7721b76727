// The file readers under fuzzing. Each entry names a reader, the extension its
// input file gets, and the calls that read it. A fuzzer and the regression
// replay both run one entry on one input: the bytes become a file, the reader
// reads it through the library's exports, and every command sent on the way
// is checked (see reader_harness.cpp).
#pragma once

#include <cstddef>
#include <cstdint>

// X(name, extension, calls on `path`)
#define KALVOR_FUZZ_READERS(X)                                                    \
  X(ilda, ".ild", displayimportilda(1, path, 0))                                  \
  X(ilda_index, ".ild", displayimportildafromindex(2, 100, path, 1))              \
  X(pic, ".pic", displayloadpic(3, path, 7))                                      \
  X(cat, ".cat", loadCAT(4, path))                                                \
  X(cat_part, ".cat", loadCATpart(5, 10, 3, path))                                \
  X(lds, ".lds", loadLDS(6, path))                                                \
  X(las, ".las", displayimportlas(7, path, 0))                                    \
  X(flx, ".flx", displayimportflx(8, path, 10))                                   \
  X(pal, ".pal", displayloadpal(9, 2, path))                                      \
  X(rgb, ".rgb", displayloadRGB(10, 3, path))                                     \
  X(profile, ".ini", read_profile())

namespace kalvor_fuzz {

enum class Reader {
#define KALVOR_FUZZ_ENUM(name, ext, call) name,
  KALVOR_FUZZ_READERS(KALVOR_FUZZ_ENUM)
#undef KALVOR_FUZZ_ENUM
};

// The reader called `name`; false when there is none.
bool reader_by_name(const char* name, Reader* out);

// Writes the input to the reader's file, runs the reader and checks what it
// sent. A check that fails aborts the process, as a sanitizer report does.
void run_reader(Reader reader, const uint8_t* data, size_t size);

}  // namespace kalvor_fuzz
