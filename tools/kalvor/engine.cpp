// The picture goes to a scanner of its own, is shown on track 0 with the
// transform in slot 0, and the full preview is read
// back: what the projector draws, dark travel points included.
#include "engine.h"

#include <algorithm>

#include "kalvor/kalvor.h"

namespace cli {
namespace {

constexpr uint32_t kScanner = 2;  // scanner 1 holds the show's pictures
constexpr uint16_t kPicture = 1;

Picture draw(const Picture& picture, const Transform& t) {
  size_t count = std::min<size_t>(picture.points.size(), 8192);
  for (size_t i = 0; i < count; ++i) {
    const Point& p = picture.points[i];
    const Rgb& c = p.rgb;  // the colour it is drawn in
    DisplaySetPicPoint(kScanner, static_cast<uint16_t>(i), static_cast<uint16_t>(p.x), static_cast<uint16_t>(p.y),
                       static_cast<uint16_t>(p.z), p.status, p.repeat, c.r, c.g, c.b);
  }
  displaysetpic(kScanner, kPicture, static_cast<uint16_t>(count));
  displayinittrack(kScanner);
  displayframe(kScanner, 0, kPicture);
  displayangz(kScanner, 0, 0, t.rotate);
  displayscale(kScanner, 0, 0, t.scale, t.scale, t.scale);
  displayupdate(kScanner);

  Picture out;
  uint16_t n = 0;
  displaygetfullpreviewbuffercnt(kScanner, &n);
  for (uint16_t i = 0; i < n; ++i) {
    int32_t x = 0, y = 0;
    Point p{};
    displaygetfullpreviewbuffervector(kScanner, i, &x, &y, &p.status, &p.rgb.r, &p.rgb.g, &p.rgb.b);
    // Points beyond the field are dark; drawing holds them at its edge.
    p.x = static_cast<int16_t>(std::clamp(x, -32768, 32767));
    p.y = static_cast<int16_t>(std::clamp(y, -32768, 32767));
    out.points.push_back(p);
  }
  return out;
}

}  // namespace

void transform_pictures(Show& show, const std::vector<size_t>& numbers, const Transform& transform) {
  for (size_t number : numbers) show.pictures[number - 1] = draw(show.pictures[number - 1], transform);
}

}  // namespace cli
