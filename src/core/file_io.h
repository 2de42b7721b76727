// Buffered file access on top of the platform's unbuffered calls. Readers and
// writers of every file format go through these two classes, so that no
// format makes one system call per record, and every save is safe: it writes
// a temporary file beside the target and renames it over the target only when
// everything was written.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/platform.h"

namespace kalvor {

class FileReader {
 public:
  explicit FileReader(const char* path);
  ~FileReader();
  FileReader(const FileReader&) = delete;
  FileReader& operator=(const FileReader&) = delete;

  bool is_open() const { return file_.is_open(); }
  // Reads up to size bytes; returns how many were read (fewer at the end).
  size_t read(void* out, size_t size);
  // Reads exactly size bytes; false (with what could be read in out) at the end.
  bool read_exact(void* out, size_t size) { return read(out, size) == size; }
  // The bytes that lie buffered, without copying them: points `data` at them
  // and returns how many there are (0 at the end of the file), refilling an
  // empty buffer first. advance() consumes what the caller used of them.
  size_t buffered(const uint8_t** data) {
    if (pos_ == end_ && !refill()) return 0;
    *data = buffer_ + pos_;
    return end_ - pos_;
  }
  void advance(size_t n) { pos_ += n; }
  // Moves forward by count bytes; false when the file ends first.
  bool skip(uint64_t count);
  // Length of the file in bytes.
  uint64_t length() const { return platform::length(file_); }

 private:
  bool refill();
  platform::File file_;
  size_t pos_ = 0, end_ = 0;
  uint64_t left_ = 0;  // bytes of the file not yet in the buffer
  uint8_t buffer_[64 * 1024];
};

class FileWriter {
 public:
  // Creates a temporary file beside path; is_open() tells whether it worked.
  explicit FileWriter(const char* path);
  // Drops the temporary file unless commit() succeeded.
  ~FileWriter();
  FileWriter(const FileWriter&) = delete;
  FileWriter& operator=(const FileWriter&) = delete;

  bool is_open() const { return file_.is_open(); }
  void write(const void* data, size_t size);
  void put_u8(uint8_t v) { write(&v, 1); }
  // Flushes, closes and renames the temporary file over the target. Returns
  // false, leaving any earlier target untouched, when any write failed.
  bool commit();

 private:
  void flush();
  platform::File file_;
  bool failed_ = false;
  size_t used_ = 0;
  char target_[1024];
  char temp_[1040];
  uint8_t buffer_[64 * 1024];
};

}  // namespace kalvor
