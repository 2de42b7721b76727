/*
 * A C host that reads profile files through kalvor, for comparing how Linux
 * and Windows read them. Arguments: the folder of the files as this program
 * sees it; standard input: one file name per line. For each file and each
 * scanner 1 to 20 it prints one line:
 *   <file> <scanner> <getscannerprofile> <send name> <receive name> <signal> <weights>
 * with the names in hex and the 18 colour weights as seen through the
 * preview: a point with one channel set to 1, 7 or 255 shows channel n's
 * weight in each component, so 54 bytes in hex. Runs with the recording
 * LASER.DLL, which answers the preview refresh.
 */
#define _POSIX_C_SOURCE 200809L /* setenv */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "kalvor/kalvor.h"

#include "../consumers/recording.h"

#if defined(_WIN32)
static void use_profile(const char* path) { _putenv_s("KALVOR_PROFILE", path); }
#else
static void use_profile(const char* path) { setenv("KALVOR_PROFILE", path, 1); }
#endif

enum { kChannels = 6, kLevels = 3, kPoints = kChannels * kLevels, kPointSize = 11 };
static const uint8_t kLevel[kLevels] = {1, 7, 255};

static void print_hex(const char* text) {
  if (!*text) printf("-");
  for (; *text; ++text) printf("%02x", (unsigned char)*text);
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: profile_host <folder> < names\n");
    return 2;
  }
  /* The preview answer: point count, wait value, then the probe points. */
  static uint8_t answer[6 + kPoints * kPointSize];
  answer[0] = kPoints;
  for (int n = 0; n < kChannels; ++n)
    for (int l = 0; l < kLevels; ++l) answer[6 + (n * kLevels + l) * kPointSize + 4 + n] = kLevel[l];

  char name[512], path[1024];
  while (fgets(name, sizeof name, stdin)) {
    name[strcspn(name, "\r\n")] = 0;
    if (!*name) continue;
    snprintf(path, sizeof path, "%s/%s", argv[1], name);
    use_profile(path);
    DisplayExit();
    DisplayInit();
    struct recording r; /* the module kalvor bound */
    if (!recording_open(&r, "profile_host")) return 1;
    r.set_reply(0x06, answer, sizeof answer);
    for (uint32_t scanner = 1; scanner <= 20; ++scanner) {
      char send[16], receive[16];
      int found = getscannerprofile(scanner);
      getsendname(scanner, send);
      getreceivename(scanner, receive);
      printf("%s %u %d ", name, (unsigned)scanner, found);
      print_hex(send);
      printf(" ");
      print_hex(receive);
      printf(" %u ", (unsigned)displaygetsignal(scanner));
      displayupdatepreviewbuffer(scanner, NULL, NULL);
      for (uint16_t k = 0; k < kPoints; ++k) {
        uint8_t rgb[3];
        displaygetpreviewbuffervector(scanner, k, NULL, NULL, NULL, &rgb[0], &rgb[1], &rgb[2]);
        printf("%02x%02x%02x", rgb[0], rgb[1], rgb[2]);
      }
      printf("\n");
    }
  }
  DisplayExit();
  return 0;
}
