// Output that never leaves a half-written file and never removes what the
// user did not ask to replace: everything goes to a temporary file in the
// target's folder, which is renamed over the target once it is complete.
// "-" is standard output.
#pragma once

#include <cstdio>
#include <string>

namespace cli {

class OutputFile {
 public:
  // Refuses a folder as the target, and a target whose temporary file cannot
  // be created (with the system's reason).
  explicit OutputFile(const std::string& path);
  ~OutputFile();  // removes the temporary file unless commit() ran
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void write(const void* data, size_t size);
  void write(const std::string& text) { write(text.data(), text.size()); }
  // Copies a whole file into the output.
  void copy_from(const std::string& path);
  // Flushes and closes the temporary file and renames it over the target.
  void commit();
  const std::string& path() const { return path_; }

 private:
  [[noreturn]] void fail(int error);
  std::string path_, temp_;
  std::FILE* file_ = nullptr;
};

// A name in the folder of `near` (or in the system's temporary folder for
// "-") that no file has, ending in `extension`; for writers that create the
// file themselves.
std::string scratch_path(const std::string& near, const std::string& extension);

// The system's reason for an error number, in words.
std::string reason(int error);

}  // namespace cli
