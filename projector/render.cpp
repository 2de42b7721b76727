// The render pipeline: the frame a scanner draws for the tracks of its last
// track upload. The upload is read through the track layout and only within
// the bytes received.
#include <algorithm>

#include "core/convert.h"
#include "projector.h"

namespace kalvor::projector {
namespace {

FramePoint frame_point(const uint8_t* p, double sizeX, double sizeY, int32_t shiftX, int32_t shiftY) {
  FramePoint f{};
  f.x = trunc_to_i32(load(p, point::x) * sizeX + shiftX);
  f.y = trunc_to_i32(load(p, point::y) * sizeY + shiftY);
  f.z = load(p, point::z);
  f.channels[0] = load(p, point::red);
  f.channels[1] = load(p, point::green);
  f.channels[2] = load(p, point::blue);
  f.status = load(p, point::statusByte);
  f.repeat = load(p, point::repeatByte) & 15;
  return f;
}

}  // namespace

// The picture of every active track, scaled by the track's size and moved by its shift.
void render_tracks(Scanner& s) {
  s.frame.count = 0;
  const uint8_t* upload = s.upload.data();
  uint32_t length = s.uploadLength;
  if (length < 3) return;
  uint32_t tracks = load_le<uint16_t>(upload + 1), at = 3;
  for (uint32_t t = 0; t < tracks && at + track::slotsOffset <= length; ++t) {
    const uint8_t* rec = upload + at;
    at += track::upload_size(std::min<uint32_t>(load(rec, track::slotCount), track::slotsPerTrack));
    if (at > length) break;
    uint16_t number = load(rec, track::pictureNumber);
    auto it = s.pictures.find(number);
    if (number == 0 || it == s.pictures.end()) continue;
    double sx = load(rec, track::sizeX), sy = load(rec, track::sizeY);
    int32_t dx = load(rec, track::shiftX), dy = load(rec, track::shiftY);
    for (size_t k = 0; k < it->second.size() && s.frame.count < kMaxFramePoints; k += point::size)
      s.frame.points[s.frame.count++] = frame_point(it->second.data() + k, sx, sy, dx, dy);
  }
}

}  // namespace kalvor::projector
