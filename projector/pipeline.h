// The stages of the render pipeline, each worked out once per track and frame
// from the track record, then applied point by point by render.cpp.
// docs/projector.md describes every stage and field.
#pragma once

#include <cstdint>

#include "projector.h"

namespace kalvor::projector {

// An affine map of 3-D points: row r is (m[4r], m[4r+1], m[4r+2], m[4r+3]).
struct Matrix {
  double m[12] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
  // this applied after b.
  Matrix then_after(const Matrix& b) const;
  bool finite() const;
};

// Right-handed turns in degrees: a positive turn about z takes +x toward +y,
// about x +y toward +z, about y +z toward +x.
Matrix turn_x(double degrees);
Matrix turn_y(double degrees);
Matrix turn_z(double degrees);

// A track's geometry up to the perspective: slot chain, shear, rotation,
// world angles, size, shift and the world's own shift and size.
Matrix track_matrix(const uint8_t* track, uint32_t slots, const World& world);

// The perspective of a track: a viewer at (x, y) at distance d in front of the
// field (d = |viewZ|); off when viewZ is 0.
struct Perspective {
  bool on = false;
  double x = 0, y = 0, d = 0;
};
Perspective track_perspective(const uint8_t* track);

// The prism copy k (0 = the picture itself) of a track: a 2-D map of the
// field, x' = a x + b y + c, y' = d x + e y + f.
struct Copy {
  double a = 1, b = 0, c = 0, d = 0, e = 1, f = 0;
};
uint32_t prism_copies(const uint8_t* track);  // copies besides the picture itself, 0..24
Copy prism_copy(const uint8_t* track, uint32_t k);
// The matrix followed by a copy's 2-D map.
Matrix with_copy(const Matrix& m, const Copy& c);

// The geometry net as displacements from the even grid, worked out once per
// frame. Inactive when no net was received, or the net is even, flat (every
// point the same) or not finite.
struct Geonet {
  bool active = false;
  double delta[81][3] = {};
  // Moves a field point by the net's displacement there (bilinear in the
  // cell that holds it, the edge cells carried on beyond the field).
  void correct(double& x, double& y, double& z) const;
};
void prepare_geonet(const Scanner& s, Geonet& net);

// The colour controls of a track.
struct Colour {
  bool identity = true;  // the points' own (r, g, b, 0, 0, 0), nothing else
  bool palette = false;  // flags bit 0: the colour index selects a palette entry
  int32_t indexShift = 0;
  const uint8_t* entries = nullptr;  // 64 six-byte palette entries
  double factor[6] = {1, 1, 1, 1, 1, 1};  // intensity, and rotR/G/B on c0..c2
  bool hsl = false;
  double hueTurn = 0, saturation = 1, lightness = 1;
  bool radial = false;  // centre recolour or hot spot
  double centre[3] = {1, 1, 1}, hotSpot = 0;
  bool depth = false;
  double cueNear = 0, cueFar = 0;
  // Writes the six channels of a point with the given picture colour and
  // status at field position (x, y) and depth z.
  void apply(const uint8_t rgb[3], uint8_t status, double x, double y, double z, uint8_t out[6]) const;
};
Colour track_colour(const uint8_t* track, const Scanner& s);

inline constexpr uint16_t kFlagPalette = 1u << 0;

}  // namespace kalvor::projector
