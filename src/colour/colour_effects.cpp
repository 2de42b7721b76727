// Track colour effects: the colour fields of a track, set one track at a time
// or through a track mask, and three colour commands sent at once (sparkle,
// equalize, dynamic intensity).
#include <algorithm>

#include "core/opcodes.h"
#include "core/transport.h"
#include "kalvor/kalvor.h"
#include "state/masked.h"

using namespace kalvor;

// ---- immediate setters ---------------------------------------------------------

#define KALVOR_COLOUR_SETTERS(X)       \
  X(displaycolor, uint8_t, color)      \
  X(displayrgbcolor, double, rgbColor) \
  X(displaycolorshift, double, colorShift)

KALVOR_COLOUR_SETTERS(KALVOR_TRACK_SETTER)

// The absolute counterpart of DisplayIntensity: stores the value limited to
// 0..1 (NaN is stored unchanged).
KALVOR_API void KALVOR_CALL displayintensity(uint32_t scanner, uint16_t t, double value) {
  set_track(scanner, t, track::intensity, limit(value, 0.0, 1.0));
}

KALVOR_API void KALVOR_CALL displaysparkling(uint32_t scanner, uint16_t t, uint16_t first, uint8_t second) {
  set_track(scanner, t, track::sparkling1, first, track::sparkling2, second);
}

// ---- masked exports ------------------------------------------------------------

// Factors multiply the field after the value is limited to 0..1 (0..2 for
// hue, saturation and lightness); the hot spot is replaced, limited to 0..3.
#define KALVOR_COLOUR_MASKED(X)                                \
  X(DisplayIntensity, MultiplyLimited<1>, intensity)           \
  X(TDisplayIntensity, MultiplyLimited<1>, intensity)          \
  X(DisplayRotR, MultiplyLimited<1>, rotR)                     \
  X(DisplayRotG, MultiplyLimited<1>, rotG)                     \
  X(DisplayRotB, MultiplyLimited<1>, rotB)                     \
  X(DisplayCenterRecolorR, MultiplyLimited<1>, centerRecolorR) \
  X(DisplayCenterRecolorG, MultiplyLimited<1>, centerRecolorG) \
  X(DisplayCenterRecolorB, MultiplyLimited<1>, centerRecolorB) \
  X(DisplayHue, MultiplyLimited<2>, hue)                       \
  X(DisplaySaturation, MultiplyLimited<2>, saturation)         \
  X(DisplayLightness, MultiplyLimited<2>, lightness)           \
  X(DisplayHotSpot, ReplaceLimited<3>, hotSpot)

KALVOR_COLOUR_MASKED(KALVOR_MASKED_TRACK_1)

namespace {

// The four parameters and two bytes of one colour channel.
struct Channel {
  Field<double> params[4];
  Field<uint8_t> bytes[2];
};

constexpr Channel kRed{{track::rParam1, track::rParam2, track::rParam3, track::rParam4},
                       {track::rByte1, track::rByte2}};
constexpr Channel kGreen{{track::gParam1, track::gParam2, track::gParam3, track::gParam4},
                         {track::gByte1, track::gByte2}};
constexpr Channel kBlue{{track::bParam1, track::bParam2, track::bParam3, track::bParam4},
                        {track::bByte1, track::bByte2}};

void set_channel(const Channel& c, uint32_t scanner, uint32_t trackMask, double p1, double p2, double p3,
                 double p4, uint8_t b1, uint8_t b2) {
  for_each_track(scanner, trackMask, [&](uint8_t* tr) {
    store_all(tr, c.params[0], p1, c.params[1], p2, c.params[2], p3, c.params[3], p4, c.bytes[0], b1, c.bytes[1],
              b2);
  });
}

// Three words at offsets 1, 3 and 5 of a command.
void store_words(uint8_t* cmd, uint16_t w1, uint16_t w2, uint16_t w3) {
  store_le<uint16_t>(cmd + 1, w1);
  store_le<uint16_t>(cmd + 3, w2);
  store_le<uint16_t>(cmd + 5, w3);
}

}  // namespace

// DisplayR, DisplayG, DisplayB: parameters and bytes stored unchanged.
#define KALVOR_CHANNEL_EXPORT(name, channel)                                                              \
  KALVOR_API void KALVOR_CALL name(uint32_t scanner, uint32_t trackMask, double p1, double p2, double p3, \
                                   double p4, uint8_t b1, uint8_t b2) {                                   \
    set_channel(channel, scanner, trackMask, p1, p2, p3, p4, b1, b2);                                     \
  }
KALVOR_CHANNEL_EXPORT(DisplayR, kRed)
KALVOR_CHANNEL_EXPORT(DisplayG, kGreen)
KALVOR_CHANNEL_EXPORT(DisplayB, kBlue)

// ---- commands ------------------------------------------------------------------

KALVOR_API void KALVOR_CALL displaysparkle(uint32_t scanner, uint16_t w1, uint16_t w2, uint16_t w3, double level) {
  uint8_t cmd[8] = {op(Opcode::Sparkle)};
  store_words(cmd, w1, w2, w3);
  cmd[7] = trunc_low8(limit(level, 0.0, 1.0) * 15.0);  // 0..15; NaN gives 0
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displayequalize(uint32_t scanner, uint16_t w1, uint16_t w2, uint16_t w3) {
  uint8_t cmd[7] = {op(Opcode::Equalize)};
  store_words(cmd, w1, w2, w3);
  send(scanner, cmd);
}

// b2, b4 and b5 are capped at 15 and the two words raised to at least 100;
// b1 and b3 go out unchanged.
KALVOR_API void KALVOR_CALL displaydynamicint(uint32_t scanner, uint8_t b1, uint8_t b2, uint8_t b3, uint8_t b4,
                                              uint8_t b5, uint16_t w1, uint16_t w2) {
  uint8_t cmd[10] = {op(Opcode::DynamicIntensity), b1, std::min<uint8_t>(b2, 15), b3, std::min<uint8_t>(b4, 15),
                     std::min<uint8_t>(b5, 15)};
  store_le<uint16_t>(cmd + 6, std::max<uint16_t>(w1, 100));
  store_le<uint16_t>(cmd + 8, std::max<uint16_t>(w2, 100));
  send(scanner, cmd);
}
