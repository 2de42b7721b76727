// The projector engine: rendering a 16,000-point frame of 32 tracks with 8
// slots each, against the floor of one 3x4 matrix over the same points.
#include <cmath>
#include <cstring>

#include "projector/projector.h"
#include "support.h"

namespace {

using namespace kalvor;
using namespace kalvor::projector;

constexpr uint32_t kTracks = 32, kSlots = 8;
constexpr uint32_t kPointsPerTrack = kMaxFramePoints / kTracks;  // 500

Projector g_projector;  // static: the engine holds every scanner's frame

// One picture of 500 points on a circle, starting dark so that the frame has
// no travel points, and a track upload of 32 tracks of 8 turned, moved and
// scaled slots showing it.
void load(uint32_t scanner) {
  Scanner& s = *g_projector.scanner(scanner);
  std::vector<uint8_t> picture(picture::pointsOffset + kPointsPerTrack * point::size);
  store(picture.data(), picture::pictureNumber, uint16_t(1));
  store(picture.data(), picture::pointCount, uint16_t(kPointsPerTrack));
  for (uint32_t i = 0; i < kPointsPerTrack; ++i) {
    uint8_t* p = picture.data() + picture::pointsOffset + i * point::size;
    double a = 2 * 3.14159265358979 * i / kPointsPerTrack;
    store(p, point::x, static_cast<int16_t>(20000 * std::cos(a)));
    store(p, point::y, static_cast<int16_t>(20000 * std::sin(a)));
    store(p, point::statusByte, uint8_t(i == 0 ? 0xC0 : 0x80));
    store(p, point::red, uint8_t(255));
  }
  g_projector.command(scanner, picture.data(), static_cast<uint32_t>(picture.size()), nullptr);

  uint8_t* u = s.upload.data();
  store_le<uint8_t>(u, 0x01);
  store_le<uint16_t>(u + 1, kTracks);
  for (uint32_t t = 0; t < kTracks; ++t) {
    uint8_t* r = u + 3 + t * track::size;
    std::memset(r, 0, track::size);
    store(r, track::pictureNumber, uint16_t(1));
    for (auto f : {track::sizeX, track::sizeY, track::intensity, track::rotR, track::rotG, track::rotB,
                   track::centerRecolorR, track::centerRecolorG, track::centerRecolorB, track::hue,
                   track::saturation, track::lightness, track::scanLimitHigh})
      store(r, f, 1.0);
    store(r, track::rotationOrder, uint8_t(3));
    store(r, track::clipX2, uint16_t(65535));
    store(r, track::clipY2, uint16_t(65535));
    store(r, track::clipZ1, -131070);
    store(r, track::clipZ2, 131070);
    store(r, track::worldAngleZ, 10.0 * t);
    store(r, track::slotCount, uint8_t(kSlots));
    for (uint32_t k = 0; k < kSlots; ++k) {
      uint8_t* sl = r + track::slotsOffset + k * slot::size;
      store(sl, slot::angleX, 3.0 * k), store(sl, slot::angleY, 2.0 * k), store(sl, slot::angleZ, 5.0 * k + t);
      store(sl, slot::pivotX, int32_t(100 * k)), store(sl, slot::postMoveY, int32_t(50 * k));
      store(sl, slot::scaleX, 0.95), store(sl, slot::scaleY, 0.97), store(sl, slot::scaleZ, 1.0);
    }
  }
  s.uploadLength = 3 + kTracks * track::size;
}

void render_frame(benchmark::State& state) {
  load(1);
  Scanner& s = *g_projector.scanner(1);
  uint64_t before = kb::allocations();
  for (auto _ : state) {
    g_projector.render(1);
    benchmark::ClobberMemory();
  }
  kb::report_allocations(state, before);
  if (s.frame.count != kMaxFramePoints) state.SkipWithError("the frame does not hold 16,000 points");
  state.SetItemsProcessed(state.iterations() * kMaxFramePoints);
}
BENCHMARK(render_frame);

// The floor: the same points through one 3x4 matrix into an output array.
void render_floor(benchmark::State& state) {
  load(2);
  Scanner& s = *g_projector.scanner(2);
  static Frame out;
  volatile double one = 1.0;
  double m[12] = {one, 0.1, 0, 5, -0.1, one, 0, 7, 0, 0, one, 0};
  const uint8_t* picture = s.pictures[1].data();
  Frame* escaped = &out;
  benchmark::DoNotOptimize(escaped);  // the frame is seen from outside: its stores must happen
  for (auto _ : state) {
    benchmark::DoNotOptimize(picture);  // the points may have changed: read them again
    uint32_t n = 0;
    for (uint32_t t = 0; t < kTracks; ++t)
      for (uint32_t i = 0; i < kPointsPerTrack; ++i, ++n) {
        const uint8_t* p = picture + i * point::size;
        double x = load(p, point::x), y = load(p, point::y), z = load(p, point::z);
        FramePoint& f = out.points[n];
        f.x = static_cast<int32_t>(m[0] * x + m[1] * y + m[2] * z + m[3]);
        f.y = static_cast<int32_t>(m[4] * x + m[5] * y + m[6] * z + m[7]);
        f.z = static_cast<int32_t>(m[8] * x + m[9] * y + m[10] * z + m[11]);
      }
    out.count = n;
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kMaxFramePoints);
}
BENCHMARK(render_floor);

const bool render_rows = (kb::compare("render, 16,000 points of 32 tracks x 8 slots", "render_frame", "render_floor",
                                      kb::Goal::within, 2),
                          true);

}  // namespace
