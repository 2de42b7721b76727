// A track's geometry composed once per frame into one matrix: the slot chain,
// shear, rotation, world angles, size and shift, then the prism copies and
// the perspective.
#include <algorithm>
#include <cmath>

#include "pipeline.h"

namespace kalvor::projector {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Sine and cosine of an angle in degrees, exact at multiples of 90 degrees so
// that quarter turns land on whole coordinate units. The angle is reduced to
// a quarter turn and a remainder within 45 degrees, whose sine and cosine
// come from their series to within 1e-13 (a billionth of a unit over the
// whole field): hundreds of these make a frame, and this is quicker than
// the C library's sin and cos.
void sin_cos(double degrees, double& s, double& c) {
  if (!std::isfinite(degrees)) {
    s = c = degrees - degrees;  // not a number: the track will draw nothing
    return;
  }
  double d = std::fabs(degrees) < 1e9 ? degrees : std::fmod(degrees, 360.0);
  double q = static_cast<double>(static_cast<int64_t>(d / 90.0 + (d < 0 ? -0.5 : 0.5)));
  double x = (d - 90.0 * q) * (kPi / 180.0), x2 = x * x;
  double sn = x * (1 + x2 * (-1.0 / 6 + x2 * (1.0 / 120 + x2 * (-1.0 / 5040 + x2 * (1.0 / 362880 +
              x2 * (-1.0 / 39916800 + x2 * (1.0 / 6227020800)))))));
  double cs = 1 + x2 * (-0.5 + x2 * (1.0 / 24 + x2 * (-1.0 / 720 + x2 * (1.0 / 40320 + x2 * (-1.0 / 3628800 +
              x2 * (1.0 / 479001600 + x2 * (-1.0 / 87178291200)))))));
  switch (static_cast<int64_t>(q) & 3) {
    case 0: s = sn, c = cs; break;
    case 1: s = cs, c = -sn; break;
    case 2: s = -sn, c = -cs; break;
    default: s = -cs, c = sn; break;
  }
}

Matrix rows(double a, double b, double c, double d, double e, double f, double g, double h, double i) {
  Matrix m;
  double v[12] = {a, b, c, 0, d, e, f, 0, g, h, i, 0};
  for (int k = 0; k < 12; ++k) m.m[k] = v[k];
  return m;
}

// Turns about x, then y, then z, written out: the slots' order, composed
// 256 times a frame.
Matrix turns_xyz(const double angle[3]) {
  double sx, cx, sy, cy, sz, cz;
  sin_cos(angle[0], sx, cx);
  sin_cos(angle[1], sy, cy);
  sin_cos(angle[2], sz, cz);
  return rows(cz * cy, cz * sy * sx - sz * cx, cz * sy * cx + sz * sx,  //
              sz * cy, sz * sy * sx + cz * cx, sz * sy * cx - cz * sx,  //
              -sy, cy * sx, cy * cx);
}

// Three angles (x, y, z) applied in the order `order` names.
Matrix turns(const double angle[3], const uint8_t order[3]) {
  Matrix m;
  for (int k = 0; k < 3; ++k) {
    double a = angle[order[k]];
    if (a == 0) continue;
    m = (order[k] == 0 ? turn_x(a) : order[k] == 1 ? turn_y(a) : turn_z(a)).then_after(m);
  }
  return m;
}

// The orders of the world angles by rotationOrder code; 3, the code tracks
// start with, is the slots' own order, and codes past 5 are taken as 3.
constexpr uint8_t kOrders[6][3] = {{2, 1, 0}, {0, 2, 1}, {1, 0, 2}, {0, 1, 2}, {1, 2, 0}, {2, 0, 1}};

// One slot: p -> R(S(p + preMove - pivot)) + pivot + postMove, built
// directly rather than as a product of six matrices: the chain of eight slots
// of 32 tracks is composed every frame.
Matrix slot_matrix(const uint8_t* s) {
  double angle[3] = {load(s, slot::angleX), load(s, slot::angleY), load(s, slot::angleZ)};
  double scale[3] = {load(s, slot::scaleX), load(s, slot::scaleY), load(s, slot::scaleZ)};
  double pivot[3] = {double(load(s, slot::pivotX)), double(load(s, slot::pivotY)), double(load(s, slot::pivotZ))};
  double before[3] = {load(s, slot::preMoveX) - pivot[0], load(s, slot::preMoveY) - pivot[1],
                      load(s, slot::preMoveZ) - pivot[2]};
  double after[3] = {pivot[0] + load(s, slot::postMoveX), pivot[1] + load(s, slot::postMoveY),
                     pivot[2] + load(s, slot::postMoveZ)};
  Matrix m = turns_xyz(angle);
  for (int i = 0; i < 3; ++i) {
    double* row = m.m + 4 * i;
    for (int j = 0; j < 3; ++j) row[j] *= scale[j];
    row[3] = row[0] * before[0] + row[1] * before[1] + row[2] * before[2] + after[i];
  }
  return m;
}

}  // namespace

Matrix Matrix::then_after(const Matrix& b) const {
  Matrix r;
  for (int i = 0; i < 3; ++i) {
    const double* a = m + 4 * i;
    for (int j = 0; j < 4; ++j)
      r.m[4 * i + j] = a[0] * b.m[j] + a[1] * b.m[4 + j] + a[2] * b.m[8 + j] + (j == 3 ? a[3] : 0.0);
  }
  return r;
}

bool Matrix::finite() const {
  for (double v : m)
    if (!std::isfinite(v)) return false;
  return true;
}

Matrix turn_x(double degrees) {
  double s, c;
  sin_cos(degrees, s, c);
  return rows(1, 0, 0, 0, c, -s, 0, s, c);
}

Matrix turn_y(double degrees) {
  double s, c;
  sin_cos(degrees, s, c);
  return rows(c, 0, s, 0, 1, 0, -s, 0, c);
}

Matrix turn_z(double degrees) {
  double s, c;
  sin_cos(degrees, s, c);
  return rows(c, -s, 0, s, c, 0, 0, 0, 1);
}

// Sizes and shifts act on x and y alone: applied to the rows in place.
void size_and_shift(Matrix& m, double sx, double sy, double dx, double dy) {
  for (int j = 0; j < 4; ++j) m.m[j] *= sx, m.m[4 + j] *= sy;
  m.m[3] += dx, m.m[7] += dy;
}

Matrix track_matrix(const uint8_t* t, uint32_t slots, const World& world) {
  Matrix m;
  for (uint32_t k = 0; k < slots; ++k) m = slot_matrix(t + track::slotsOffset + k * slot::size).then_after(m);
  double shear[6] = {load(t, track::shearXByY), load(t, track::shearXByZ), load(t, track::shearYByX),
                     load(t, track::shearYByZ), load(t, track::shearZByX), load(t, track::shearZByY)};
  if (shear[0] != 0 || shear[1] != 0 || shear[2] != 0 || shear[3] != 0 || shear[4] != 0 || shear[5] != 0)
    m = rows(1, shear[0], shear[1], shear[2], 1, shear[3], shear[4], shear[5], 1).then_after(m);
  double rotate[3] = {load(t, track::rotateX), load(t, track::rotateY), load(t, track::rotateZ)};
  if (rotate[0] != 0 || rotate[1] != 0 || rotate[2] != 0) m = turns_xyz(rotate).then_after(m);
  double worldAngle[3] = {load(t, track::worldAngleX), load(t, track::worldAngleY), load(t, track::worldAngleZ)};
  uint8_t code = load(t, track::rotationOrder);
  m = turns(worldAngle, kOrders[code < 6 ? code : 3]).then_after(m);
  size_and_shift(m, load(t, track::sizeX), load(t, track::sizeY), load(t, track::shiftX), load(t, track::shiftY));
  size_and_shift(m, world.sizeX, world.sizeY, world.shiftX, world.shiftY);
  return m;
}

Perspective track_perspective(const uint8_t* t) {
  int32_t z = load(t, track::viewZ);
  if (z == 0) return {};
  return {true, double(load(t, track::viewX)), double(load(t, track::viewY)), std::fabs(double(z))};
}

// Mode 1 makes a row of copies along x, mode 2 a column along y, each
// prismFactor x 4,096 units from the last; every other mode a ring of copies
// turned about the field's centre by equal steps of a full turn.
uint32_t prism_copies(const uint8_t* t) { return std::min<uint32_t>(load(t, track::prismCount), 24); }

Copy prism_copy(const uint8_t* t, uint32_t k) {
  Copy c;
  if (k == 0) return c;
  uint8_t mode = load(t, track::prismMode);
  double factor = load(t, track::prismFactor);
  if (!std::isfinite(factor)) factor = 0;
  factor = std::fmax(-4.0, std::fmin(4.0, factor));
  if (mode == 1) {
    c.c = k * factor * 4096.0;
  } else if (mode == 2) {
    c.f = k * factor * 4096.0;
  } else {
    double s, co;
    sin_cos(360.0 * k / (prism_copies(t) + 1), s, co);
    c.a = co, c.b = -s, c.d = s, c.e = co;
  }
  return c;
}

Matrix with_copy(const Matrix& m, const Copy& c) {
  Matrix p = rows(c.a, c.b, 0, c.d, c.e, 0, 0, 0, 1);
  p.m[3] = c.c, p.m[7] = c.f;
  return p.then_after(m);
}

}  // namespace kalvor::projector
