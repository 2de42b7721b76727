// Saves that fail part way. Every writer builds its file beside the target
// and puts it in place only when all of it was written, so a full disk or a
// folder that vanishes before the rename leaves an earlier file as it was and
// no half-written file behind. The faults come from the platform layer's test
// hooks: KALVOR_FAULT_WRITE_LIMIT (a file full at N bytes) and
// KALVOR_FAULT_RENAME (the final rename fails).
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/harness.h"

using namespace kt;
namespace fs = std::filesystem;

namespace {

// A writer: the file name it writes, and the commands it sends even when the
// file cannot be created.
struct Writer {
  const char* file;
  void (*save)(const char* path);
  int sends_before_create;
};

const Writer kWriters[] = {
    {"colours.pal", [](const char* p) { displaysavepal(1, 2, p); }, 0},
    {"one.pic", [](const char* p) { displaysavepic(1, p, 1); }, 1},
    {"two.ild", [](const char* p) { displayexportilda(1, p, 1, 2); }, 0},
    {"all.cat", [](const char* p) { saveCAT(1, p); }, 0},
    {"upper.CAT", [](const char* p) { savecat(1, p); }, 0},
    {"all.lds", [](const char* p) { saveLDS(1, p); }, 0},
};

class SafeSave : public KalvorTest {
 protected:
  void SetUp() override {
    KalvorTest::SetUp();
    // A scanner with pictures 0 to 2 of 40 points each, and colours.
    rec.emulate_pictures(true);
    for (uint16_t p = 0; p < 3; ++p) {
      for (uint32_t i = 0; i < 40; ++i) displaysetpoint(1, i, i * 100 + p, i, 0, i % 64, i % 2, p, 2, 3);
      displaysetpic(1, p, 40);
    }
    displayinitcolorbuffer(1, 2, 0x5A);
    folder = temp_path("saves");
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  void TearDown() override {
    fs::remove_all(folder);
    KalvorTest::TearDown();
  }

  // The names in the folder: a failed save must leave nothing of its own.
  std::vector<std::string> listing() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    return names;
  }

  std::string folder;
};

}  // namespace

// Each writer, first without a fault (the file it writes is the reference),
// then with the disk full at every size from nothing to one byte short, then
// with the rename failing: the earlier file stays and nothing else appears.
// With exactly the room the file needs, the save succeeds. A file that cannot
// be created writes nothing anywhere, and no writer sends anything except the
// picture query that displaysavepic sends first.
TEST_F(SafeSave, FailedSaveKeepsTheEarlierFileAndLeavesNoTemporaryFile) {
  const Bytes earlier = {'e', 'a', 'r', 'l', 'i', 'e', 'r'};
  for (const Writer& w : kWriters) {
    SCOPED_TRACE(w.file);
    const std::string path = folder + "/" + w.file;
    w.save(path.c_str());
    const Bytes reference = read_file(path);
    ASSERT_GT(reference.size(), 16u);
    fs::remove(path);

    // The disk full at each size, then the rename failing (SIZE_MAX), then
    // exactly the room the file needs (the last).
    const size_t n = reference.size();
    for (size_t limit : {size_t{0}, size_t{1}, size_t{14}, n / 2, n - 1, SIZE_MAX, n}) {
      write_file(path, earlier);
      const char* fault = limit == SIZE_MAX ? "KALVOR_FAULT_RENAME" : "KALVOR_FAULT_WRITE_LIMIT";
      set_env(fault, limit == SIZE_MAX ? "1" : std::to_string(limit).c_str());
      w.save(path.c_str());
      set_env(fault, nullptr);
      EXPECT_EQ(read_file(path), limit == n ? reference : earlier) << "limit " << limit;
      EXPECT_EQ(listing(), std::vector<std::string>{w.file}) << "limit " << limit;
    }
    fs::remove(path);

    for (const std::string& uncreatable : {folder + "/gone/" + w.file, folder}) {
      const int before = rec.count();
      w.save(uncreatable.c_str());
      EXPECT_EQ(rec.count() - before, w.sends_before_create) << uncreatable;
    }
    EXPECT_TRUE(listing().empty());
  }
}
