// LAS and FLX animation files.
#include "pictures_support.h"

using namespace kt;

namespace {

Bytes u16(uint16_t v) { return le_bytes(v); }

// An 11-byte LAS point: x at 1, y at 3, blank bit in byte 5, colour at 7.
Bytes las_point(uint16_t x, uint16_t y, uint8_t flags, uint8_t colour) {
  return concat({Bytes{0}, u16(x), u16(y), Bytes{flags, 0, colour, 0, 0, 0}});
}
// An 11-byte FLX point: x at 0, y at 2, state at 9.
Bytes flx_point(uint16_t x, uint16_t y, uint8_t state) {
  return concat({u16(x), u16(y), Bytes(5, 0), Bytes{state, 0}});
}
Bytes las_picture(const std::vector<Bytes>& points) {
  Bytes p = concat({Bytes{0, 0}, u16(static_cast<uint16_t>(points.size() - 1)), Bytes(4, 0)});
  for (const Bytes& pt : points) p = concat({p, pt});
  return concat({p, Bytes{0, 0}});
}
Bytes flx_frame(const std::vector<Bytes>& points) {
  Bytes f = concat({u16(static_cast<uint16_t>(points.size())), Bytes(9, 0)});
  for (const Bytes& pt : points) f = concat({f, pt});
  return f;
}

std::vector<Picture> load(bool las, const Bytes& file, uint32_t start = 0) {
  std::string path = temp_path(las ? "a.las" : "a.flx");
  write_file(path, file);
  Recorder::get().clear();
  if (las)
    displayimportlas(1, path.c_str(), start);
  else
    displayimportflx(1, path.c_str(), start);
  return sent_pictures(Recorder::get());
}

}  // namespace

TEST_F(KalvorTest, LasPointsAndCounts) {
  Bytes file = concat({Bytes{0, 0}, u16(1), las_picture({las_point(0, 2048, 0, 0), las_point(4095, 6144, 0x03, 200)}),
                       las_picture({las_point(2048, 2048, 0, 63)})});
  auto pics = load(true, file);
  ASSERT_EQ(pics.size(), 2u);
  EXPECT_EQ(pics[0].number, 0);
  EXPECT_EQ(pics[0].points, concat({pt(-32768, 0, 0, 0x80, 1, 255, 255, 255), pt(32752, 0, 0, 0xC8, 1, 255, 255, 255)}));
  EXPECT_EQ(pics[1].points, pt(0, 0, 0, 0xBF, 1, 255, 255, 255));

  // Counts are stored minus 1: 65535 means no picture, and no point.
  EXPECT_EQ(load(true, concat({Bytes{0, 0}, u16(65535), las_picture({las_point(0, 0, 0, 0)})})).size(), 0u);
  auto empty = load(true, concat({Bytes{0, 0}, u16(0), Bytes{0, 0}, u16(65535), Bytes(4, 0), Bytes{0, 0}}), 65535);
  ASSERT_EQ(empty.size(), 1u);
  EXPECT_EQ(empty[0].number, 65535);
  EXPECT_EQ(empty[0].count, 0);
}

TEST_F(KalvorTest, FlxPointsAndNumbering) {
  Bytes file = concat({u16(3), Bytes(9, 0), flx_frame({flx_point(0, 65535, 0), flx_point(32768, 1, 2), flx_point(1, 0, 1)}),
                       flx_frame({}), flx_frame({flx_point(0, 0, 1)})});
  auto pics = load(false, file, 10);
  ASSERT_EQ(pics.size(), 3u);
  EXPECT_EQ(pics[0].number, 10);
  EXPECT_EQ(pics[1].number, 11);
  EXPECT_EQ(pics[2].number, 12);
  EXPECT_EQ(pics[0].points, concat({pt(-32768, 32767, 0, 0xC0, 0, 255, 255, 255), pt(0, -32767, 0, 0x80, 2, 255, 255, 255),
                                    pt(-32767, -32768, 0, 0x80, 0, 255, 255, 255)}));
  EXPECT_EQ(pics[1].count, 0);
}

TEST_F(KalvorTest, MalformedLasAndFlxFilesStayInsideTheUploadBuffer) {
  // More than 8192 points: 8192 are kept and the next picture is read in step.
  std::vector<Bytes> many(9000, flx_point(5, 5, 1));
  auto pics = load(false, concat({u16(2), Bytes(9, 0), flx_frame(many), flx_frame({flx_point(7, 7, 1)})}));
  ASSERT_EQ(pics.size(), 2u);
  EXPECT_EQ(pics[0].count, 8192);
  EXPECT_EQ(pics[1].points, pt(-32761, -32761, 0, 0x80, 0, 255, 255, 255));
  std::vector<Bytes> las_many(9000, las_point(1, 1, 0, 0));
  pics = load(true, concat({Bytes{0, 0}, u16(1), las_picture(las_many), las_picture({las_point(2048, 2048, 1, 0)})}));
  ASSERT_EQ(pics.size(), 2u);
  EXPECT_EQ(pics[0].count, 8192);
  EXPECT_EQ(pics[1].points, pt(0, 0, 0, 0xC0, 1, 255, 255, 255));

  // A file that ends inside the points keeps the announced count; one that
  // ends inside a header stops there.
  Bytes two = flx_frame({flx_point(0, 0, 1), flx_point(0, 0, 1)});
  pics = load(false, concat({u16(5), Bytes(9, 0), Bytes(two.begin(), two.end() - 3)}));
  ASSERT_EQ(pics.size(), 1u);
  EXPECT_EQ(pics[0].point(1), missing_point());
  Bytes flx = concat({u16(5), Bytes(9, 0), two});
  for (size_t cut : {0, 3, 11, 15}) EXPECT_EQ(load(false, head(flx, cut)).size(), 0u) << cut;
  Bytes las = concat({Bytes{0, 0}, u16(0), las_picture({las_point(0, 0, 0, 0)})});
  for (size_t cut : {0, 3, 4, 9}) EXPECT_EQ(load(true, head(las, cut)).size(), 0u) << cut;

  Recorder::get().clear();
  displayimportlas(1, ::testing::TempDir().c_str(), 0);
  displayimportflx(1, temp_path("missing.flx").c_str(), 0);
  EXPECT_EQ(rec.count(), 0);
}
