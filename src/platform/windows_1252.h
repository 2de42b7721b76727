// Windows-1252, the code page Windows programs in Western Europe and the
// Americas read and write text in: what a profile file in UTF-8 or UTF-16
// becomes when a program reads it through the byte-string profile functions.
#pragma once

#include <cstdint>

namespace kalvor::platform {

// The character a Windows-1252 byte stands for. The five bytes the code page
// leaves undefined stand for the control characters of the same number.
char16_t from_windows_1252(uint8_t byte);

// The byte Windows writes for a UTF-16 code unit: the code page's own byte,
// else the nearest look-alike Windows picks (A for A with macron, 0 for a
// full-width 0), else '?'. A surrogate, alone or in a pair, gives '?'.
uint8_t to_windows_1252(char16_t unit);

}  // namespace kalvor::platform
