// Finding the transport (LASER.DLL) that the tool uses, and the few other
// things the tool asks of the operating system.
#pragma once

#include <cstdio>
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

// Sets an environment variable for this process and the modules it loads.
void set_environment(const char* name, const std::string& value);

// True when standard output is a terminal.
bool stdout_is_terminal();

// This process's id, to name its temporary files.
unsigned long process_id();

// Switches a standard stream to binary (on Windows; elsewhere they are).
std::FILE* binary(std::FILE* stream);

// The virtual scanner, which every command but play uses.
inline bool load_virtual_scanner(std::string& tried) { return load_transport("virtual", tried); }

}  // namespace cli
