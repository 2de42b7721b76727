/*
 * A C host, and through host.cpp a C++ one: one frame on scanner 1 through
 * the recording transport. The empty frame is the track upload header
 * (opcode 0x01, no tracks) and the preview refresh (0x7B); the scanner's
 * answer to the upload carries the wait value that displayupdate returns.
 */
#include <kalvor/kalvor.h>

#include "recording.h"

#ifdef __cplusplus /* host.cpp */
#define HOST "c++ host"
#else
#define HOST "c host"
#endif

int main(void) {
  struct recording rec;
  DisplayInit();
  if (!recording_open(&rec, HOST)) return 1;
  const uint8_t answer[] = {0x00, 0x00, 0x04, 0x03, 0x02, 0x01}; /* 0 points, wait 0x01020304 */
  rec.set_reply(0x01, answer, sizeof answer);

  uint32_t wait = displayupdate(1);
  DisplayExit();

  const uint8_t upload[] = {0x01, 0x00, 0x00};
  const uint8_t preview[] = {0x7B};
  int ok = rec.count() == 2 && recording_expect(&rec, 0, 1, upload, sizeof upload, 1) &&
           recording_expect(&rec, 1, 1, preview, sizeof preview, 1);
  if (rec.count() != 2) printf("%d commands sent, expected 2\n", rec.count());
  if (wait != 0x01020304u) {
    printf("wait value %08X, expected 01020304\n", wait);
    ok = 0;
  }
  if (rec.destructor_calls() != 1) {
    printf("DisplayExit did not destroy the transport\n");
    ok = 0;
  }
  printf(HOST ": %s\n", ok ? "ok" : "FAILED");
  return ok ? 0 : 1;
}
