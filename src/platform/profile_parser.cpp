#include "platform/profile_parser.h"

#include <cstdint>
#include <cstring>

#include "platform/windows_1252.h"

namespace kalvor::platform {

namespace {

// Line ends are not among these: they split the text before blanks matter.
bool is_blank(char16_t c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == 0x1A; }

char16_t fold(char16_t c) { return (c >= 'A' && c <= 'Z') ? static_cast<char16_t>(c - 'A' + 'a') : c; }

// The source's bytes with a few bytes of look-ahead, for the UTF-8 decoder.
class ByteReader {
 public:
  explicit ByteReader(ProfileSource& source) : source_(source) {}

  // The byte k places ahead (k < 4), or -1 past the end of the file.
  int peek(size_t k) {
    while (pos_ + k >= filled_ && !ended_) refill();
    return pos_ + k < filled_ ? static_cast<uint8_t>(block_[pos_ + k]) : -1;
  }
  // Passes n bytes, at most as many as are left.
  void skip(size_t n) { pos_ = n < filled_ - pos_ ? pos_ + n : filled_; }

 private:
  void refill() {
    memmove(block_, block_ + pos_, filled_ - pos_);
    filled_ -= pos_;
    pos_ = 0;
    size_t got = source_.fill(block_ + filled_, sizeof block_ - filled_);
    if (got == 0) ended_ = true;
    filled_ += got;
  }

  ProfileSource& source_;
  char block_[4096];
  size_t pos_ = 0, filled_ = 0;
  bool ended_ = false;
};

// The file as UTF-16 code units, whatever its encoding: a byte-order mark
// chooses UTF-8 or UTF-16, else the bytes are Windows-1252.
class TextReader {
 public:
  explicit TextReader(ProfileSource& source) : bytes_(source) {
    int b0 = bytes_.peek(0), b1 = bytes_.peek(1);
    if (b0 == 0xEF && b1 == 0xBB && bytes_.peek(2) == 0xBF) {
      encoding_ = Encoding::Utf8;
      bytes_.skip(3);
    } else if ((b0 == 0xFF && b1 == 0xFE) || (b0 == 0xFE && b1 == 0xFF)) {
      encoding_ = b0 == 0xFF ? Encoding::Utf16Le : Encoding::Utf16Be;
      bytes_.skip(2);
    }
  }

  bool next(char16_t* unit) {
    if (pending_) {
      *unit = pending_;
      pending_ = 0;
      return true;
    }
    int b = bytes_.peek(0);
    if (b < 0) return false;
    switch (encoding_) {
      case Encoding::Ansi:
        bytes_.skip(1);
        *unit = from_windows_1252(static_cast<uint8_t>(b));
        return true;
      case Encoding::Utf16Le:
      case Encoding::Utf16Be: {
        int b1 = bytes_.peek(1);
        bytes_.skip(2);
        if (b1 < 0) b1 = 0;  // an odd last byte is read with a zero beside it
        *unit = static_cast<char16_t>(encoding_ == Encoding::Utf16Le ? b | b1 << 8 : b << 8 | b1);
        return true;
      }
      case Encoding::Utf8:
        break;
    }
    uint32_t point = utf8_point();
    if (point >= 0x10000) {
      point -= 0x10000;
      pending_ = static_cast<char16_t>(0xDC00 | (point & 0x3FF));
      point = 0xD800 | point >> 10;
    }
    *unit = static_cast<char16_t>(point);
    return true;
  }

 private:
  enum class Encoding { Ansi, Utf8, Utf16Le, Utf16Be };

  // One character of UTF-8, or U+FFFD for a malformed one. A malformed
  // sequence is replaced up to (not including) the first byte that shows it
  // wrong; a sequence cut by the end of the file swallows what is left.
  uint32_t utf8_point() {
    constexpr uint32_t kBad = 0xFFFD;
    int lead = bytes_.peek(0);
    bytes_.skip(1);
    if (lead < 0x80) return static_cast<uint32_t>(lead);
    int more = lead >= 0xC2 && lead <= 0xDF ? 1 : lead >= 0xE0 && lead <= 0xEF ? 2 : lead >= 0xF0 && lead <= 0xF4 ? 3 : 0;
    if (more == 0) return kBad;
    if (bytes_.peek(static_cast<size_t>(more - 1)) < 0) {
      bytes_.skip(3);
      return kBad;
    }
    static constexpr uint32_t kLeadBits[4] = {0x7F, 0x1F, 0x0F, 0x07};
    uint32_t point = static_cast<uint32_t>(lead) & kLeadBits[more];
    for (; more > 0; --more) {
      uint32_t c = static_cast<uint32_t>(bytes_.peek(0)) ^ 0x80;
      if (c >= 0x40) return kBad;
      point = point << 6 | c;
      if (more == 2 && point >= (0x110000 >> 6)) return kBad;  // beyond U+10FFFF
      bytes_.skip(1);
      if (more == 3 && point < 0x10) return kBad;  // overlong four bytes
      if (more == 2 && (point < 0x20 || (point >= (0xD800 >> 6) && point <= (0xDFFF >> 6))))
        return kBad;  // overlong three bytes, or a surrogate
    }
    return point < 0x80 ? kBad : point;
  }

  ByteReader bytes_;
  Encoding encoding_ = Encoding::Ansi;
  char16_t pending_ = 0;  // the second half of a surrogate pair
};

// A wanted section or key name, without blanks around it.
struct Wanted {
  const char* text;
  size_t length;
};

Wanted trimmed(const char* name) {
  while (*name && is_blank(static_cast<uint8_t>(*name))) ++name;
  size_t n = strlen(name);
  while (n > 0 && is_blank(static_cast<uint8_t>(name[n - 1]))) --n;
  return {name, n};
}

// Whether a name, fed one code unit at a time after its leading blanks,
// is the wanted one: the wanted text, then a NUL (which ends the name) or
// only blanks to the name's end.
class NameMatch {
 public:
  explicit NameMatch(Wanted wanted) : wanted_(wanted) {}

  void feed(char16_t c) {
    if (state_ == State::Prefix && matched_ < wanted_.length) {
      if (fold(c) == fold(static_cast<uint8_t>(wanted_.text[matched_]))) ++matched_;
      else state_ = State::Fail;
    } else if (state_ == State::Prefix) {
      state_ = c == 0 ? State::Nul : is_blank(c) ? State::Blanks : State::Fail;
    } else if (state_ == State::Blanks && !is_blank(c)) {
      state_ = State::Fail;
    }
  }
  bool matched() const { return state_ == State::Nul || (state_ != State::Fail && matched_ == wanted_.length); }
  bool ended_by_nul() const { return state_ == State::Nul; }

 private:
  enum class State { Prefix, Blanks, Nul, Fail };
  Wanted wanted_;
  size_t matched_ = 0;
  State state_ = State::Prefix;
};

// A section header's name runs from after '[' to the last ']' of the line.
// Fed the line after its '[', this tells whether the line holds a ']' and
// whether the name is the wanted one: the wanted text must be followed by a
// NUL with a ']' somewhere after it, or by blanks and then the last ']'.
class SectionMatch {
 public:
  explicit SectionMatch(Wanted wanted) : name_(wanted) {}

  void feed(char16_t c) {
    if (c == ']') ++closes_;
    if (leading_ && is_blank(c)) return;
    leading_ = false;
    if (closes_after_name_ >= 0) {
      if (c == ']') ++closes_after_name_;
      return;
    }
    if (name_.matched() && c == ']') {
      closes_after_name_ = 1;
      needs_close_ = false;
      return;
    }
    name_.feed(c);
    if (name_.ended_by_nul()) {
      closes_after_name_ = 0;
      needs_close_ = true;
    }
  }
  bool has_close() const { return closes_ > 0; }
  bool matched() const {
    if (closes_after_name_ < 0) return false;
    return needs_close_ ? closes_after_name_ > 0 : closes_after_name_ == 1;
  }

 private:
  NameMatch name_;
  bool leading_ = true;
  int closes_ = 0;
  // ']'s from the end of the wanted text on, once it ended in a ']' or a NUL.
  int closes_after_name_ = -1;
  bool needs_close_ = false;
};

}  // namespace

bool find_profile_value(ProfileSource& source, const char* section, const char* key,
                        ProfileValue* value) {
  Wanted wanted_section = trimmed(section), wanted_key = trimmed(key);
  if (wanted_key.length == 0) return false;
  TextReader text(source);
  bool inside = wanted_section.length == 0;  // keys before any section belong to ""
  for (;;) {
    NameMatch key_name(wanted_key);
    SectionMatch section_name(wanted_section);
    bool content = false, header = false, has_equals = false, in_value = false, value_nul = false;
    size_t value_count = 0, value_trimmed = 0;
    char16_t previous = 0, last_nonblank = 0;

    char16_t c = 0;
    bool more;
    while ((more = text.next(&c)) && c != '\r' && c != '\n') {
      if (!content) {
        if (is_blank(c)) continue;
        content = true;
        if (c == '[') {
          header = true;
          key_name.feed(c);
          continue;
        }
      }
      if (header) section_name.feed(c);
      if (!has_equals) {
        if (c == '=') has_equals = true;
        else key_name.feed(c);
        continue;
      }
      if (!inside || value_nul || !key_name.matched()) continue;
      if (!in_value && is_blank(c)) continue;
      in_value = true;
      if (c == 0) {
        value_nul = true;
        value_trimmed = value_count;
        last_nonblank = previous;
        continue;
      }
      if (value_count < ProfileValue::kKept) value->text[value_count] = c;
      ++value_count;
      previous = c;
      if (!is_blank(c)) {
        value_trimmed = value_count;
        last_nonblank = c;
      }
    }

    if (header && section_name.has_close()) {
      if (inside) return false;  // the first section of this name had no such key
      inside = section_name.matched();
    } else if (content && inside && key_name.matched()) {
      value->present = has_equals;
      value->length = value_trimmed;
      value->last = last_nonblank;
      return true;
    }
    if (!more) return false;
  }
}

namespace {

// The part of a value that Windows copies into a buffer of size code units:
// enclosing quotes dropped when the value fits, cut to size - 1.
size_t copied_part(const ProfileValue& value, size_t size, const char16_t** begin) {
  const char16_t* text = value.text;
  size_t length = value.length;
  bool quoted = length >= 2 && (text[0] == '"' || text[0] == '\'') && value.last == text[0];
  if (quoted) ++text, --length;
  size_t n = length < size - 1 ? length : size - 1;
  if (quoted && size >= length && n > 0) --n;  // the closing quote, or the last character kept
  size_t kept = ProfileValue::kKept - static_cast<size_t>(text - value.text);
  *begin = text;
  return n < kept ? n : kept;
}

}  // namespace

size_t copy_profile_value(const ProfileValue& value, char* out, size_t size) {
  if (!out || size == 0) return 0;
  const char16_t* text;
  size_t n = value.present ? copied_part(value, size, &text) : 0;
  for (size_t i = 0; i < n; ++i) out[i] = static_cast<char>(to_windows_1252(text[i]));
  out[n] = 0;
  return n;
}

size_t copy_profile_text(const char* text, char* out, size_t size) {
  if (!out || size == 0) return 0;
  size_t n = strlen(text);
  if (n > size - 1) n = size - 1;
  memcpy(out, text, n);
  out[n] = 0;
  return n;
}

int profile_value_to_int(const ProfileValue& value, int def) {
  const char16_t* p;
  size_t n = value.present ? copied_part(value, 30, &p) : 0;
  if (n == 0) return def;
  const char16_t* end = p + n;
  while (p < end && *p <= ' ') ++p;
  bool negative = false;
  if (p < end && (*p == '+' || *p == '-')) negative = *p++ == '-';
  uint32_t base = 10;
  if (end - p >= 2 && p[0] == '0' && (p[1] == 'x' || p[1] == 'o' || p[1] == 'b')) {
    base = p[1] == 'x' ? 16 : p[1] == 'o' ? 8 : 2;
    p += 2;
  }
  uint32_t result = 0;
  for (; p < end; ++p) {
    uint32_t digit = *p >= '0' && *p <= '9' ? *p - '0'
                     : *p >= 'a' && *p <= 'z' ? *p - 'a' + 10
                     : *p >= 'A' && *p <= 'Z' ? *p - 'A' + 10
                                              : 99;
    if (digit >= base) break;
    result = result * base + digit;
  }
  if (negative) result = 0u - result;
  return static_cast<int>(result);
}

}  // namespace kalvor::platform
