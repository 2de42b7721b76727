// LAS and FLX animation files.
#include "pictures_support.h"

using namespace kt;

namespace {

// An 11-byte LAS point: x at 1, y at 3, blank bit in byte 5, colour at 7.
Bytes las_point(uint16_t x, uint16_t y, uint8_t flags = 0, uint8_t colour = 0) {
  return concat({Bytes{0}, u16(x), u16(y), Bytes{flags, 0, colour, 0, 0, 0}});
}
// An 11-byte FLX point: x at 0, y at 2, state at 9.
Bytes flx_point(uint16_t x, uint16_t y, uint8_t state = 1) {
  return concat({u16(x), u16(y), Bytes(5, 0), Bytes{state, 0}});
}
// LAS file and picture headers hold their counts minus 1; a picture ends in
// two trailer bytes. An FLX file or picture is its count, 9 bytes, the body.
Bytes las(uint16_t pictures, const Bytes& body) { return concat({Bytes{0, 0}, u16(pictures - 1), body}); }
Bytes las_picture(uint16_t n, const Bytes& points) {
  return concat({Bytes{0, 0}, u16(n - 1), Bytes(4, 0), points, Bytes{0, 0}});
}
Bytes flx(uint16_t n, const Bytes& body) { return concat({u16(n), Bytes(9, 0), body}); }

std::vector<Picture> load_las(const Bytes& file, uint32_t start = 0) {
  return loaded(temp_path("a.las"), file, [=](const char* p) { displayimportlas(1, p, start); });
}
std::vector<Picture> load_flx(const Bytes& file, uint32_t start = 0) {
  return loaded(temp_path("a.flx"), file, [=](const char* p) { displayimportflx(1, p, start); });
}

}  // namespace

TEST_F(KalvorTest, LasAndFlxPointsAndNumbering) {
  // LAS: 12-bit coordinates centred on 2048, each point output twice.
  auto pics = load_las(las(2, concat({las_picture(2, concat({las_point(0, 2048), las_point(4095, 4096 + 100, 3, 200)})),
                                      las_picture(1, las_point(2048, 2048, 0, 63))})));
  EXPECT_EQ(numbers(pics), (Numbers{{0, 2}, {1, 1}}));
  EXPECT_EQ(pics[0].points, concat({white(-32768, 0, 0, 0x80, 1), white(32752, -31168, 0, 0xC8, 1)}));
  EXPECT_EQ(pics[1].points, white(0, 0, 0, 0xBF, 1));

  // A stored count of 65535 means no picture, and no point.
  EXPECT_EQ(load_las(las(0, las_picture(1, las_point(0, 0)))).size(), 0u);
  EXPECT_EQ(numbers(load_las(las(1, las_picture(0, {})), 65535)), (Numbers{{65535, 0}}));

  // FLX: unsigned coordinates centred on 32768; state 0 blanks, state 2 repeats twice.
  pics = load_flx(flx(3, concat({flx(3, concat({flx_point(0, 65535, 0), flx_point(32768, 1, 2), flx_point(1, 0)})),
                                 flx(0, {}), flx(1, flx_point(0, 0))})),
                  10);
  EXPECT_EQ(numbers(pics), (Numbers{{10, 3}, {11, 0}, {12, 1}}));
  EXPECT_EQ(pics[0].points,
            concat({white(-32768, 32767, 0, 0xC0), white(0, -32767, 0, 0x80, 2), white(-32767, -32768)}));
}

TEST_F(KalvorTest, MalformedLasAndFlxFilesStayInsideTheUploadBuffer) {
  // More than 8192 points: 8192 are kept and the next picture is read in step.
  auto pics = load_las(
      las(2, concat({las_picture(9000, times(9000, las_point(1, 1))), las_picture(1, las_point(2048, 2048, 1))})));
  EXPECT_EQ(numbers(pics), (Numbers{{0, 8192}, {1, 1}}));
  EXPECT_EQ(pics[1].points, white(0, 0, 0, 0xC0, 1));

  // A file that ends inside the points keeps the announced count; one that
  // ends inside a header stops there.
  Bytes two = flx(5, flx(2, times(2, flx_point(0, 0))));
  EXPECT_EQ(load_flx(head(two, two.size() - 3)).at(0).point(1), kMissing);
  for (size_t cut : {0, 3, 11, 15}) EXPECT_EQ(load_flx(head(two, cut)).size(), 0u) << cut;
  Bytes one = las(1, las_picture(1, las_point(0, 0)));
  for (size_t cut : {0, 3, 4, 9}) EXPECT_EQ(load_las(head(one, cut)).size(), 0u) << cut;

  rec.clear();
  displayimportlas(1, ::testing::TempDir().c_str(), 0);
  displayimportflx(1, temp_path("missing.flx").c_str(), 0);
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, LongLasAndFlxPicturesConvertEveryPointAlike) {
  // Long pictures are converted in groups and the rest one by one, straight
  // from the file's 64 KiB buffer; 6,100 points cross its end inside a record.
  // A fault in any path shows as a point that differs from its own record:
  // every field varies (bits above the 12 LAS ones, blank bits, colour index
  // bits, every FLX state).
  constexpr int kPoints = 6100;
  Bytes las_points, flx_points, want_las, want_flx;
  for (int i = 0; i < kPoints; ++i) {
    auto x = static_cast<uint16_t>(i * 40503u), y = static_cast<uint16_t>(i * 2654u + 7);
    auto flags = static_cast<uint8_t>(i * 37), colour = static_cast<uint8_t>(i * 11), state = static_cast<uint8_t>(i % 5);
    for (auto [to, from] : {std::pair{&las_points, las_point(x, y, flags, colour)}, {&flx_points, flx_point(x, y, state)}})
      to->insert(to->end(), from.begin(), from.end());
    auto lx = static_cast<int16_t>(((x & 0xFFF) - 2048) * 16), ly = static_cast<int16_t>(((y & 0xFFF) - 2048) * 16);
    Bytes l = white(lx, ly, 0, static_cast<uint8_t>(0x80 | (flags & 1) << 6 | (colour & 63)), 1);
    Bytes f = white(static_cast<int16_t>(x ^ 0x8000), static_cast<int16_t>(y ^ 0x8000), 0, state ? 0x80 : 0xC0,
                    state == 2 ? 2 : 0);
    want_las.insert(want_las.end(), l.begin(), l.end());
    want_flx.insert(want_flx.end(), f.begin(), f.end());
  }
  auto las_pics = load_las(las(2, concat({las_picture(kPoints, las_points), las_picture(kPoints, las_points)})));
  auto flx_pics = load_flx(flx(2, concat({flx(kPoints, flx_points), flx(kPoints, flx_points)})));
  ASSERT_EQ(las_pics.size(), 2u);
  ASSERT_EQ(flx_pics.size(), 2u);
  for (int k = 0; k < 2; ++k) {
    EXPECT_EQ(las_pics[k].points, want_las) << k;
    EXPECT_EQ(flx_pics[k].points, want_flx) << k;
  }
}
