// The projector engine seen through kalvor's exports: the host sets track and
// slot fields, calls displayupdate, and reads the frame the virtual scanner
// renders with the full-preview getters. Every expected number is worked by
// hand from the axis convention: x right, y down, z away from the viewer.
#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "points.h"

using namespace kt;

namespace {

constexpr uint8_t kDrawn = 0x80, kDark = 0xC0;

// Picture 1 on track 0 of scanner s, every field at its initial value.
void show(uint32_t s, const std::vector<Point>& picture) {
  upload(s, 1, picture);
  displayinittrack(s);
  displayframe(s, 0, 1);
}

struct Row {
  const char* what;
  std::function<void()> set;  // changes track 0 of scanner 1
  std::vector<Point> in;
  std::vector<Out> want;
};

// Each row: a picture through one setting; a dark first point needs no travel point.
void run(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    show(1, row.in);
    row.set();
    displayupdate(1);
    EXPECT_EQ(frame(1), row.want) << row.what;
  }
}

Point dark(int16_t x, int16_t y, int16_t z = 0) { return {x, y, z, kDark, 0, 9, 8, 7}; }
Out at(int32_t x, int32_t y) { return {x, y, kDark, 9, 8, 7}; }
Point lit(int16_t x, int16_t y, uint8_t r, uint8_t g, uint8_t b, int16_t z = 0, uint8_t status = kDrawn) {
  return {x, y, z, status, 0, r, g, b};
}

}  // namespace

class Projector : public VirtualTest {};

TEST_F(Projector, DefaultsGiveThePictureBackWithTravelOnlyBeforeADrawnStart) {
  const std::vector<Point> picture = {lit(-32768, 32767, 1, 2, 3, 5, kDark), lit(300, -400, 255, 0, 10),
                                      {32767, -32768, -9, 0x85, 0x12, 0, 0, 255}};  // repeat in the low 4 bits
  show(1, picture);
  displaypointrate(1, 1);  // 1,000 points per second
  displayinitgeonet(1);    // the even net moves nothing
  displayupdategeonet(1, 0);
  EXPECT_EQ(displayupdate(1), 5u);  // 1 + 1 + 3 points output: 5 ms
  EXPECT_EQ(frame(1), (std::vector<Out>{{-32768, 32767, kDark, 1, 2, 3},
                                        {300, -400, kDrawn, 255, 0, 10},
                                        {32767, -32768, 0x85, 0, 0, 255}}));
  // Each track that starts drawn gets one dark travel point to its start.
  show(1, {lit(0, 0, 255, 0, 0), lit(100, 0, 255, 0, 0)});
  upload(1, 2, {lit(500, 500, 0, 255, 0), lit(600, 500, 0, 255, 0)});
  displayframe(1, 3, 2);  // tracks 1 and 2 are sent but inactive
  displaypointrate(1, 2);
  EXPECT_EQ(displayupdate(1), 3u);  // 6 points at 2,000 per second
  EXPECT_EQ(frame(1), (std::vector<Out>{{0, 0, kDark, 0, 0, 0},
                                        {0, 0, kDrawn, 255, 0, 0},
                                        {100, 0, kDrawn, 255, 0, 0},
                                        {500, 500, kDark, 0, 0, 0},
                                        {500, 500, kDrawn, 0, 255, 0},
                                        {600, 500, kDrawn, 0, 255, 0}}));
}

TEST_F(Projector, EachTransformMovesAPointAsWorkedByHand) {
  run({
      {"slot turn of 90 degrees about z", [] { displayangz(1, 0, 0, 90); }, {dark(1000, 0)}, {at(0, 1000)}},
      {"slot turn of -330 degrees, rounded to the unit", [] { displayangz(1, 0, 0, -330); }, {dark(10000, 0)},
       {at(8660, 5000)}},
      {"slot turn of 120 degrees", [] { displayangz(1, 0, 0, 120); }, {dark(1000, 0)}, {at(-500, 866)}},
      {"turn about a pivot", [] { displayangz(1, 0, 0, 90), displaypivot(1, 0, 0, 1000, 0, 0); }, {dark(2000, 0)},
       {at(1000, 1000)}},
      {"pre-move is turned", [] { displayangz(1, 0, 0, 90), displaypre(1, 0, 0, 500, 0, 0); }, {dark(1000, 0)},
       {at(0, 1500)}},
      {"post-move is not", [] { displayangz(1, 0, 0, 90), displaypost(1, 0, 0, 500, 0, 0); }, {dark(1000, 0)},
       {at(500, 1000)}},
      {"slot scale", [] { displayscale(1, 0, 0, 2, 3, 1); }, {dark(100, 200)}, {at(200, 600)}},
      {"turn about x takes y into depth", [] { displayangx(1, 0, 0, 90); }, {dark(0, 1000)}, {at(0, 0)}},
      {"shear of x by y", [] { DisplayShearXByY(1, 1, 0, 0, 0.5); }, {dark(100, 200)}, {at(200, 200)}},
      {"track rotation", [] { DisplayRotateZ(1, 1, 0, 0, -0.25); }, {dark(1000, 0)}, {at(0, -1000)}},
      {"size", [] { displaysize(1, 0, 2.0, 0.5); }, {dark(100, 200)}, {at(200, 100)}},
      {"a size that is not a number draws nothing", [] { displaysize(1, 0, NAN, 1); }, {dark(100, 200)}, {}},
      {"shift", [] { DisplayShiftXY(1, 1, 0, 0, 0.25, -0.125); }, {dark(100, 200)}, {at(16483, -7991)}},
      {"world angles x then y (order 3)", [] { displayworldang(1, 0, 90, 90, 0); }, {dark(0, 1000)},
       {at(1000, 0)}},
      {"world angles z, y, x (order 0)", [] { displayworldang(1, 0, 90, 90, 0), displayrotationorder(1, 0, 0); },
       {dark(0, 1000)}, {at(0, 0)}},
      {"an order past the last is order 3", [] { displayworldang(1, 0, 90, 90, 0), displayrotationorder(1, 0, 7); },
       {dark(0, 1000)}, {at(1000, 0)}},
      {"world shift and size of the track's world",
       [] { displayworld(1, 0, 2), displayworldsetshiftsize(1, 2, 10, 20, 2.0, 3.0, 0, 0, 0, 0, 0); },
       {dark(100, 100)}, {at(210, 320)}},
      {"perspective halves a point as deep as the viewer is far", [] { DisplayViewZ(1, 1, 0, 0, 0.5); },
       {dark(1000, 2000, 32767)}, {at(500, 1000)}},
      {"a viewer on the other side sees the same", [] { DisplayViewZ(1, 1, 0, 0, -0.5); }, {dark(1000, 2000, 32767)},
       {at(500, 1000)}},
      {"scale, then turn, then move: a three-slot chain",
       [] { displayscale(1, 0, 0, 2, 2, 1), displayangz(1, 0, 1, 90), displaypost(1, 0, 2, 100, 0, 0); },
       {dark(10, 20)}, {at(60, 20)}},
  });
}

TEST_F(Projector, ClipBoxDarkensSegmentsWithAnEndOutsideWithoutMovingThem) {
  show(1, {dark(0, 0), lit(50, 0, 1, 1, 1), lit(200, 0, 1, 1, 1), lit(50, 50, 1, 1, 1), lit(0, 0, 1, 1, 1),
           lit(0, 0, 1, 1, 1, 200)});
  for (int edge : {-100, 100}) {  // the box's corners given either way round
    displayclip(1, 0, uint16_t(32768 + edge), uint16_t(32768 + edge), edge, uint16_t(32768 - edge),
                uint16_t(32768 - edge), -edge);
    displayupdate(1);
    std::vector<int> got;  // the status of each point, and the x of the one outside
    for (const Out& o : frame(1)) got.push_back(o.status);
    got.push_back(frame(1)[2].x);
    EXPECT_EQ(got, (std::vector<int>{kDark, kDrawn, kDark, kDark, kDrawn, kDark, 200})) << edge;
  }
}

TEST_F(Projector, ColourControlsAndPalette) {
  displaysetcolorbuffer(1, 0, 5, 10, 20, 30, 0, 0, 0);
  displaysetcolorbuffer(1, 0, 6, 40, 50, 60, 0, 0, 0);
  displayupdatepal(1, 0);
  const Point orange = lit(0, 0, 200, 100, 50, 500, kDark), red = lit(0, 0, 255, 0, 0, 0, kDark);
  const Point indexed = {0, 0, 0, kDark | 5, 0, 255, 255, 255};
  run({
      {"intensity halves, truncated", [] { displayintensity(1, 0, 0.5); }, {orange}, {{0, 0, kDark, 100, 50, 25}}},
      {"red factor", [] { DisplayRotR(1, 1, 0, 0, 0.5); }, {orange}, {{0, 0, kDark, 100, 100, 50}}},
      {"palette colour", [] { displayflags(1, 0, 1); }, {indexed}, {{0, 0, kDark | 5, 10, 20, 30}}},
      {"colour shift steps the index", [] { displayflags(1, 0, 1), displaycolorshift(1, 0, 1.0); }, {indexed},
       {{0, 0, kDark | 5, 40, 50, 60}}},
      {"hue turned half way round", [] { DisplayHue(1, 1, 0, 0, 2.0); }, {red}, {{0, 0, kDark, 0, 255, 255}}},
      {"lightness halved", [] { DisplayLightness(1, 1, 0, 0, 0.5); }, {red}, {{0, 0, kDark, 127, 0, 0}}},
      {"no saturation", [] { DisplaySaturation(1, 1, 0, 0, 0.0); }, {red}, {{0, 0, kDark, 127, 127, 127}}},
      {"centre recolour at the centre", [] { DisplayCenterRecolorR(1, 1, 0, 0, 0.0); }, {orange},
       {{0, 0, kDark, 0, 100, 50}}},
      {"depth cue a quarter of the way", [] { displaydepthcue(1, 0, 0, 1000); },
       {lit(0, 0, 200, 100, 50, 250, kDark)}, {{0, 0, kDark, 150, 75, 37}}},
      {"an intensity that is not a number is dark", [] { displayintensity(1, 0, NAN); }, {orange},
       {{0, 0, kDark, 0, 0, 0}}},
  });
}

TEST_F(Projector, MorphPrismScanLimitsAndGeometryNet) {
  upload(1, 2, {lit(0, 1000, 0, 0, 200), lit(1000, 1000, 0, 0, 200)});
  upload(1, 3, {dark(0, 0), dark(4, 4), dark(-1000, 4000), dark(4, 4)});
  const std::vector<Point> line = {dark(0, 0), lit(1000, 0, 200, 0, 0)};
  run({
      {"half way to a picture of as many points: blanking from the target", [] { displaymorphing(1, 0, 1, 2, 0.5); },
       line, {{0, 500, kDark, 0, 0, 0}, {0, 500, kDrawn, 4, 4, 103}, {1000, 500, kDrawn, 100, 0, 100}}},
      {"a quarter of the way to a longer picture pairs points at the same fraction",
       [] { displaymorphing(1, 0, 1, 3, 0.25); }, line, {at(0, 0), {500, 1000, kDrawn, 152, 2, 1}}},
      {"three quarters of the way has the longer picture's points", [] { displaymorphing(1, 0, 1, 3, 0.75); }, line,
       {at(0, 0), at(3, 3), {-500, 3000, kDark, 56, 6, 5}, {253, 3, kDark, 56, 6, 5}}},
      {"three prism copies turned by quarter turns", [] { DisplayPrism(1, 1, 3, 0, 0); }, line,
       {at(0, 0), {1000, 0, kDrawn, 200, 0, 0}, at(0, 0), {0, 1000, kDrawn, 200, 0, 0}, at(0, 0),
        {-1000, 0, kDrawn, 200, 0, 0}, at(0, 0), {0, -1000, kDrawn, 200, 0, 0}}},
      {"a row of two copies along x", [] { DisplayPrism(1, 1, 2, 0.5, 1); }, line,
       {at(0, 0), {1000, 0, kDrawn, 200, 0, 0}, at(2048, 0), {3048, 0, kDrawn, 200, 0, 0}, at(4096, 0),
        {5096, 0, kDrawn, 200, 0, 0}}},
      {"scan limits keep the second half", [] { displayscanlimits(1, 0, 0.5, 1.0); }, line,
       {{1000, 0, kDark, 0, 0, 0}, {1000, 0, kDrawn, 200, 0, 0}}},
      {"three tracks of 8,192 points: a frame never passes 16,000",
       [] { displayframe(1, 1, 1), displayframe(1, 2, 1); }, std::vector<Point>(8192, dark(1, 1)),
       std::vector<Out>(16000, at(1, 1))},
      // Last: the net belongs to the scanner, not to the track, and stays bent.
      {"a net point moved 1,000 units right pulls its neighbourhood",
       [] {
         displayinitgeonet(1);
         displaysetgeonet(1, 4, 4, 0.5 + 1000.0 / 65535, 0.5, 0);  // the centre point
         displayupdategeonet(1, 0);
       },
       {dark(0, 0), dark(4095, 0), dark(-20000, -20000)}, {at(1000, 0), at(4595, 0), at(-20000, -20000)}},
  });
}

TEST_F(Projector, TwentyScannersAreKeptApart) {
  for (uint32_t s = 1; s <= 20; ++s) {
    show(s, {dark(static_cast<int16_t>(s), 0)});
    displayangz(s, 0, 0, 90.0 * s);
  }
  const int32_t turned[4][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  for (uint32_t s = 1; s <= 20; ++s) {
    displayupdate(s);
    const int32_t* d = turned[s % 4];
    EXPECT_EQ(frame(s), std::vector<Out>{at(d[0] * int32_t(s), d[1] * int32_t(s))}) << s;
  }
}

#if !(defined(_WIN32) && !defined(_WIN64))  // 32-bit Windows decorates the __stdcall name
extern "C" uint32_t NetScanCommand(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply);

// Track uploads of random bytes (so angles, sizes and factors of every
// magnitude, infinities and NaNs among them) through a bent geometry net and
// a palette: the frame stays within 16,000 points and the answer within its
// area; the sanitizer stage checks that nothing on the way is undefined.
TEST_F(Projector, RandomTrackFieldsNeverBreakTheFrame) {
  upload(1, 1, {dark(0, 0), lit(1000, 0, 1, 2, 3), lit(-1000, 500, 4, 5, 6, 300)});
  upload(1, 2, {lit(7, 7, 9, 9, 9)});
  displayinitgeonet(1);
  displaysetgeonet(1, 4, 4, 0.6, 0.4, 0.1);
  displayupdategeonet(1, 0);
  displayupdatepal(1, 0);
  std::mt19937 random(7);
  Bytes command(3 + 32 * 1170), reply(176006 + 64, 0xAA);
  for (int round = 0; round < 100; ++round) {
    for (uint8_t& b : command) b = static_cast<uint8_t>(random());
    command[0] = 0x01, command[1] = 32, command[2] = 0;
    for (int t = 0; t < 32; ++t) {
      uint8_t* r = command.data() + 3 + 1170 * t;
      r[322] = 1 + (random() & 1), r[323] = 0, r[324] = 2, r[325] = 0;  // pictures 1 and 2 only
      r[497] = 8;                                                        // every slot, so the layout is fixed
    }
    NetScanCommand(1, command.data(), static_cast<uint32_t>(command.size()), reply.data());
    ASSERT_LE(le<uint16_t>(reply, 0), 16000) << round;
    ASSERT_EQ(reply[176006], 0xAA) << round;
  }
}
#endif
