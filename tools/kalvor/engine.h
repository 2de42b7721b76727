// Drawing pictures through the projector engine: the track's transform is
// set through kalvor's exports, and the frame the virtual scanner renders
// replaces the picture.
#pragma once

#include <vector>

#include "pictures.h"

namespace cli {

struct Transform {
  double rotate = 0;  // degrees; positive turns +x toward +y (clockwise as drawn, y down)
  double scale = 1;
  bool any() const { return rotate != 0 || scale != 1; }
};

// Replaces each chosen picture (numbers counted from 1) by the frame the
// projector draws for it through the transform.
void transform_pictures(Show& show, const std::vector<size_t>& numbers, const Transform& transform);

}  // namespace cli
