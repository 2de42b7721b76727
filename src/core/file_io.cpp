#include "core/file_io.h"

#include <cstdio>
#include <cstring>

namespace kalvor {

FileReader::FileReader(const char* path) : file_(platform::open_read(path)) {
  if (file_.is_open()) left_ = platform::length(file_);
}

FileReader::~FileReader() { platform::close(file_); }

bool FileReader::refill() {
  pos_ = 0;
  end_ = platform::read(file_, buffer_, sizeof buffer_);
  left_ = left_ > end_ ? left_ - end_ : 0;
  return end_ > 0;
}

size_t FileReader::read(void* out, size_t size) {
  uint8_t* dst = static_cast<uint8_t*>(out);
  size_t done = 0;
  while (done < size) {
    if (pos_ == end_) {
      // Large reads go straight to the caller's memory.
      if (size - done >= sizeof buffer_) {
        size_t n = platform::read(file_, dst + done, size - done);
        left_ = left_ > n ? left_ - n : 0;
        done += n;
        break;
      }
      if (!refill()) break;
    }
    size_t n = end_ - pos_;
    if (n > size - done) n = size - done;
    memcpy(dst + done, buffer_ + pos_, n);
    pos_ += n;
    done += n;
  }
  return done;
}

bool FileReader::skip(uint64_t count) {
  uint64_t in_buffer = end_ - pos_;
  if (count <= in_buffer) {
    pos_ += static_cast<size_t>(count);
    return true;
  }
  count -= in_buffer;
  pos_ = end_ = 0;
  if (count > left_) {  // past the end: stay at the end
    platform::skip(file_, static_cast<int64_t>(left_));
    left_ = 0;
    return false;
  }
  if (!platform::skip(file_, static_cast<int64_t>(count))) return false;
  left_ -= count;
  return true;
}

FileWriter::FileWriter(const char* path) {
  size_t n = path ? strlen(path) : 0;
  // A folder cannot be replaced by a file: fail now, as creating it would,
  // before a writer sends its queries.
  if (n == 0 || n >= sizeof target_ || platform::is_directory(path)) return;
  memcpy(target_, path, n + 1);
  snprintf(temp_, sizeof temp_, "%s.kalvor-tmp", path);
  file_ = platform::create_write(temp_);
}

FileWriter::~FileWriter() {
  if (file_.is_open()) {
    platform::close(file_);
    platform::remove_file(temp_);
  }
}

void FileWriter::flush() {
  if (used_ && !failed_ && !platform::write(file_, buffer_, used_)) failed_ = true;
  used_ = 0;
}

void FileWriter::write(const void* data, size_t size) {
  if (!file_.is_open() || failed_) return;
  const uint8_t* src = static_cast<const uint8_t*>(data);
  if (used_ + size > sizeof buffer_) {
    flush();
    if (size >= sizeof buffer_) {
      if (!failed_ && !platform::write(file_, src, size)) failed_ = true;
      return;
    }
  }
  memcpy(buffer_ + used_, src, size);
  used_ += size;
}

bool FileWriter::commit() {
  if (!file_.is_open()) return false;
  flush();
  platform::close(file_);
  file_ = platform::File{};
  if (failed_ || !platform::replace_file(temp_, target_)) {
    platform::remove_file(temp_);
    return false;
  }
  return true;
}

}  // namespace kalvor
