// The render pipeline: the frame a scanner draws for the tracks of its last
// track upload. The upload is read through the track layout and only within
// the bytes received. Each track's geometry is one matrix per frame (and a
// perspective divide when the track has a viewer), so the per-point work is
// the same whatever the number of slots. Nothing is allocated per frame.
#include <algorithm>
#include <cmath>

#include "core/convert.h"
#include "pipeline.h"

namespace kalvor::projector {
namespace {

// A picture point as the pipeline reads it.
struct Source {
  double x, y, z;
  uint8_t rgb[3];
  uint8_t status, repeat;
};

Source read_point(const uint8_t* p) {
  return {double(load(p, point::x)),
          double(load(p, point::y)),
          double(load(p, point::z)),
          {load(p, point::red), load(p, point::green), load(p, point::blue)},
          load(p, point::statusByte),
          static_cast<uint8_t>(load(p, point::repeatByte) & 15)};
}

// The points a track draws: its picture, or the picture morphed toward the
// morph picture. A morph has as many points as the nearer of the two
// pictures; point i pairs the points at the same fraction i / count of both
// lists, and takes its blanking and repeat from the nearer picture.
struct Points {
  const uint8_t* a = nullptr;
  uint32_t na = 0;
  const uint8_t* b = nullptr;  // null when not morphing
  uint32_t nb = 0;
  double amount = 0;
  uint32_t count = 0;

  Source at(uint32_t i) const {
    if (!b) return read_point(a + i * point::size);
    Source p = read_point(a + uint64_t{i} * na / count * point::size);
    Source q = read_point(b + uint64_t{i} * nb / count * point::size);
    Source m = amount < 0.5 ? p : q;
    m.x = p.x + (q.x - p.x) * amount;
    m.y = p.y + (q.y - p.y) * amount;
    m.z = p.z + (q.z - p.z) * amount;
    for (int j = 0; j < 3; ++j) m.rgb[j] = static_cast<uint8_t>(p.rgb[j] + (q.rgb[j] - p.rgb[j]) * amount);
    return m;
  }
};

const std::vector<uint8_t>* find_picture(const Scanner& s, uint16_t number) {
  if (number == 0) return nullptr;
  auto it = s.pictures.find(number);
  return it == s.pictures.end() ? nullptr : &it->second;
}

bool track_points(const Scanner& s, const uint8_t* t, Points& pts) {
  const std::vector<uint8_t>* a = find_picture(s, load(t, track::pictureNumber));
  if (!a) return false;
  pts.a = a->data(), pts.na = static_cast<uint32_t>(a->size() / point::size), pts.count = pts.na;
  double amount = load(t, track::morph);
  amount = std::isfinite(amount) ? std::clamp(amount, 0.0, 1.0) : 0.0;
  const std::vector<uint8_t>* b = find_picture(s, load(t, track::morphPicture));
  if (b && amount > 0) {
    pts.b = b->data(), pts.nb = static_cast<uint32_t>(b->size() / point::size), pts.amount = amount;
    pts.count = amount < 0.5 ? pts.na : pts.nb;
  }
  return true;
}

// Scan limits: the part of the point list drawn, as fractions 0..1 of it.
void scan_range(const uint8_t* t, uint32_t count, uint32_t& first, uint32_t& end) {
  auto at = [count](double f, double otherwise) {
    f = std::isfinite(f) ? std::clamp(f, 0.0, 1.0) : otherwise;
    return static_cast<uint32_t>(f * count);
  };
  first = at(load(t, track::scanLimitLow), 0);
  end = at(load(t, track::scanLimitHigh), 1);
}

// To the nearest unit, halves upward, held to the 32-bit range; a value that
// is not a number gives the range's low end.
int32_t nearest(double v) {
  v = std::max(-2147483648.0, v);  // a NaN gives the low end
  v = std::min(2147483647.0, v);
  return static_cast<int32_t>(static_cast<int64_t>(v + 2147483648.5) - INT64_C(2147483648));
}

// Points that are known to land within +-2^30 are rounded the same way with
// the bias folded into the matrix: one conversion and one subtraction.
constexpr double kBias = 1073741824.0;

// The clip box in field coordinates; the edges may be given either way round.
struct Box {
  double x1, x2, y1, y2, z1, z2;
  bool holds(double x, double y, double z) const {
    return (x >= x1) & (x <= x2) & (y >= y1) & (y <= y2) & (z >= z1) & (z <= z2);  // no branch per edge
  }
};

Box clip_box(const uint8_t* t) {
  auto edge = [](uint16_t v) { return double(v) - 32768.0; };
  uint16_t x1 = load(t, track::clipX1), x2 = load(t, track::clipX2);
  uint16_t y1 = load(t, track::clipY1), y2 = load(t, track::clipY2);
  int32_t z1 = load(t, track::clipZ1), z2 = load(t, track::clipZ2);
  return {edge(std::min(x1, x2)), edge(std::max(x1, x2)), edge(std::min(y1, y2)),
          edge(std::max(y1, y2)), double(std::min(z1, z2)), double(std::max(z1, z2))};
}

// Appends points to the frame, with a blanked travel point before the first
// point of each pass over a picture when that point is drawn.
struct Writer {
  Frame& frame;
  bool full() const { return frame.count >= kMaxFramePoints; }
  void put(const FramePoint& p, bool first) {
    if (first && !p.blanked()) {
      FramePoint travel{p.x, p.y, p.z, {}, static_cast<uint8_t>(p.status | 0x40), 0};
      frame.points[frame.count++] = travel;
      if (full()) return;
    }
    frame.points[frame.count++] = p;
  }
};

// What one pass over a track's points needs, fixed for the pass.
struct Pass {
  const Points& pts;
  const double* m;
  const Perspective& view;
  const Copy& copy;
  const Box& box;
  const Geonet& net;
  const Colour& colour;
};

// How much of the pipeline a pass needs. kInside is the common case: no
// morph, no perspective, no geometry net, the points' own colours and every
// point inside the clip box; the compiler then leaves every other stage out.
enum Mode { kEverything, kInside };

template <Mode M>
[[gnu::always_inline]] inline FramePoint draw_point(const Pass& pass, uint32_t i, bool& outsideBefore) {
  const double* m = pass.m;
  FramePoint f;
  if constexpr (M == kInside) {
    // The matrix holds the bias: x + 2^30 + 0.5 is positive, so truncating
    // it rounds x to the nearest unit as nearest() does. The colour, status
    // and repeat go over as one 8-byte word.
    const uint8_t* r = pass.pts.a + i * point::size;
    double px = load(r, point::x), py = load(r, point::y), pz = load(r, point::z);
    f.x = static_cast<int32_t>(m[0] * px + m[1] * py + m[2] * pz + m[3]) - static_cast<int32_t>(kBias);
    f.y = static_cast<int32_t>(m[4] * px + m[5] * py + m[6] * pz + m[7]) - static_cast<int32_t>(kBias);
    f.z = static_cast<int32_t>(m[8] * px + m[9] * py + m[10] * pz + m[11]) - static_cast<int32_t>(kBias);
    uint32_t tail = load_le<uint32_t>(r + point::repeatByte.offset);  // repeat, red, green, blue
    uint64_t word = (tail >> 8) | uint64_t{load(r, point::statusByte)} << 48 | uint64_t{tail & 15} << 56;
    store_le<uint64_t>(f.channels, word);
    return f;
  }
  Source p = pass.pts.at(i);
  double x = m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3];
  double y = m[4] * p.x + m[5] * p.y + m[6] * p.z + m[7];
  double z = m[8] * p.x + m[9] * p.y + m[10] * p.z + m[11];
  f.channels[0] = p.rgb[0], f.channels[1] = p.rgb[1], f.channels[2] = p.rgb[2];
  f.channels[3] = f.channels[4] = f.channels[5] = 0;
  f.repeat = p.repeat;
  bool behind = false;
  if (pass.view.on) {
    const Perspective& v = pass.view;
    double w = v.d + z;
    behind = !(w > 0);  // at or behind the viewer: left where it is, and dark
    if (!behind) {
      double k = v.d / w;
      x = v.x + (x - v.x) * k;
      y = v.y + (y - v.y) * k;
    }
    const Copy& c = pass.copy;
    double cx = c.a * x + c.b * y + c.c;
    y = c.d * x + c.e * y + c.f;
    x = cx;
  }
  // A segment is drawn only when both its ends lie in the clip box.
  bool outside = behind | !pass.box.holds(x, y, z);
  f.status = p.status | ((outside | outsideBefore) ? 0x40 : 0);
  outsideBefore = outside;
  if (pass.net.active) pass.net.correct(x, y, z);
  if (!pass.colour.identity) pass.colour.apply(p.rgb, p.status, x, y, z, f.channels);
  f.x = nearest(x), f.y = nearest(y), f.z = nearest(z);
  return f;
}

// The points first..end-1 of a pass: the first through the writer, which
// adds its travel point, the rest straight into the room left.
template <Mode M>
void draw_pass(const Pass& pass, uint32_t first, uint32_t end, Writer& out) {
  if (first >= end || out.full()) return;
  bool outsideBefore = false;
  out.put(draw_point<M>(pass, first, outsideBefore), true);
  Frame& frame = out.frame;
  end = std::min(end, first + 1 + (kMaxFramePoints - frame.count));
  FramePoint* next = frame.points.data() + frame.count;  // the count stays in a register
  for (uint32_t i = first + 1; i < end; ++i) *next++ = draw_point<M>(pass, i, outsideBefore);
  frame.count = static_cast<uint32_t>(next - frame.points.data());
}

// True when the matrix takes every corner of the picture's bounds, and so
// every point, into the clip box, well within +-2^30.
bool stays_inside(const Matrix& mm, const Bounds& b, const Box& box) {
  if (box.z1 < -kBias / 2 || box.z2 > kBias / 2) return false;
  const double* m = mm.m;
  for (int c = 0; c < 8; ++c) {
    double px = (c & 1 ? b.hi : b.lo)[0], py = (c & 2 ? b.hi : b.lo)[1], pz = (c & 4 ? b.hi : b.lo)[2];
    double x = m[0] * px + m[1] * py + m[2] * pz + m[3];
    double y = m[4] * px + m[5] * py + m[6] * pz + m[7];
    double z = m[8] * px + m[9] * py + m[10] * pz + m[11];
    if (!box.holds(x, y, z)) return false;
  }
  return true;
}

void draw_track(const Scanner& s, const uint8_t* t, uint32_t slots, const Geonet& net, Writer& out) {
  Points pts;
  if (!track_points(s, t, pts)) return;
  uint32_t first, end;
  scan_range(t, pts.count, first, end);
  auto world = s.worlds.find(load(t, track::world));
  const Matrix base = track_matrix(t, slots, world == s.worlds.end() ? World{} : world->second);
  if (!base.finite()) return;  // a track whose geometry is not a number draws nothing
  const Perspective view = track_perspective(t);
  const Colour colour = track_colour(t, s);
  const Box box = clip_box(t);
  auto bounds = s.bounds.find(load(t, track::pictureNumber));
  const bool simple = !pts.b && !view.on && !net.active && colour.identity && bounds != s.bounds.end();

  for (uint32_t k = 0, copies = prism_copies(t); k <= copies; ++k) {
    const Copy copy = prism_copy(t, k);
    Matrix m = view.on ? base : with_copy(base, copy);
    if (simple && stays_inside(m, bounds->second, box)) {
      for (int r = 0; r < 3; ++r) m.m[4 * r + 3] += kBias + 0.5;
      draw_pass<kInside>({pts, m.m, view, copy, box, net, colour}, first, end, out);
    } else {
      draw_pass<kEverything>({pts, m.m, view, copy, box, net, colour}, first, end, out);
    }
  }
}

}  // namespace

// Every track of the upload in track order, each through the whole pipeline.
void render_tracks(Scanner& s) {
  s.frame.count = 0;
  const uint8_t* upload = s.upload.data();
  uint32_t length = s.uploadLength;
  if (length < 3) return;
  Geonet net;
  prepare_geonet(s, net);
  Writer out{s.frame};
  uint32_t tracks = load_le<uint16_t>(upload + 1), at = 3;
  for (uint32_t t = 0; t < tracks && at + track::slotsOffset <= length; ++t) {
    const uint8_t* rec = upload + at;
    uint32_t slots = std::min<uint32_t>(load(rec, track::slotCount), track::slotsPerTrack);
    at += track::upload_size(slots);
    if (at > length) break;
    draw_track(s, rec, slots, net, out);
  }
}

}  // namespace kalvor::projector
