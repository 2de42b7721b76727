// Turning a rendered frame into the message the page draws.
#include "frames.h"

#include <algorithm>

#include "core/bytes.h"

namespace kalvor::preview {
namespace {

// Frame coordinates are not held to 16 bits; the field's edge is.
int16_t held(int32_t v) { return static_cast<int16_t>(std::clamp<int32_t>(v, -32768, 32767)); }

}  // namespace

size_t encode(uint32_t number, const projector::Scanner& scanner, uint8_t* out) {
  const projector::Frame& frame = scanner.frame;
  uint32_t count = std::min(frame.count, projector::kMaxFramePoints);
  out[message::version] = message::kVersion;
  out[message::scanner] = static_cast<uint8_t>(number);
  out[message::flags] = scanner.lit() ? kLit : 0;
  out[message::flags + 1] = 0;
  store_le<uint32_t>(out + message::serial, scanner.frameSerial);
  store_le<uint32_t>(out + message::count, count);
  store_le<uint32_t>(out + message::pointRate, scanner.pointRate);
  uint8_t* at = out + message::header;
  for (uint32_t i = 0; i < count; ++i, at += message::point) {
    const projector::FramePoint& p = frame.points[i];
    store_le<int16_t>(at + message::x, held(p.x));
    store_le<int16_t>(at + message::y, held(p.y));
    at[message::rgb] = p.channels[0];
    at[message::rgb + 1] = p.channels[1];
    at[message::rgb + 2] = p.channels[2];
    at[message::pointFlags] = p.blanked() ? kBlanked : 0;
  }
  return message::header + message::point * count;
}

}  // namespace kalvor::preview
