#include "support/harness.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>

#include "consumers/recording.h"

namespace kt {

Recorder::Recorder() {
  void* module = RECORDING_OPEN();
  if (!module) return;
#define RECORDER_BIND(ret, name, args) name##_ = reinterpret_cast<ret(*) args>(RECORDING_FIND(module, #name));
  RECORDER_FUNCTIONS(RECORDER_BIND)
#undef RECORDER_BIND
  loaded_ = recorder_count_ != nullptr;
}

Recorder& Recorder::get() {
  static Recorder recorder;
  return recorder;
}

int Recorder::count() { return loaded_ ? recorder_count_() : 0; }

Sent Recorder::at(int index) {
  const uint8_t* p = recorder_bytes_(index);
  return Sent{recorder_scanner_(index), Bytes(p, p + recorder_length_(index)), recorder_had_reply_(index) != 0};
}

std::vector<Sent> Recorder::all() {
  std::vector<Sent> out;
  for (int i = 0, n = count(); i < n; ++i) out.push_back(at(i));
  return out;
}

std::vector<Bytes> Recorder::bytes() {
  std::vector<Bytes> out;
  for (int i = 0, n = count(); i < n; ++i) out.push_back(at(i).bytes);
  return out;
}

Sent Recorder::last() {
  int n = count();
  EXPECT_GT(n, 0) << "nothing was sent";
  return n ? at(n - 1) : Sent{};
}

void Recorder::clear() {
  if (loaded_) recorder_clear_();
}
void Recorder::set_reply(uint8_t opcode, const Bytes& bytes) {
  recorder_set_reply_(opcode, bytes.data(), static_cast<uint32_t>(bytes.size()));
}
void Recorder::emulate_pictures(bool on) { recorder_emulate_pictures_(on ? 1 : 0); }
int Recorder::constructor_calls() { return loaded_ ? recorder_constructor_calls_() : 0; }
int Recorder::destructor_calls() { return loaded_ ? recorder_destructor_calls_() : 0; }
uint32_t Recorder::last_print() { return recorder_last_print_(); }
void Recorder::set_print_result(uint32_t value) { recorder_set_print_result_(value); }

void KalvorTest::SetUp() {
  DisplayExit();
  DisplayInit();
  rec.clear();
}

void KalvorTest::TearDown() { rec.clear(); }

Bytes concat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
  return out;
}

Bytes colour_entry(uint32_t s, uint8_t buffer, uint8_t index) {
  uint8_t c[9] = {};
  displaygetcolorbuffer(s, buffer, index, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
  displaygetcolorbufferrgb(s, buffer, index, &c[6], &c[7], &c[8]);
  return Bytes(c, c + 9);
}

Bytes upload_track(const Bytes& upload, int t) {
  size_t at = 3;
  for (int i = 0;; ++i) {
    if (at + 498 > upload.size()) {
      ADD_FAILURE() << "track " << t << " is not in the upload";
      return {};
    }
    size_t length = 498 + 84 * size_t{upload[at + 497]};
    if (i == t) return Bytes(upload.begin() + static_cast<long>(at), upload.begin() + static_cast<long>(at + length));
    at += length;
  }
}

// The run's own token keeps two runs of the same test (two build folders
// tested at once) out of each other's files.
std::string temp_path(const std::string& name) {
  static const std::string run = std::to_string(std::random_device{}() % 1000000);
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string prefix = info ? std::string(info->test_suite_name()) + "_" + info->name() + "_" : "";
  return ::testing::TempDir() + "kalvor" + run + "_" + prefix + name;
}

void write_file(const std::string& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

Bytes read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void set_env(const char* name, const char* value) {
#if defined(_WIN32)
  _putenv_s(name, value ? value : "");
#else
  if (value)
    setenv(name, value, 1);
  else
    unsetenv(name);
#endif
}

std::string fixture(const std::string& relative) { return std::string(KALVOR_FIXTURES_DIR) + "/" + relative; }

bool fixture_exists(const std::string& relative) {
  FILE* f = std::fopen(fixture(relative).c_str(), "rb");
  if (f) std::fclose(f);
  return f != nullptr;
}

}  // namespace kt
