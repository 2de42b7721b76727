/*
 * A small host that makes a show of its own and writes it as an ILDA file:
 * picture 1 is the test picture in rainbow colours, pictures 2 to 49 an animation of a turning
 * five-pointed star whose colour runs round the colour wheel. Every point goes
 * through kalvor's exports to the scanner, and kalvor writes the file from
 * what the scanner holds, so it needs a LASER.DLL that keeps pictures: the
 * virtual scanner.
 *
 *   LD_LIBRARY_PATH=build/transports/virtual build/examples/make_show show.ild
 *
 * tools/demo.sh uses it when it is given no file of its own.
 */
#include <math.h>
#include <stdint.h>
#include <stdio.h>

#include "kalvor/kalvor.h"

enum { kScanner = 1, kFrames = 48, kTips = 5, kStepsPerEdge = 12 };
static const double kPi = 3.14159265358979323846;

/* Fully saturated colour at hue h (0 to 1), as 0..255 levels. */
static void hue_to_rgb(double h, uint8_t rgb[3]) {
  static const double offset[3] = {5.0, 3.0, 1.0}; /* red, green, blue */
  for (int c = 0; c < 3; ++c) {
    double k = fmod(offset[c] + h * 6.0, 6.0);
    double fall = fmin(fmin(k, 4.0 - k), 1.0);
    rgb[c] = (uint8_t)lround(255.0 * (1.0 - fmax(fall, 0.0)));
  }
}

/* Vertex v of the star (tips at even v, inner corners at odd v), turned by
 * angle and scaled by size (a fraction of the full coordinate range). */
static void star_vertex(int v, double angle, double size, double* x, double* y) {
  double radius = (v % 2 == 0 ? 1.0 : 0.4) * size * 32767.0;
  double a = angle + kPi / 2.0 + v * kPi / kTips;
  *x = radius * cos(a);
  *y = radius * sin(a);
}

/* Writes point index of the upload area; coordinates are two's complement. */
static void point(uint16_t index, double x, double y, int blank, const uint8_t rgb[3]) {
  displaysetpicstruct(kScanner, index, (uint16_t)(int16_t)lround(x), (uint16_t)(int16_t)lround(y), 0, 0,
                      (uint8_t)blank, 1, 0, 0, blank ? 0 : rgb[0], blank ? 0 : rgb[1], blank ? 0 : rgb[2]);
}

/* One frame of the animation: a blanked move to the first tip, then the ten
 * edges of the star drawn in small steps, so that a scanner draws them evenly. */
static void star_frame(uint16_t picture, int frame) {
  double t = (double)frame / kFrames;
  double angle = 2.0 * kPi * t / kTips; /* one fifth of a turn brings the star back to its start */
  double size = 0.6 + 0.25 * sin(2.0 * kPi * t);
  uint8_t rgb[3];
  hue_to_rgb(t, rgb);
  uint16_t n = 0;
  double x0, y0, x1, y1;
  star_vertex(0, angle, size, &x0, &y0);
  point(n++, x0, y0, 1, rgb);
  for (int v = 0; v < 2 * kTips; ++v) {
    star_vertex(v, angle, size, &x0, &y0);
    star_vertex(v + 1, angle, size, &x1, &y1);
    for (int s = 1; s <= kStepsPerEdge; ++s) {
      double f = (double)s / kStepsPerEdge;
      point(n++, x0 + (x1 - x0) * f, y0 + (y1 - y0) * f, 0, rgb);
    }
  }
  displaysetpic(kScanner, picture, n);
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: make_show OUT.ild\n");
    return 2;
  }
  remove(argv[1]); /* so that the check below sees this run's file */
  DisplayInit();
  /* The test picture draws line i in true-colour entry i; the table starts
   * black, so it is filled with a rainbow first. */
  for (uint32_t entry = 0; entry < 29; ++entry) {
    uint8_t rgb[3];
    hue_to_rgb(entry / 29.0, rgb);
    displaysettruecolor(kScanner, entry, rgb[0], rgb[1], rgb[2], 0, 0, 0, 0, 0, 0);
  }
  displaytestpic(kScanner, 1);
  for (int frame = 0; frame < kFrames; ++frame) star_frame((uint16_t)(2 + frame), frame);
  displayexportilda(kScanner, argv[1], 1, 1 + kFrames);
  DisplayExit();

  FILE* written = fopen(argv[1], "rb");
  if (!written) {
    fprintf(stderr, "make_show: %s was not written (is the virtual scanner the LASER.DLL loaded?)\n", argv[1]);
    return 1;
  }
  fclose(written);
  printf("%s: the test picture and %d animation frames\n", argv[1], kFrames);
  return 0;
}
