// Drawing pictures as SVG or PNG images.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "pictures.h"

namespace cli {

struct RenderOptions {
  bool showBlanked = false;  // draw blanked moves as dotted grey lines
  int size = 0;              // edge of one picture in pixels; 0 chooses
};

// Where the pictures of an image lie: a single picture fills it, several
// make a contact sheet with a label under each. Each picture is a square of
// `size` pixels holding the coordinate range; y grows downwards, as the
// scanner's does (readers mirror ILDA's upward y), which puts ILDA's top at
// the top of the image.
struct Sheet {
  static constexpr int kGap = 8, kLabel = 18, kRange = 65536;
  int size, columns, rows, label, width, height;
  Sheet(size_t pictures, const RenderOptions& options) {
    bool sheet = pictures > 1;
    size = options.size > 0 ? options.size : (sheet ? 200 : 600);
    columns = sheet ? static_cast<int>(std::ceil(std::sqrt(static_cast<double>(pictures)))) : 1;
    rows = static_cast<int>((pictures + columns - 1) / columns);
    label = sheet ? kLabel : 0;
    width = columns * (size + kGap) + kGap;
    height = rows * (size + label + kGap) + kGap;
  }
  int left(size_t k) const { return kGap + static_cast<int>(k % columns) * (size + kGap); }
  int top(size_t k) const { return kGap + static_cast<int>(k / columns) * (size + label + kGap); }
  double scale() const { return static_cast<double>(size) / kRange; }
};

// Calls draw(from, to, drawn) for every segment to show: the segment arriving
// at each point follows that point's flags and colour; the one arriving at
// the first point comes from the last, as the picture repeats. Blanked moves
// come only with showBlanked.
template <typename Draw>
void each_segment(const Picture& picture, bool showBlanked, Draw draw) {
  const std::vector<Point>& points = picture.points;
  for (size_t i = 0; i < points.size(); ++i) {
    const Point& from = points[i == 0 ? points.size() - 1 : i - 1];
    const Point& to = points[i];
    if (!to.blanked() || showBlanked) draw(from, to, !to.blanked());
  }
}

// Writes the chosen pictures (numbers counted from 1) as one SVG image, to a
// file or to standard output ("-"). Every drawn segment is one
// <line class="drawn"> in its colour; with showBlanked every blanked move is
// one <line class="blanked">. Line widths are in the image's own units, so
// every SVG renderer draws the same.
void write_svg(const Show& show, const std::vector<size_t>& pictures, const std::string& title,
               const std::string& path, const RenderOptions& options);

// The same drawing as a PNG image; throws Failure in a build without PNG.
void write_png(const Show& show, const std::vector<size_t>& pictures, const std::string& path,
               const RenderOptions& options);

}  // namespace cli
