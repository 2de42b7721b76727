// The scanner's identity: its profile section (names, output signal and
// colour matrix), the two names, the last-error class and the print entry of
// the transport.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "core/library.h"
#include "core/transport.h"
#include "kalvor/kalvor.h"
#include "platform/platform.h"

using namespace kalvor;

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Value of a number that from_chars recognised but could not represent: as
// with the C library's conversion, an overflow gives infinity and an
// underflow zero. The sign of the decimal exponent of the leading nonzero
// digit tells which of the two happened.
double out_of_range(const char* p, const char* end) {
  long exponent = 0;
  bool significant = false;
  for (; p < end && is_digit(*p); ++p) {
    if (*p != '0') significant = true;
    if (significant) ++exponent;
  }
  if (p < end && *p == '.') {
    for (++p; p < end && is_digit(*p) && !significant; ++p) {
      if (*p != '0') significant = true;
      else --exponent;
    }
    while (p < end && is_digit(*p)) ++p;
  }
  if (p < end && (*p == 'e' || *p == 'E')) {
    ++p;
    bool negative = p < end && *p == '-';
    if (p < end && (*p == '-' || *p == '+')) ++p;
    long e = 0;
    for (; p < end && is_digit(*p); ++p) e = e < 100000 ? e * 10 + (*p - '0') : e;
    exponent += negative ? -e : e;
  }
  return exponent > 0 ? HUGE_VAL : 0.0;
}

// Text to double with the rules of the C library's conversion, but always
// with '.' as decimal point whatever the host's locale: leading blanks, an
// optional sign, digits, an optional exponent; text that does not start a
// number gives 0.0.
double text_to_double(const char* text) {
  const char* end = text + strlen(text);
  while (text < end && is_blank(*text)) ++text;
  bool negative = text < end && *text == '-';
  if (text < end && (*text == '-' || *text == '+')) ++text;
  if (text < end && *text == '-') return 0.0;  // a second sign starts no number
  double value = 0.0;
  auto [stop, error] = std::from_chars(text, end, value, std::chars_format::general);
  if (error == std::errc::result_out_of_range) value = out_of_range(text, stop);
  else if (error != std::errc{}) value = 0.0;
  return negative ? -value : value;
}

// Stores a name shorter than 16 characters with its terminating zero; a
// longer name (or none) changes nothing.
void set_name(uint32_t scanner, Area field, const char* name) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec || !name) return;
  size_t n = strnlen(name, field.size);
  if (n >= field.size) return;
  memcpy(rec + field.offset, name, n + 1);
}

void get_name(uint32_t scanner, Area field, char* destination) {
  const uint8_t* rec = scanner_record(scanner);
  if (!rec || !destination) return;
  const char* name = reinterpret_cast<const char*>(rec + field.offset);
  size_t n = strnlen(name, field.size - 1);  // the field always ends in a zero
  memcpy(destination, name, n);
  destination[n] = 0;
}

// Class of a NetBIOS return code, as getlasterror reports it.
constexpr uint8_t error_class(uint8_t code) {
  switch (code) {
    case 0x00: case 0x0D: return 0;
    case 0x3F: return 1;
    case 0x09: case 0x0E: case 0x35: case 0x36: case 0x37: case 0x38: return 3;
    case 0x0A: case 0x11: case 0x19: return 4;
    case 0x16: case 0x30: return 5;
    case 0x22: return 6;
    case 0x08: case 0x14: return 7;
    default: return 2;
  }
}
static_assert(error_class(0x00) == 0 && error_class(0x0D) == 0 && error_class(0x3F) == 1);
static_assert(error_class(0x38) == 3 && error_class(0x19) == 4 && error_class(0x30) == 5);
static_assert(error_class(0x22) == 6 && error_class(0x14) == 7 && error_class(0x08) == 7);
static_assert(error_class(0x40) == 2 && error_class(0xFF) == 2 && error_class(0x01) == 2);

}  // namespace

KALVOR_API uint8_t KALVOR_CALL getscannerprofile(uint32_t scanner) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return 0;
  const char* file = g_library.profileFileName;
  char section[12];
  snprintf(section, sizeof section, "%u", static_cast<unsigned>(scanner));

  char master[256], slave[256];
  platform::profile_string(file, section, "MasterName", "", master, sizeof master);
  platform::profile_string(file, section, "SlaveName", "", slave, sizeof slave);
  store(rec, record::signal, static_cast<uint8_t>(platform::profile_int(file, section, "Signal", 2)));

  // Rows R, G, B; the default is 1.0 on the diagonal of the first three channels.
  static const char kComponents[3] = {'R', 'G', 'B'};
  for (uint32_t row = 0; row < 3; ++row) {
    for (uint32_t n = 0; n < 6; ++n) {
      char key[8], text[256];
      snprintf(key, sizeof key, "C%uTo%c", static_cast<unsigned>(n), kComponents[row]);
      platform::profile_string(file, section, key, n == row ? "1.0" : "0.0", text, sizeof text);
      store(rec, record::colourMatrix.at(6 * row + n), text_to_double(text));
    }
  }

  if (!master[0] || !slave[0]) return 0;
  setsendname(scanner, master);
  setreceivename(scanner, slave);
  return 1;
}

KALVOR_API void KALVOR_CALL setsendname(uint32_t scanner, const char* name) {
  set_name(scanner, record::sendName, name);
}

KALVOR_API void KALVOR_CALL setreceivename(uint32_t scanner, const char* name) {
  set_name(scanner, record::receiveName, name);
}

KALVOR_API void KALVOR_CALL getsendname(uint32_t scanner, char* destination) {
  get_name(scanner, record::sendName, destination);
}

KALVOR_API void KALVOR_CALL getreceivename(uint32_t scanner, char* destination) {
  get_name(scanner, record::receiveName, destination);
}

KALVOR_API void KALVOR_CALL setnetworkdebug(uint32_t scanner, uint8_t value) {
  if (uint8_t* rec = scanner_record(scanner)) store(rec, record::networkDebug, value);
}

KALVOR_API uint8_t KALVOR_CALL getlasterror(uint32_t scanner) {
  const uint8_t* rec = scanner_record(scanner);
  return rec ? error_class(load(rec, record::lastError)) : 0;
}

KALVOR_API uint32_t KALVOR_CALL displayprint(uint32_t value) {
  return g_transport.print ? g_transport.print(value) : 0;
}

KALVOR_API void KALVOR_CALL DumpAdapterStatus(void) {}
