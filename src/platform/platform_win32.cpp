// Win32 implementation of the platform interface.
#include "platform/platform.h"

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <stdlib.h>
#include <string.h>

#include "platform/path_parts.h"
#include "platform/profile_parser.h"

namespace kalvor::platform {

// The system's search for a DLL: the host program's folder first, then the
// system folders and PATH, so a vendor's LASER.DLL sits beside the host.
Module load_library(const char* name) { return reinterpret_cast<Module>(LoadLibraryA(name)); }

void* find_entry(Module module, const char* name) {
  if (!module) return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void free_library(Module module) {
  if (module) FreeLibrary(static_cast<HMODULE>(module));
}

// No owner window, caption "Error", stop icon and one OK button (style 16).
void show_error(const char* text) { MessageBoxA(nullptr, text, "Error", MB_OK | MB_ICONHAND); }

int64_t counter_frequency() {
  LARGE_INTEGER frequency;
  if (!QueryPerformanceFrequency(&frequency)) return 0;
  return frequency.QuadPart;
}

bool read_counter(int64_t* ticks) {
  LARGE_INTEGER now;
  if (!QueryPerformanceCounter(&now)) return false;
  *ticks = now.QuadPart;
  return true;
}

uint32_t tick_count() { return GetTickCount(); }

const char* environment(const char* name) { return getenv(name); }

// The system's own profile reader. A file name without a folder is looked for
// in the Windows folder, as every Windows program that reads profiles does.
// No file name at all yields the default: Windows would read WIN.INI instead.
size_t profile_string(const char* file, const char* section, const char* key,
                      const char* def, char* out, size_t size) {
  if (!file || !*file) return copy_profile_text(def ? def : "", out, size);
  if (!out || size == 0) return 0;
  DWORD capacity = size > 0x7fffffff ? 0x7fffffff : static_cast<DWORD>(size);
  return GetPrivateProfileStringA(section, key, def ? def : "", out, capacity, file);
}

int profile_int(const char* file, const char* section, const char* key, int def) {
  if (!file || !*file) return def;
  return static_cast<int>(GetPrivateProfileIntA(section, key, def, file));
}

// ---- files: a File's handle holds the HANDLE; INVALID_HANDLE_VALUE is -1 ----

static HANDLE handle_of(File file) { return reinterpret_cast<HANDLE>(file.handle); }

static File file_from(HANDLE handle) {
  File f;
  if (handle != INVALID_HANDLE_VALUE) f.handle = reinterpret_cast<intptr_t>(handle);
  return f;
}

// Without FILE_FLAG_BACKUP_SEMANTICS a directory does not open.
File open_read(const char* path) {
  if (!path || !*path) return File{};
  File f = file_from(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (f.is_open() && GetFileType(handle_of(f)) != FILE_TYPE_DISK) {
    close(f);
    return File{};
  }
  return f;
}

File create_write(const char* path) {
  if (!path || !*path) return File{};
  return file_from(CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                               FILE_ATTRIBUTE_NORMAL, nullptr));
}

// ReadFile and WriteFile take 32-bit counts: larger requests go in pieces.
static constexpr size_t kPiece = 1u << 30;

size_t read(File file, void* buffer, size_t size) {
  if (!file.is_open()) return 0;
  size_t done = 0;
  char* p = static_cast<char*>(buffer);
  while (done < size) {
    DWORD want = static_cast<DWORD>(size - done < kPiece ? size - done : kPiece), got = 0;
    if (!ReadFile(handle_of(file), p + done, want, &got, nullptr) || got == 0) break;
    done += got;
  }
  return done;
}

// Test hooks of the safe-save tests, as in platform_posix.cpp: a host never
// sets them. KALVOR_FAULT_WRITE_LIMIT=N: a file is full at N bytes.
// KALVOR_FAULT_RENAME=1: replace_file fails.
static bool fault_write_limit(File file, size_t* size) {
  const char* text = getenv("KALVOR_FAULT_WRITE_LIMIT");
  if (!text || !*text) return false;
  LARGE_INTEGER zero, at;
  zero.QuadPart = 0;
  if (!SetFilePointerEx(handle_of(file), zero, &at, FILE_CURRENT)) at.QuadPart = 0;
  uint64_t limit = _strtoui64(text, nullptr, 10);
  uint64_t pos = static_cast<uint64_t>(at.QuadPart);
  uint64_t room = pos < limit ? limit - pos : 0;
  if (*size <= room) return false;
  *size = static_cast<size_t>(room);
  return true;
}

bool write(File file, const void* buffer, size_t size) {
  if (!file.is_open()) return false;
  bool full = fault_write_limit(file, &size);
  size_t done = 0;
  const char* p = static_cast<const char*>(buffer);
  while (done < size) {
    DWORD want = static_cast<DWORD>(size - done < kPiece ? size - done : kPiece), put = 0;
    if (!WriteFile(handle_of(file), p + done, want, &put, nullptr) || put == 0) return false;
    done += put;
  }
  return !full;
}

bool skip(File file, int64_t offset) {
  if (!file.is_open()) return false;
  LARGE_INTEGER distance;
  distance.QuadPart = offset;
  return SetFilePointerEx(handle_of(file), distance, nullptr, FILE_CURRENT) != 0;
}

uint64_t length(File file) {
  LARGE_INTEGER size;
  if (!file.is_open() || !GetFileSizeEx(handle_of(file), &size) || size.QuadPart < 0) return 0;
  return static_cast<uint64_t>(size.QuadPart);
}

void close(File file) {
  if (file.is_open()) CloseHandle(handle_of(file));
}

bool replace_file(const char* from, const char* to) {
  const char* fault = getenv("KALVOR_FAULT_RENAME");
  if (fault && strcmp(fault, "1") == 0) return false;
  return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

void remove_file(const char* path) { DeleteFileA(path); }

bool is_directory(const char* path) {
  if (!path || !*path) return false;
  DWORD attributes = GetFileAttributesA(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// ---- paths -------------------------------------------------------------------

// Like the C runtime's _splitpath: "X:" is the drive, both '\' and '/'
// separate folders, and the extension starts at the last '.' of the name.
void split_path(const char* path, PathParts* parts) {
  if (!path) path = "";
  const char* folder = path[0] && path[1] == ':' ? path + 2 : path;
  const char* base = folder;
  for (const char* p = folder; *p; ++p)
    if (*p == '\\' || *p == '/') base = p + 1;
  fill_path_parts(path, folder, base, parts);
}

const char* catalogue_folder() { return "\\CAT\\"; }

}  // namespace kalvor::platform

// The DLL's entry point has no work to do and accepts every reason it is
// called for (process and thread attach and detach).
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
