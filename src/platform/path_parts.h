// The system-independent half of path splitting: each platform file finds
// where the drive ends and where the final name begins, and this fills the
// four parts from those two places.
#pragma once

#include "platform/platform.h"

namespace kalvor::platform {

// folder: the first character after the drive; base: the first character of
// the final name. The extension starts at the last '.' of the final name.
// Each part is cut to its buffer and terminated.
void fill_path_parts(const char* path, const char* folder, const char* base, PathParts* parts);

}  // namespace kalvor::platform
