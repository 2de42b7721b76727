/*
 * A C host of kalvor: drives scanners 1 and 3 and prints every command that
 * reached the recording LASER.DLL, one line each:
 *   <scanner> <length> <reply area 0/1> <bytes in hex>
 * followed by the values the exports returned. Built for Linux and for 32-
 * and 64-bit Windows, its output must be the same everywhere.
 */
#include "kalvor/kalvor.h"

#include "../consumers/recording.h"

int main(void) {
  DisplayInit();
  struct recording r; /* the module kalvor bound */
  if (!recording_open(&r, "host_bytes")) return 1;

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

  for (int i = 0, n = r.count(); i < n; ++i) {
    const uint8_t* b = r.bytes(i);
    printf("%u %u %d ", (unsigned)r.scanner(i), (unsigned)r.length(i), r.had_reply(i));
    for (uint32_t k = 0; k < r.length(i); ++k) printf("%02x", b[k]);
    printf("\n");
  }
  printf("wait %u %u mask %u\n", (unsigned)wait1, (unsigned)wait3, (unsigned)mask);
  DisplayExit();
  return 0;
}
