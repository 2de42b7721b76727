// The operating-system services kalvor needs, behind one interface.
// platform_posix.cpp and platform_win32.cpp implement it; no other file of the
// library includes an operating-system header.
#pragma once

#include <cstddef>
#include <cstdint>

// Calling convention of the four transport entries: callee-cleans on 32-bit
// Windows, the platform default elsewhere.
#if defined(_WIN32)
#define KALVOR_TRANSPORT_CALL __stdcall
#else
#define KALVOR_TRANSPORT_CALL
#endif

namespace kalvor::platform {

// ---- dynamic loading -------------------------------------------------------

using Module = void*;

// Loads a library by name through the system loader's search; null on failure.
Module load_library(const char* name);
// Address of an exported entry, or null.
void* find_entry(Module module, const char* name);
void free_library(Module module);

// ---- messages --------------------------------------------------------------

// Shows a modal error message (caption "Error", stop icon, one OK button).
void show_error(const char* text);

// ---- clock -----------------------------------------------------------------

// Ticks per second of the high-resolution counter, or 0 when there is none.
int64_t counter_frequency();
// Reads the high-resolution counter; false when it cannot be read.
bool read_counter(int64_t* ticks);
// Milliseconds since system start, the fallback clock.
uint32_t tick_count();

// ---- environment -----------------------------------------------------------

// Value of an environment variable, or null.
const char* environment(const char* name);

// ---- profile (INI) files ---------------------------------------------------

// Both read a profile as Windows's GetPrivateProfileStringA and
// GetPrivateProfileIntA do (see profile_parser.h for the rules).
// Copies the value of key in section of file into out (always terminated,
// cut to size - 1), or def when the key is missing. Returns the length copied.
size_t profile_string(const char* file, const char* section, const char* key,
                      const char* def, char* out, size_t size);
// Reads an integer key (sign, then decimal, 0x, 0o or 0b digits); def when the
// key is missing or empty.
int profile_int(const char* file, const char* section, const char* key, int def);

// ---- files -----------------------------------------------------------------

// An open file. Reads and writes go straight to the system; callers buffer.
struct File {
  intptr_t handle = -1;
  bool is_open() const { return handle != -1; }
};

// Opens an existing regular file for reading. A directory does not open.
File open_read(const char* path);
// Creates or truncates a file for writing, readable and writable by the user.
File create_write(const char* path);
// Reads up to size bytes; returns the count read, 0 at the end or on error.
size_t read(File file, void* buffer, size_t size);
// Writes size bytes; returns false on any error. Test hook: the environment
// variable KALVOR_FAULT_WRITE_LIMIT=N makes every file full at N bytes.
bool write(File file, const void* buffer, size_t size);
// Moves the position by offset bytes from the current one.
bool skip(File file, int64_t offset);
// Length of the file in bytes, or 0 when unknown.
uint64_t length(File file);
void close(File file);
// Renames from over to, replacing to. Used for safe saves. Test hook:
// KALVOR_FAULT_RENAME=1 makes it fail, as when the folder was removed.
bool replace_file(const char* from, const char* to);
// Removes a file; used to drop a temporary file after a failed save.
void remove_file(const char* path);
// True when path names an existing folder.
bool is_directory(const char* path);

// ---- paths -----------------------------------------------------------------

// The parts of a path. drive is empty where the system has no drives; folder
// ends with a separator when not empty; extension starts with '.' when not
// empty (the text from the last '.' of the final component).
struct PathParts {
  char drive[8];
  char folder[1024];
  char name[256];
  char extension[256];
};
void split_path(const char* path, PathParts* parts);

// The folder at the root of the current drive where catalogues are looked for
// when the caller's path does not exist, with trailing separator.
const char* catalogue_folder();

}  // namespace kalvor::platform
