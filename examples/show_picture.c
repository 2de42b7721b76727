/*
 * A small host: starts scanner 1 through the recording transport, uploads the
 * test picture, shows it on track 0, sends one frame and prints every command
 * that went out, in hex.
 *
 * Run it with the recording transport's folder on the loader's search path:
 *   LD_LIBRARY_PATH=build/transports/recorder build/examples/show_picture
 */
#include <stdio.h>

#include "kalvor/kalvor.h"

#if defined(_WIN32)
#include <windows.h>
#define OPEN_TRANSPORT() ((void*)LoadLibraryA("LASER.DLL"))
#define FIND(m, n) ((void*)GetProcAddress((HMODULE)(m), n))
#else
#include <dlfcn.h>
#define OPEN_TRANSPORT() dlopen("LASER.DLL", RTLD_NOW)
#define FIND(m, n) dlsym(m, n)
#endif

typedef int (*count_fn)(void);
typedef uint32_t (*u32_at_fn)(int);
typedef const uint8_t* (*bytes_at_fn)(int);

static void print_commands(void) {
  void* transport = OPEN_TRANSPORT();
  count_fn count = transport ? (count_fn)FIND(transport, "recorder_count") : NULL;
  if (!count) {
    printf("(the loaded LASER.DLL does not record commands)\n");
    return;
  }
  u32_at_fn scanner = (u32_at_fn)FIND(transport, "recorder_scanner");
  u32_at_fn length = (u32_at_fn)FIND(transport, "recorder_length");
  bytes_at_fn bytes = (bytes_at_fn)FIND(transport, "recorder_bytes");
  for (int i = 0; i < count(); ++i) {
    uint32_t n = length(i);
    const uint8_t* b = bytes(i);
    printf("scanner %u, %u bytes:", scanner(i), n);
    for (uint32_t k = 0; k < n && k < 48; ++k) printf(" %02X", b[k]);
    printf(n > 48 ? " ...\n" : "\n");
  }
}

int main(void) {
  DisplayInit();
  displayinittrack(1);
  displaytestpic(1, 1);   /* the test picture becomes picture 1 */
  displayframe(1, 0, 1);  /* track 0 shows picture 1 */
  uint32_t wait = displayupdate(1);
  print_commands();
  printf("wait value: %u\n", wait);
  DisplayExit();
  return 0;
}
