#include "platform/profile_parser.h"

#include <cstdint>
#include <cstring>

namespace kalvor::platform {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }

char lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// Trims blanks from both ends of [*begin, *end).
void trim(const char** begin, const char** end) {
  while (*begin < *end && is_blank(**begin)) ++*begin;
  while (*end > *begin && is_blank((*end)[-1])) --*end;
}

bool same_name(const char* begin, const char* end, const char* name) {
  size_t n = static_cast<size_t>(end - begin);
  if (strlen(name) != n) return false;
  for (size_t i = 0; i < n; ++i)
    if (lower(begin[i]) != lower(name[i])) return false;
  return true;
}

// Splits the source into lines, each cut to the line buffer's size.
class LineReader {
 public:
  explicit LineReader(ProfileSource& source) : source_(source) {}

  // Next line without its end; false at the end of the file.
  bool next(const char** begin, const char** end) {
    size_t length = 0;
    bool any = false;
    for (;;) {
      if (pos_ == filled_) {
        filled_ = source_.fill(block_, sizeof block_);
        pos_ = 0;
        if (filled_ == 0) break;
      }
      any = true;
      char c = block_[pos_++];
      if (c == '\n') break;
      if (length < sizeof line_) line_[length++] = c;
    }
    *begin = line_;
    *end = line_ + length;
    return any;
  }

 private:
  ProfileSource& source_;
  char block_[4096];
  size_t pos_ = 0, filled_ = 0;
  char line_[2048];
};

}  // namespace

bool find_profile_value(ProfileSource& source, const char* section, const char* key,
                        ProfileValue* value) {
  LineReader lines(source);
  const char *begin, *end;
  bool inside = false;
  while (lines.next(&begin, &end)) {
    trim(&begin, &end);
    if (begin == end || *begin == ';') continue;
    if (*begin == '[') {
      if (inside) return false;  // the first section of this name had no such key
      const char* close = static_cast<const char*>(memchr(begin, ']', static_cast<size_t>(end - begin)));
      const char* name_begin = begin + 1;
      const char* name_end = close ? close : end;
      trim(&name_begin, &name_end);
      inside = same_name(name_begin, name_end, section);
      continue;
    }
    if (!inside) continue;
    const char* eq = static_cast<const char*>(memchr(begin, '=', static_cast<size_t>(end - begin)));
    if (!eq) continue;
    const char* key_begin = begin;
    const char* key_end = eq;
    trim(&key_begin, &key_end);
    if (!same_name(key_begin, key_end, key)) continue;
    const char* v_begin = eq + 1;
    const char* v_end = end;
    trim(&v_begin, &v_end);
    if (v_end - v_begin >= 2 && (*v_begin == '"' || *v_begin == '\'') && v_end[-1] == *v_begin) {
      ++v_begin;
      --v_end;
    }
    size_t n = static_cast<size_t>(v_end - v_begin);
    if (n > sizeof value->text - 1) n = sizeof value->text - 1;
    memcpy(value->text, v_begin, n);
    value->text[n] = 0;
    return true;
  }
  return false;
}

size_t copy_profile_text(const char* text, char* out, size_t size) {
  if (!out || size == 0) return 0;
  size_t n = strlen(text);
  if (n > size - 1) n = size - 1;
  memcpy(out, text, n);
  out[n] = 0;
  return n;
}

int profile_text_to_int(const char* text, int def) {
  while (*text == ' ' || *text == '\t') ++text;
  if (!*text) return def;
  bool negative = false;
  if (*text == '+' || *text == '-') negative = *text++ == '-';
  uint32_t result = 0;
  while (*text >= '0' && *text <= '9') result = result * 10u + static_cast<uint32_t>(*text++ - '0');
  if (negative) result = 0u - result;
  return static_cast<int>(result);
}

}  // namespace kalvor::platform
