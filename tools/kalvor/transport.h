// Finding the virtual scanner that the tool uses as its LASER.DLL.
#pragma once

#include <string>

namespace cli {

// Loads the virtual scanner by its path before kalvor starts, so that
// DisplayInit's load of "LASER.DLL" by name finds this module already in the
// process (by its soname on Linux, by its module name on Windows). The path
// is KALVOR_VIRTUAL_SCANNER when set, else the place next to the tool where
// the build or the installation puts it. Returns false, with the paths tried
// in `tried`, when none of them holds the virtual scanner.
bool load_virtual_scanner(std::string& tried);

}  // namespace cli
