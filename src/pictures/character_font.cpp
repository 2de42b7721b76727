// DisplayCharToFont: the file name of a character's glyph picture.
#include <cstring>

#include "kalvor/kalvor.h"

namespace {

struct Glyph {
  uint8_t character;
  const char* name;
};

// Characters whose glyph has a name of its own. The umlauts are named by the
// Windows-1252 byte of the small letter.
constexpr Glyph kGlyphs[] = {
    {0x20, "space"},      {0x21, "exclaim"},    {0x22, "quotati"},    {0x23, "doublec"},
    {0x24, "dollar"},     {0x25, "percent"},    {0x26, "and"},        {0x28, "bracket2_l"},
    {0x29, "bracket2_r"}, {0x2A, "asteris"},    {0x2B, "plus"},       {0x2C, "comma"},
    {0x2D, "minus"},      {0x2E, "fullsto"},    {0x2F, "slash"},      {0x3A, "colon"},
    {0x3B, "semicol"},    {0x3C, "less"},       {0x3D, "equal"},      {0x3E, "greater"},
    {0x3F, "questio"},    {0x40, "joker"},      {0x5B, "bracket3_l"}, {0x5D, "bracket3_r"},
    {0x5E, "roof"},       {0x5F, "underli"},    {0x7B, "bracket_l"},  {0x7C, "or"},
    {0x7D, "bracket_r"},  {0x7E, "snake"},      {0xC4, "up_\xE4"},    {0xD6, "up_\xF6"},
    {0xDC, "up_\xFC"},    {0xDF, "lo_\xDF"},    {0xE4, "lo_\xE4"},    {0xF6, "lo_\xF6"},
    {0xFC, "lo_\xFC"},
};

}  // namespace

KALVOR_API void KALVOR_CALL DisplayCharToFont(uint8_t character, char* text) {
  if (!text) return;
  char* end = text + strlen(text);
  auto append = [&](const char* s) {
    size_t n = strlen(s);
    memcpy(end, s, n);
    end += n;
  };
  append("#");
  const char* name = nullptr;
  for (const Glyph& g : kGlyphs)
    if (g.character == character) name = g.name;
  if (name) {
    append(name);
  } else if (character >= 'a' && character <= 'z') {
    append("lo_");
  } else if (character >= 'A' && character <= 'Z') {
    append("up_");
  }
  if (!name && character != 0) *end++ = static_cast<char>(character);
  append(".pic");
  *end = 0;
}
