// Reader for Windows-style profile (INI) files, used where the system has no
// profile functions of its own. It keeps the rules hosts rely on:
// - section and key names are compared without regard to letter case;
// - blanks around names and values are ignored;
// - the first section of a name is the one searched, and its first matching
//   key wins;
// - lines whose first non-blank character is ';' are comments;
// - a value enclosed in matching double or single quotes loses them;
// - LF and CRLF line ends, and a last line without a newline, are accepted.
// Lines are read through a fixed buffer: a line longer than the buffer is cut,
// so no file can make the reader allocate or overrun.
#pragma once

#include <cstddef>

namespace kalvor::platform {

struct ProfileValue {
  char text[1024];
};

// Supplies the file's bytes in blocks; returns 0 at the end.
struct ProfileSource {
  virtual size_t fill(char* buffer, size_t size) = 0;

 protected:
  ~ProfileSource() = default;
};

// Finds key in section; on success the value (trimmed, unquoted) is in value.
bool find_profile_value(ProfileSource& source, const char* section, const char* key,
                        ProfileValue* value);

// Copies text into out, cut to size - 1 bytes and terminated; returns the length.
size_t copy_profile_text(const char* text, char* out, size_t size);

// Integer rule of profile files: optional sign, then decimal digits up to the
// first other character (none gives 0); empty text gives def. Wraps on overflow.
int profile_text_to_int(const char* text, int def);

}  // namespace kalvor::platform
