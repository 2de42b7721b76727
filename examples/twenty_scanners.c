/* A host that drives all twenty scanners at 60 frames a second: each shows
 * the test picture, turning at its own speed. Run it through the live preview
 * to watch all of them in a browser:
 *
 *   LD_LIBRARY_PATH=build/transports/preview build/examples/twenty_scanners 30
 *
 * The argument is the number of seconds to run (default 10). */
#include <kalvor/kalvor.h>

#include <stdlib.h>
#include <time.h>

int main(int argc, char** argv) {
  double seconds = argc > 1 ? atof(argv[1]) : 10.0;
  DisplayInit();
  for (uint32_t s = 1; s <= 20; ++s) {
    displaybeginsession(s);
    displayinittrack(s);
    displaytestpic(s, 1);
    displayframe(s, 0, 1);
  }
  struct timespec frame = {0, 1000000000L / 60};
  for (long n = 0; n < (long)(seconds * 60); ++n) {
    for (uint32_t s = 1; s <= 20; ++s) {
      DisplayAngleZ(s, MAKEMASK(0), MAKEMASK(0), 0, 0.001 * s); /* s thousandths of a turn a frame */
      displayupdate(s);
    }
    nanosleep(&frame, NULL);
  }
  for (uint32_t s = 1; s <= 20; ++s) displayendsession(s);
  DisplayExit();
  return 0;
}
