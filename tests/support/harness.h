// Test support: the recording transport seen from a test, and a fixture that
// starts every test from a freshly initialised library.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "kalvor/kalvor.h"

namespace kt {

using Bytes = std::vector<uint8_t>;

struct Sent {
  uint32_t scanner;
  Bytes bytes;
  bool reply;  // a reply area was passed
};

// The recording LASER.DLL, reached through the same module kalvor loaded.
class Recorder {
 public:
  static Recorder& get();
  bool loaded() const { return loaded_; }
  int count();
  Sent at(int index);
  std::vector<Sent> all();
  // The commands sent since the last clear, as byte strings only.
  std::vector<Bytes> bytes();
  Sent last();
  void clear();
  void set_reply(uint8_t opcode, const Bytes& bytes);
  void emulate_pictures(bool on);
  int constructor_calls();
  int destructor_calls();
  uint32_t last_print();
  void set_print_result(uint32_t value);

 private:
  Recorder();
  bool loaded_ = false;
#define RECORDER_POINTER(ret, name, args) ret(*name##_) args = nullptr;
#include "../transports/recorder/recorder.h"
  RECORDER_FUNCTIONS(RECORDER_POINTER)
#undef RECORDER_POINTER
};

// Every test starts with DisplayInit done afresh and an empty recording.
class KalvorTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
  Recorder& rec = Recorder::get();
};

// Little-endian views for assertions.
template <typename T>
T le(const Bytes& b, size_t offset) {
  T v{};
  EXPECT_LE(offset + sizeof(T), b.size());
  if (offset + sizeof(T) <= b.size()) std::memcpy(&v, b.data() + offset, sizeof v);
  return v;
}
template <typename T>
Bytes le_bytes(T v) {
  Bytes b(sizeof v);
  std::memcpy(b.data(), &v, sizeof v);
  return b;
}
inline Bytes u16(uint16_t v) { return le_bytes(v); }
Bytes concat(std::initializer_list<Bytes> parts);

// Entry `index` of colour buffer `buffer` of scanner s: the six channels, then r, g, b.
Bytes colour_entry(uint32_t s, uint8_t buffer, uint8_t index);

// The bytes of track `t` inside a track upload command.
Bytes upload_track(const Bytes& upload, int t);

// A file in the test's temporary folder; removed at the end of the test.
std::string temp_path(const std::string& name);
void write_file(const std::string& path, const Bytes& bytes);
Bytes read_file(const std::string& path);

// Sets (or, with value null, removes) an environment variable of the process.
void set_env(const char* name, const char* value);

// Path of a shared fixture file.
std::string fixture(const std::string& relative);
bool fixture_exists(const std::string& relative);

// Fixture files live outside the repository: a clone on its own lacks them,
// and a test that needs one is skipped, naming the missing file.
#define SKIP_WITHOUT_FIXTURE(relative)                                            \
  do {                                                                            \
    if (!::kt::fixture_exists(relative))                                          \
      GTEST_SKIP() << "fixture file missing: " << ::kt::fixture(relative);        \
  } while (0)

}  // namespace kt
