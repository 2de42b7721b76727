#include "platform/path_parts.h"

#include <cstring>

namespace kalvor::platform {

namespace {
// Copies at most size - 1 bytes of [begin, end) into out, terminated.
void copy_part(char* out, size_t size, const char* begin, const char* end) {
  size_t n = static_cast<size_t>(end - begin);
  if (n > size - 1) n = size - 1;
  memcpy(out, begin, n);
  out[n] = 0;
}
}  // namespace

void fill_path_parts(const char* path, const char* folder, const char* base, PathParts* parts) {
  const char* end = path + strlen(path);
  const char* dot = strrchr(base, '.');
  if (!dot) dot = end;
  copy_part(parts->drive, sizeof parts->drive, path, folder);
  copy_part(parts->folder, sizeof parts->folder, folder, base);
  copy_part(parts->name, sizeof parts->name, base, dot);
  copy_part(parts->extension, sizeof parts->extension, dot, end);
}

}  // namespace kalvor::platform
