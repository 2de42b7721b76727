// Replays inputs through one reader without libFuzzer, so that every build
// (any compiler, any platform) runs the inputs that once failed:
//   kalvor_fuzz_replay <reader> <file or folder>...
// A folder stands for every file in it. A fault aborts, as under the fuzzer.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "readers.h"

namespace fs = std::filesystem;

static void replay(kalvor_fuzz::Reader reader, const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::vector<uint8_t> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  kalvor_fuzz::run_reader(reader, data.data(), data.size());
}

int main(int argc, char** argv) {
  kalvor_fuzz::Reader reader;
  if (argc < 3 || !kalvor_fuzz::reader_by_name(argv[1], &reader)) {
    fprintf(stderr, "usage: %s <reader> <file or folder>...\n", argv[0]);
    return 2;
  }
  int count = 0;
  for (int i = 2; i < argc; ++i) {
    std::vector<fs::path> files;
    if (!fs::exists(argv[i])) continue;  // a reader without regressions yet
    if (fs::is_directory(argv[i])) {
      for (const auto& entry : fs::directory_iterator(argv[i]))
        if (entry.is_regular_file()) files.push_back(entry.path());
      std::sort(files.begin(), files.end());
    } else {
      files.push_back(argv[i]);
    }
    for (const auto& file : files) {
      replay(reader, file);
      ++count;
    }
  }
  printf("%s: %d inputs replayed without a fault\n", argv[1], count);
  return count > 0 ? 0 : 1;  // no input at all means the paths are wrong
}
