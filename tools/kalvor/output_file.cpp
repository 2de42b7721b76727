#include "output_file.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "pictures.h"
#include "transport.h"

namespace cli {

namespace fs = std::filesystem;

std::string reason(int error) { return error ? std::strerror(error) : "the write did not complete"; }

std::string scratch_path(const std::string& near, const std::string& extension) {
  static std::atomic<int> counter{0};
  fs::path folder = near == "-" ? fs::temp_directory_path() : fs::path(near).parent_path();
  std::string stem = near == "-" ? "kalvor" : fs::path(near).filename().string();
  for (;;) {
    fs::path p = folder / ("." + stem + ".kalvor-" + std::to_string(process_id()) + "-" + std::to_string(counter++) +
                           extension);
    std::error_code ignored;
    if (!fs::exists(p, ignored)) return p.string();
  }
}

OutputFile::OutputFile(const std::string& path) : path_(path) {
  if (path == "-") {
    file_ = binary(stdout);
    return;
  }
  std::error_code ignored;
  if (fs::is_directory(path, ignored))
    throw Failure("cannot write '" + path + "': it is a folder; give the name of a file to write");
  temp_ = scratch_path(path, ".tmp");
  errno = 0;
  file_ = std::fopen(temp_.c_str(), "wb");
  if (!file_) throw Failure("cannot write '" + path + "': " + reason(errno));
}

OutputFile::~OutputFile() {
  if (file_ && file_ != stdout) {
    std::fclose(file_);
    std::remove(temp_.c_str());
  }
}

void OutputFile::fail(int error) {
  if (file_ != stdout) {
    std::fclose(file_);
    std::remove(temp_.c_str());
  }
  file_ = nullptr;
  throw Failure("cannot write '" + path_ + "': " + reason(error));
}

void OutputFile::write(const void* data, size_t size) {
  errno = 0;
  if (size && std::fwrite(data, 1, size, file_) != size) fail(errno);
}

void OutputFile::copy_from(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  char block[64 * 1024];
  while (in.read(block, sizeof block) || in.gcount() > 0) write(block, static_cast<size_t>(in.gcount()));
}

void OutputFile::commit() {
  errno = 0;
  if (std::fflush(file_) != 0 || std::ferror(file_)) fail(errno);
  if (file_ == stdout) return;
  std::FILE* f = file_;
  file_ = nullptr;
  if (std::fclose(f) != 0) {
    int error = errno;
    std::remove(temp_.c_str());
    throw Failure("cannot write '" + path_ + "': " + reason(error));
  }
  std::error_code error;
  fs::rename(temp_, path_, error);
  if (error) {
    std::remove(temp_.c_str());
    throw Failure("cannot write '" + path_ + "': " + error.message());
  }
}

}  // namespace cli
