// Drawing pictures as SVG.
#pragma once

#include <string>
#include <vector>

#include "pictures.h"

namespace cli {

struct RenderOptions {
  bool showBlanked = false;  // draw blanked moves as dotted grey lines
  int size = 0;              // edge of one picture in pixels; 0 chooses
};

// Writes the chosen pictures (numbers counted from 1) as one SVG image: a
// single picture fills it, several make a contact sheet with a label under
// each. Every drawn segment is one <line class="drawn"> in its colour; with
// showBlanked every blanked move is one <line class="blanked">. Y points up,
// as in ILDA files.
void write_svg(const Show& show, const std::vector<size_t>& pictures, const std::string& title,
               const std::string& path, const RenderOptions& options);

}  // namespace cli
