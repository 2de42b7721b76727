// POSIX implementation of the platform interface (Linux and other Unix-likes).
#include "platform/platform.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "platform/path_parts.h"
#include "platform/profile_parser.h"

namespace kalvor::platform {

// The system loader searches LD_LIBRARY_PATH, the library's RUNPATH and the
// usual folders, as a host expects for a plug-in transport.
Module load_library(const char* name) { return dlopen(name, RTLD_NOW | RTLD_LOCAL); }

void* find_entry(Module module, const char* name) {
  return module ? dlsym(module, name) : nullptr;
}

void free_library(Module module) {
  if (module) dlclose(module);
}

// There is no message box here: one line on standard error carries the text.
void show_error(const char* text) { fprintf(stderr, "kalvor: Error: %s\n", text); }

// The counter is CLOCK_MONOTONIC in nanoseconds.
int64_t counter_frequency() { return 1000000000; }

bool read_counter(int64_t* ticks) {
  struct timespec ts;
  if (clock_gettime(CLOCK_MONOTONIC, &ts) != 0) return false;
  *ticks = static_cast<int64_t>(ts.tv_sec) * 1000000000 + ts.tv_nsec;
  return true;
}

uint32_t tick_count() {
  struct timespec ts;
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<uint32_t>(static_cast<uint64_t>(ts.tv_sec) * 1000 +
                               static_cast<uint64_t>(ts.tv_nsec) / 1000000);
}

const char* environment(const char* name) { return getenv(name); }

namespace {

// Feeds a profile file to the parser in blocks.
struct FileSource : ProfileSource {
  File file;
  size_t fill(char* buffer, size_t size) override { return read(file, buffer, size); }
};

bool parse_profile(const char* path, const char* section, const char* key, ProfileValue* value) {
  if (!path || !*path) return false;
  FileSource source;
  source.file = open_read(path);
  if (!source.file.is_open()) return false;
  bool found = find_profile_value(source, section, key, value);
  close(source.file);
  return found;
}

}  // namespace

// A key without a value counts as missing: the default applies.
size_t profile_string(const char* file, const char* section, const char* key,
                      const char* def, char* out, size_t size) {
  ProfileValue value;
  if (parse_profile(file, section, key, &value) && value.present) return copy_profile_value(value, out, size);
  return copy_profile_text(def ? def : "", out, size);
}

int profile_int(const char* file, const char* section, const char* key, int def) {
  ProfileValue value;
  if (!parse_profile(file, section, key, &value)) return def;
  return profile_value_to_int(value, def);
}

File open_read(const char* path) {
  File f;
  if (!path || !*path) return f;
  int fd;
  do {
    fd = ::open(path, O_RDONLY | O_CLOEXEC);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return f;
  struct stat st;
  if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return f;
  }
  f.handle = fd;
  return f;
}

File create_write(const char* path) {
  File f;
  if (!path || !*path) return f;
  int fd;
  do {
    fd = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  } while (fd < 0 && errno == EINTR);
  if (fd >= 0) f.handle = fd;
  return f;
}

size_t read(File file, void* buffer, size_t size) {
  if (!file.is_open()) return 0;
  size_t done = 0;
  char* p = static_cast<char*>(buffer);
  while (done < size) {
    ssize_t n = ::read(static_cast<int>(file.handle), p + done, size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += static_cast<size_t>(n);
  }
  return done;
}

// Test hooks of the safe-save tests, read at each call; a host never sets
// them. KALVOR_FAULT_WRITE_LIMIT=N lets a file grow to N bytes only, and the
// write that would pass that point fails after writing what fits, as on a full
// disk. KALVOR_FAULT_RENAME=1 makes replace_file fail, as when the folder was
// removed during the save.
static bool fault_write_limit(int fd, size_t* size) {
  const char* text = getenv("KALVOR_FAULT_WRITE_LIMIT");
  if (!text || !*text) return false;
  off_t at = lseek(fd, 0, SEEK_CUR);
  uint64_t limit = strtoull(text, nullptr, 10);
  uint64_t room = at >= 0 && static_cast<uint64_t>(at) < limit ? limit - static_cast<uint64_t>(at) : 0;
  if (*size <= room) return false;
  *size = static_cast<size_t>(room);
  return true;
}

bool write(File file, const void* buffer, size_t size) {
  if (!file.is_open()) return false;
  bool full = fault_write_limit(static_cast<int>(file.handle), &size);
  size_t done = 0;
  const char* p = static_cast<const char*>(buffer);
  while (done < size) {
    ssize_t n = ::write(static_cast<int>(file.handle), p + done, size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return !full;
}

bool skip(File file, int64_t offset) {
  if (!file.is_open()) return false;
  return lseek(static_cast<int>(file.handle), static_cast<off_t>(offset), SEEK_CUR) >= 0;
}

uint64_t length(File file) {
  struct stat st;
  if (!file.is_open() || fstat(static_cast<int>(file.handle), &st) != 0) return 0;
  return st.st_size > 0 ? static_cast<uint64_t>(st.st_size) : 0;
}

void close(File file) {
  if (file.is_open()) ::close(static_cast<int>(file.handle));
}

bool replace_file(const char* from, const char* to) {
  const char* fault = getenv("KALVOR_FAULT_RENAME");
  if (fault && strcmp(fault, "1") == 0) return false;
  return rename(from, to) == 0;
}

void remove_file(const char* path) { unlink(path); }

bool is_directory(const char* path) {
  struct stat st;
  return path && *path && stat(path, &st) == 0 && S_ISDIR(st.st_mode);
}

void split_path(const char* path, PathParts* parts) {
  if (!path) path = "";
  const char* slash = strrchr(path, '/');
  fill_path_parts(path, path, slash ? slash + 1 : path, parts);
}

const char* catalogue_folder() { return "/CAT/"; }

}  // namespace kalvor::platform
