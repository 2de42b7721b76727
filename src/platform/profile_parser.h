// Reader for Windows profile (INI) files, used where the system has no
// profile functions of its own. It reads a file the way Windows's
// GetPrivateProfileStringA and GetPrivateProfileIntA do, because users move
// profiles between the systems and edit them with Windows editors:
// - the file is text in Windows-1252, or UTF-8 or UTF-16 (little- or
//   big-endian) when it starts with the matching byte-order mark; the text is
//   read as UTF-16 and a value is handed back in Windows-1252;
// - CR, LF or any run of them ends a line; blanks are space, tab, vertical
//   tab, form feed and 0x1A (the old end-of-file mark);
// - a line whose first non-blank character is '[' and that holds a ']' names
//   a section: the text up to the last ']', without blanks around it; a '['
//   line without ']' is an ordinary line;
// - any other line is a key: the text before the first '=' (without blanks),
//   or the whole line when it has no '=' (a key without a value, which yields
//   the default); the value is the text after the '=' without blanks around;
// - a NUL ends a name or value; names compare without regard to ASCII case;
// - only the first section of a name is searched, and its first matching key
//   wins; lines starting with ';' are keys no one asks for;
// - a value enclosed in matching double or single quotes loses them; with a
//   buffer of n characters the text between them stays whole up to n - 2
//   characters, loses its last one at n - 1 and is cut to n - 1 when longer.
// Lines of any length are read through fixed buffers: nothing allocates, and
// no file can make the reader overrun.
#pragma once

#include <cstddef>

namespace kalvor::platform {

// A value as found: its first code units, its length up to the first NUL
// (which may exceed what is kept), and its last code unit. What is kept
// fills the 256-byte buffers kalvor reads values into; a larger buffer gets
// no more than kKept - 1 characters.
struct ProfileValue {
  static constexpr size_t kKept = 260;
  char16_t text[kKept];
  size_t length = 0;
  char16_t last = 0;
  bool present = false;  // false for a key line without '='
};

// Supplies the file's bytes in blocks; returns 0 at the end.
struct ProfileSource {
  virtual size_t fill(char* buffer, size_t size) = 0;

 protected:
  ~ProfileSource() = default;
};

// Finds the first key of that name in the first section of that name. True
// when the key is there; value->present tells whether it has a value.
bool find_profile_value(ProfileSource& source, const char* section, const char* key,
                        ProfileValue* value);

// Copies a found value into out as GetPrivateProfileStringA does for a buffer
// of size bytes: quotes dropped, cut to size - 1, in Windows-1252,
// terminated. Returns the length.
size_t copy_profile_value(const ProfileValue& value, char* out, size_t size);

// Copies text into out, cut to size - 1 bytes and terminated; returns the length.
size_t copy_profile_text(const char* text, char* out, size_t size);

// GetPrivateProfileIntA's reading of a found value: it is copied as into a
// buffer of 30 characters (29 count); an empty one gives def. Characters up to the space are
// skipped, then an optional sign, then digits in base 10, or base 16, 8 or 2
// after a lower-case 0x, 0o or 0b, up to the first other character. Wraps on
// overflow.
int profile_value_to_int(const ProfileValue& value, int def);

}  // namespace kalvor::platform
