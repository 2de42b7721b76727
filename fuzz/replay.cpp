// Replays inputs through one reader without libFuzzer, so that every build
// (any compiler, any platform) runs the inputs that once failed:
//   kalvor_fuzz_replay <reader or IDN parser> <file or folder>...
// A folder stands for every file in it. A fault aborts, as under the fuzzer.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "idn_parsers.h"
#include "readers.h"

namespace fs = std::filesystem;

// A file reader or an IDN parser, by name.
struct Target {
  bool idn = false;
  kalvor_fuzz::Reader reader{};
  kalvor_fuzz::IdnParser parser{};
};

static void replay(const Target& target, const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::vector<uint8_t> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (target.idn)
    kalvor_fuzz::run_idn_parser(target.parser, data.data(), data.size());
  else
    kalvor_fuzz::run_reader(target.reader, data.data(), data.size());
}

int main(int argc, char** argv) {
  Target reader;
  if (argc >= 3) reader.idn = kalvor_fuzz::idn_parser_by_name(argv[1], &reader.parser);
  if (argc < 3 || (!reader.idn && !kalvor_fuzz::reader_by_name(argv[1], &reader.reader))) {
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
