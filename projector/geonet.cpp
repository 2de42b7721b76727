// The geometry net: the 9 x 9 grid a scanner corrects its output with, kept
// as displacements from the even grid so that the even grid moves nothing.
#include <cmath>

#include "pipeline.h"

namespace kalvor::projector {
namespace {

constexpr double kStep = 65535.0 / 8;  // the even grid's spacing, 8,191.875 units
constexpr double kHalf = 32768.0;      // field coordinate 0 is picture coordinate -32,768

// Cell index and the fraction within the cell for a field coordinate; the
// edge cells carry on beyond the field.
int cell(double u, double& fraction) {
  double g = u / kStep;
  int a = g >= 7 ? 7 : g >= 1 ? static_cast<int>(g) : 0;  // a NaN takes cell 0
  fraction = g - a;
  return a;
}

}  // namespace

void prepare_geonet(const Scanner& s, Geonet& net) {
  net.active = false;
  if (!s.hasGeonet) return;
  bool moved = false, flat = true;
  const uint8_t* p = s.geonet.data() + geonet::pointsOffset;
  double first[3] = {load_le<double>(p), load_le<double>(p + 8), load_le<double>(p + 16)};
  for (int a = 0; a < 9; ++a)
    for (int b = 0; b < 9; ++b) {
      const uint8_t* q = p + geonet::pointSize * (9 * a + b);
      double v[3] = {load_le<double>(q), load_le<double>(q + 8), load_le<double>(q + 16)};
      double even[3] = {a * kStep, b * kStep, 0};
      for (int k = 0; k < 3; ++k) {
        if (!std::isfinite(v[k])) return;
        net.delta[9 * a + b][k] = v[k] - even[k];
        moved = moved || v[k] != even[k];
        flat = flat && v[k] == first[k];
      }
    }
  net.active = moved && !flat;
}

void Geonet::correct(double& x, double& y, double& z) const {
  double fa, fb;
  int a = cell(x + kHalf, fa), b = cell(y + kHalf, fb);
  const double* p00 = delta[9 * a + b];
  const double* p10 = delta[9 * (a + 1) + b];
  const double* p01 = delta[9 * a + b + 1];
  const double* p11 = delta[9 * (a + 1) + b + 1];
  double d[3];
  for (int k = 0; k < 3; ++k)
    d[k] = (p00[k] * (1 - fa) + p10[k] * fa) * (1 - fb) + (p01[k] * (1 - fa) + p11[k] * fa) * fb;
  x += d[0], y += d[1], z += d[2];
}

}  // namespace kalvor::projector
