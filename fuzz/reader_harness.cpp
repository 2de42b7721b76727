// Runs one file reader on one input through the library's exports, with the
// recording transport bound as LASER.DLL, and checks every command the reader
// sent: a picture command must announce at most 8,192 points and be exactly as
// long as its count says; a palette command is 386 bytes. Anything else a
// reader sends is a fault. A failed check aborts, so the fuzzer keeps the input.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>

#include "kalvor/kalvor.h"
#include "readers.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace kalvor_fuzz {
namespace {

// The recorder's own entries, reached through the module kalvor bound.
struct Recorder {
  int (*count)(void) = nullptr;
  uint32_t (*length)(int) = nullptr;
  const uint8_t* (*bytes)(int) = nullptr;
  void (*clear)(void) = nullptr;
};

template <typename F>
void bind(void* module, const char* name, F* out) {
#if defined(_WIN32)
  *out = reinterpret_cast<F>(GetProcAddress(static_cast<HMODULE>(module), name));
#else
  *out = reinterpret_cast<F>(dlsym(module, name));
#endif
  if (!*out) {
    fprintf(stderr, "fuzz harness: LASER.DLL is not the recording transport (%s missing)\n", name);
    abort();
  }
}

Recorder bind_recorder() {
#if defined(_WIN32)
  void* module = reinterpret_cast<void*>(LoadLibraryA("LASER.DLL"));
#else
  void* module = dlopen("LASER.DLL", RTLD_NOW | RTLD_LOCAL);
#endif
  if (!module) {
    fprintf(stderr, "fuzz harness: put the recording transport's folder on the loader path\n");
    abort();
  }
  Recorder r;
  bind(module, "recorder_count", &r.count);
  bind(module, "recorder_length", &r.length);
  bind(module, "recorder_bytes", &r.bytes);
  bind(module, "recorder_clear", &r.clear);
  return r;
}

void set_env(const char* name, const char* value) {
#if defined(_WIN32)
  _putenv_s(name, value);
#else
  setenv(name, value, 1);
#endif
}

struct Session {
  std::filesystem::path folder;
  Recorder recorder;
};

// One folder for the inputs of this process; the library is bound once, with
// the profile file name pointing at the profile reader's input.
Session& session() {
  static Session* s = [] {
    auto* created = new Session;
    std::random_device random;
    created->folder = std::filesystem::temp_directory_path() /
                      ("kalvor-fuzz-" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(created->folder);
    set_env("KALVOR_PROFILE", (created->folder / "input.ini").string().c_str());
    DisplayInit();
    created->recorder = bind_recorder();
    created->recorder.clear();
    std::atexit([] {
      std::error_code ignored;
      std::filesystem::remove_all(session().folder, ignored);
    });
    return created;
  }();
  return *s;
}

[[noreturn]] void fault(const char* what, int index, uint32_t length) {
  fprintf(stderr, "fuzz harness: command %d (%u bytes): %s\n", index, length, what);
  abort();
}

uint16_t le16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }

// With KALVOR_REPLAY_RECORD naming a file, every command a reader sends is
// appended to it (4-byte little-endian length, then the bytes), so that two
// builds of the library can be compared byte for byte over the same inputs.
FILE* command_log() {
  static FILE* log = [] {
    const char* path = getenv("KALVOR_REPLAY_RECORD");
    return path && *path ? fopen(path, "ab") : nullptr;
  }();
  return log;
}

// Checks every command recorded since the last clear, then clears.
void check_commands(Reader reader) {
  Recorder& r = session().recorder;
  if (FILE* log = command_log())
    for (int i = 0, n = r.count(); i < n; ++i) {
      uint32_t length = r.length(i);
      const uint8_t head[4] = {uint8_t(length), uint8_t(length >> 8), uint8_t(length >> 16), uint8_t(length >> 24)};
      fwrite(head, 1, 4, log);
      fwrite(r.bytes(i), 1, length, log);
    }
  const uint32_t most_points = reader == Reader::ilda || reader == Reader::ilda_index ? 8191 : 8192;
  for (int i = 0, n = r.count(); i < n; ++i) {
    uint32_t length = r.length(i);
    const uint8_t* bytes = r.bytes(i);
    if (length == 0) fault("empty command", i, length);
    switch (bytes[0]) {
      case 0x00: {
        if (length < 5) fault("picture command shorter than its header", i, length);
        uint32_t points = le16(bytes + 3);
        if (points > most_points) fault("picture command with too many points", i, length);
        if (length != 5 + 11 * points) fault("picture command length differs from its point count", i, length);
        if (reader == Reader::cat_part && (le16(bytes + 1) < 10 || le16(bytes + 1) > 13))
          fault("part of a catalogue sent outside its numbers", i, length);
        break;
      }
      case 0x05:
        if (length != 386 || bytes[1] != 64) fault("malformed palette command", i, length);
        break;
      case 0x21:
        if (length != 1) fault("malformed clear command", i, length);
        break;
      default:
        fault("a reader sent an unexpected command", i, length);
    }
  }
  r.clear();
}

// The profile reader, as displaybeginsession runs it, then the names it may
// have set, read into buffers of exactly the documented 16 bytes.
void read_profile() {
  for (uint32_t scanner : {1u, 3u, 20u}) {
    getscannerprofile(scanner);
    for (auto get : {getsendname, getreceivename}) {
      char* name = static_cast<char*>(malloc(16));
      get(scanner, name);
      if (!memchr(name, 0, 16)) fault("a stored name is not terminated", 0, 0);
      free(name);
    }
  }
}

void write_input(const std::filesystem::path& path, const uint8_t* data, size_t size) {
  FILE* f = fopen(path.string().c_str(), "wb");
  if (!f || (size && fwrite(data, 1, size, f) != size)) {
    fprintf(stderr, "fuzz harness: cannot write %s\n", path.string().c_str());
    abort();
  }
  fclose(f);
}

}  // namespace

bool reader_by_name(const char* name, Reader* out) {
#define KALVOR_FUZZ_NAME(id, ext, call) \
  if (strcmp(name, #id) == 0) {         \
    *out = Reader::id;                  \
    return true;                        \
  }
  KALVOR_FUZZ_READERS(KALVOR_FUZZ_NAME)
#undef KALVOR_FUZZ_NAME
  return false;
}

void run_reader(Reader reader, const uint8_t* data, size_t size) {
  Session& s = session();
  switch (reader) {
#define KALVOR_FUZZ_RUN(id, ext, call)                          \
  case Reader::id: {                                            \
    std::filesystem::path file = s.folder / ("input" ext);      \
    write_input(file, data, size);                              \
    std::string name = file.string();                           \
    const char* path = name.c_str();                            \
    (void)path;                                                 \
    call;                                                       \
    break;                                                      \
  }
    KALVOR_FUZZ_READERS(KALVOR_FUZZ_RUN)
#undef KALVOR_FUZZ_RUN
  }
  check_commands(reader);
}

}  // namespace kalvor_fuzz
