/*
 * A C host of kalvor: drives scanners 1 and 3 and prints every command that
 * reached the recording LASER.DLL, one line each:
 *   <scanner> <length> <reply area 0/1> <bytes in hex>
 * followed by the values the exports returned. Built for Linux and for 32-
 * and 64-bit Windows, its output must be the same everywhere.
 */
#include <stdio.h>

#include "kalvor/kalvor.h"

#if defined(_WIN32)
#include <windows.h>
static void* open_transport(void) { return (void*)LoadLibraryA("LASER.DLL"); }
static void* entry(void* module, const char* name) {
  return (void*)GetProcAddress((HMODULE)module, name);
}
#else
#include <dlfcn.h>
static void* open_transport(void) { return dlopen("LASER.DLL", RTLD_NOW | RTLD_LOCAL); }
static void* entry(void* module, const char* name) { return dlsym(module, name); }
#endif

int main(void) {
  DisplayInit();
  void* transport = open_transport();  /* the module kalvor bound */
  int (*count)(void) = (int (*)(void))entry(transport, "recorder_count");
  uint32_t (*scanner)(int) = (uint32_t(*)(int))entry(transport, "recorder_scanner");
  uint32_t (*length)(int) = (uint32_t(*)(int))entry(transport, "recorder_length");
  const uint8_t* (*bytes)(int) = (const uint8_t* (*)(int))entry(transport, "recorder_bytes");
  int (*had_reply)(int) = (int (*)(int))entry(transport, "recorder_had_reply");
  if (!count || !scanner || !length || !bytes || !had_reply) {
    fprintf(stderr, "host_bytes: the recording LASER.DLL was not found\n");
    return 1;
  }

  /* Narrow integers and doubles among the arguments: where a calling
     convention or a structure layout differs, these bytes differ. */
  displayinittrack(1);
  displayinittrack(3);
  displayframe(1, 0, 7);
  displayframe(1, 2, 65535);
  displayangx(1, 2, 1, -12.75);
  displaysize(1, 0, 0.5, 1.0 / 3.0);
  DisplayAngleXYZ(1, MAKEMASK(0) | MAKEMASK(2), MAKEMASK(3), 0xdeadbeef, 0.25, -0.125, 1e-9);
  DisplayShiftX(1, MAKEMASK(2), MAKEMASK(0), 0, -0.75);
  uint32_t wait1 = displayupdate(1);
  uint32_t wait3 = displayvisualupdate(3);
  DisplaySetMaxScanner(3, 200);
  uint32_t mask = MAKEMASK(-1) | MAKEMASK(33);

  for (int i = 0, n = count(); i < n; ++i) {
    const uint8_t* b = bytes(i);
    printf("%u %u %d ", (unsigned)scanner(i), (unsigned)length(i), had_reply(i));
    for (uint32_t k = 0; k < length(i); ++k) printf("%02x", b[k]);
    printf("\n");
  }
  printf("wait %u %u mask %u\n", (unsigned)wait1, (unsigned)wait3, (unsigned)mask);
  DisplayExit();
  return 0;
}
