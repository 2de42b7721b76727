/* A host that drives all twenty scanners at 60 frames a second: each shows
 * a polygon of its own colour and number of corners, turning at its own speed. Run it through the live preview
 * to watch all of them in a browser:
 *
 *   LD_LIBRARY_PATH=build/transports/preview build/examples/twenty_scanners 30
 *
 * The argument is the number of seconds to run (default 10). */
#define _POSIX_C_SOURCE 200809L
#include <kalvor/kalvor.h>

#include <math.h>
#include <stdlib.h>
#include <time.h>

/* Scanner s gets a polygon of 3 + s % 6 corners: a blanked move to the first
 * corner, then one drawn point a corner, back to the first. */
static void upload_polygon(uint32_t s) {
  int corners = 3 + (int)(s % 6);
  double hue = (s - 1) / 20.0 * 6.0;
  int sector = (int)hue;
  double f = hue - sector;
  uint8_t up = (uint8_t)(255 * f), down = (uint8_t)(255 * (1 - f));
  uint8_t rgb[6][3] = {{255, up, 0}, {down, 255, 0}, {0, 255, up}, {0, down, 255}, {up, 0, 255}, {255, 0, down}};
  uint8_t* c = rgb[sector % 6];
  for (int i = 0; i <= corners; ++i) {
    double a = 2 * 3.14159265358979 * (i % corners) / corners;
    int16_t x = (int16_t)(20000 * cos(a)), y = (int16_t)(20000 * sin(a));
    uint8_t blanked = i == 0 ? 0x40 : 0;
    DisplaySetPicPoint(s, (uint16_t)i, (uint16_t)x, (uint16_t)y, 0, blanked, 0, c[0], c[1], c[2]);
  }
  displaysetpic(s, 1, (uint16_t)(corners + 1));
}

int main(int argc, char** argv) {
  double seconds = argc > 1 ? atof(argv[1]) : 10.0;
  DisplayInit();
  for (uint32_t s = 1; s <= 20; ++s) {
    displaybeginsession(s);
    displayinittrack(s);
    upload_polygon(s);
    displayframe(s, 0, 1);
  }
  struct timespec next;
  clock_gettime(CLOCK_MONOTONIC, &next);
  for (long n = 0; n < (long)(seconds * 60); ++n) {
    for (uint32_t s = 1; s <= 20; ++s) {
      DisplayAngleZ(s, MAKEMASK(0), MAKEMASK(0), 0, fmod(0.001 * s * n, 1.0)); /* s/1000 turn a frame */
      displayupdate(s);
    }
    next.tv_nsec += 1000000000L / 60; /* the next frame's time, so the pace holds at 60 */
    if (next.tv_nsec >= 1000000000L) {
      next.tv_nsec -= 1000000000L;
      ++next.tv_sec;
    }
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, NULL);
  }
  for (uint32_t s = 1; s <= 20; ++s) displayendsession(s);
  DisplayExit();
  return 0;
}
