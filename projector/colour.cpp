// A track's colour controls, worked out once per frame, and their effect on
// each point: palette or true colour, hue, saturation and lightness, the
// channel factors, centre recolour, hot spot and depth cue.
#include <algorithm>
#include <cmath>

#include "pipeline.h"

namespace kalvor::projector {
namespace {

// A factor held to lo..hi; a value that is not finite gives `otherwise`, so a
// broken field never lights the beam more than it would be lit anyway.
double held(double v, double lo, double hi, double otherwise) {
  return std::isfinite(v) ? std::clamp(v, lo, hi) : otherwise;
}

double hue_channel(double p, double q, double t) {
  if (t < 0) t += 1;
  if (t > 1) t -= 1;
  if (t < 1.0 / 6) return p + (q - p) * 6 * t;
  if (t <= 0.5) return q;
  if (t < 2.0 / 3) return p + (q - p) * (2.0 / 3 - t) * 6;
  return p;
}

// Turns the hue of (r, g, b) (0..255 each) by `turn` of a full circle and
// scales its saturation and lightness, each held to 0..1.
void adjust_hsl(double c[3], double turn, double saturation, double lightness) {
  double r = c[0] / 255, g = c[1] / 255, b = c[2] / 255;
  double hi = std::max({r, g, b}), lo = std::min({r, g, b});
  double l = (hi + lo) / 2, h = 0, s = 0;
  if (hi > lo) {
    double d = hi - lo;
    s = l > 0.5 ? d / (2 - hi - lo) : d / (hi + lo);
    h = hi == r ? (g - b) / d + (g < b ? 6 : 0) : hi == g ? (b - r) / d + 2 : (r - g) / d + 4;
    h /= 6;
  }
  h = std::fmod(h + turn, 1.0);
  if (h < 0) h += 1;
  s = std::min(1.0, s * saturation);
  l = std::min(1.0, l * lightness);
  if (s == 0) {
    c[0] = c[1] = c[2] = l * 255;
    return;
  }
  double q = l < 0.5 ? l * (1 + s) : l + s - l * s, p = 2 * l - q;
  c[0] = hue_channel(p, q, h + 1.0 / 3) * 255;
  c[1] = hue_channel(p, q, h) * 255;
  c[2] = hue_channel(p, q, h - 1.0 / 3) * 255;
}

}  // namespace

Colour track_colour(const uint8_t* t, const Scanner& s) {
  Colour c;
  c.palette = (load(t, track::flags) & kFlagPalette) != 0;
  c.entries = s.palette;
  double shift = load(t, track::colorShift);
  c.indexShift = std::isfinite(shift) ? static_cast<int32_t>(std::fmod(std::trunc(shift), 64.0)) : 0;

  double intensity = held(load(t, track::intensity), 0, 1, 0);
  double rot[3] = {held(load(t, track::rotR), 0, 1, 0), held(load(t, track::rotG), 0, 1, 0),
                   held(load(t, track::rotB), 0, 1, 0)};
  for (int j = 0; j < 6; ++j) c.factor[j] = intensity * (j < 3 ? rot[j] : 1.0);

  double hue = load(t, track::hue);
  c.hueTurn = std::isfinite(hue) ? (hue - 1) / 2 : 0;  // 0..2 turns -180..+180 degrees
  c.saturation = held(load(t, track::saturation), 0, 1e9, 1);
  c.lightness = held(load(t, track::lightness), 0, 1e9, 1);
  c.hsl = c.hueTurn != 0 || c.saturation != 1 || c.lightness != 1;

  c.centre[0] = held(load(t, track::centerRecolorR), 0, 1, 1);
  c.centre[1] = held(load(t, track::centerRecolorG), 0, 1, 1);
  c.centre[2] = held(load(t, track::centerRecolorB), 0, 1, 1);
  c.hotSpot = held(load(t, track::hotSpot), 0, 3, 0);
  c.radial = c.centre[0] != 1 || c.centre[1] != 1 || c.centre[2] != 1 || c.hotSpot != 0;

  // The depth cue: full colour up to depth depthCue1, dark from depthCue2 on.
  int32_t cueNear = static_cast<int32_t>(load(t, track::depthCue1));
  int32_t cueFar = static_cast<int32_t>(load(t, track::depthCue2));
  c.depth = cueFar > cueNear;
  c.cueNear = cueNear, c.cueFar = cueFar;

  bool plain = true;
  for (double f : c.factor) plain = plain && f == 1;
  c.identity = plain && !c.palette && !c.hsl && !c.radial && !c.depth;
  return c;
}

void Colour::apply(const uint8_t rgb[3], uint8_t status, double x, double y, double z, uint8_t out[6]) const {
  double c[6] = {double(rgb[0]), double(rgb[1]), double(rgb[2]), 0, 0, 0};
  if (palette) {
    uint32_t index = static_cast<uint32_t>((status & 63) + indexShift + 64) % 64;
    for (int j = 0; j < 6; ++j) c[j] = entries[6 * index + j];
  }
  if (hsl) adjust_hsl(c, hueTurn, saturation, lightness);
  for (int j = 0; j < 6; ++j) c[j] *= factor[j];
  if (radial) {
    // Full effect at the field's centre, none from 32,768 units away on.
    double w = std::max(0.0, 1 - std::hypot(x, y) / 32768.0);
    for (int j = 0; j < 3; ++j) c[j] *= 1 + (centre[j] - 1) * w;
    for (double& v : c) v *= 1 + hotSpot * w;
  }
  if (depth) {
    double w = z <= cueNear ? 1 : z >= cueFar ? 0 : (cueFar - z) / (cueFar - cueNear);
    for (double& v : c) v *= w;
  }
  for (int j = 0; j < 6; ++j) out[j] = static_cast<uint8_t>(c[j] >= 255 ? 255 : c[j] > 0 ? c[j] : 0);
}

}  // namespace kalvor::projector
