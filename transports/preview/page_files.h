// The page's files, embedded in the transport at build time (embed.cmake).
#pragma once

#include <cstddef>

namespace kalvor::preview {

struct PageFile {
  const char* path;  // as requested, "/" for the page itself
  const char* type;  // media type, all UTF-8 text
  const unsigned char* data;
  size_t size;
};

extern const PageFile kPageFiles[];
extern const size_t kPageFileCount;

}  // namespace kalvor::preview
