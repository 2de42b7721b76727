// Finding the transport (LASER.DLL) that the tool uses.
#pragma once

#include <string>

namespace cli {

// Loads transports/<name>/LASER.DLL by its path before kalvor starts, so that
// DisplayInit's load of "LASER.DLL" by name finds this module already in the
// process (by its soname on Linux, by its module name on Windows). It looks
// where the build puts transports and where the installation does, both
// relative to the tool; for the virtual scanner, KALVOR_VIRTUAL_SCANNER names
// the file when set. Returns false, with the paths tried in `tried`, when
// none of them holds a transport.
bool load_transport(const std::string& name, std::string& tried);

// The virtual scanner, which every command but play uses.
inline bool load_virtual_scanner(std::string& tried) { return load_transport("virtual", tried); }

}  // namespace cli
