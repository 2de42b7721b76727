// ILDA files made by other programs: the ILDA test pattern (one format-0
// frame) and an animation of 200 format-5 frames, each closed by a header
// without records.
#include "pictures_support.h"

using namespace kt;

namespace {

std::vector<Picture> import(const char* name) {
  return sent_by([&] { displayimportilda(1, fixture(std::string("ilda/") + name).c_str(), 0); });
}

}  // namespace

TEST_F(KalvorTest, IldaTestPatternImports) {
  SKIP_WITHOUT_FIXTURE("ilda/ildatest.ild");
  auto pics = import("ildatest.ild");
  ASSERT_EQ(numbers(pics), (Numbers{{1, 1191}, {2, 0}}));
  // A blanked point, a drawn one of colour index 56, and the last point,
  // whose status 0xC0 blanks (bit 7 is ignored).
  EXPECT_EQ(pics[0].point(0), white(12800, 32766, 0, 0xC0));
  EXPECT_EQ(pics[0].point(13), white(-20479, 32766, 0, 0xB8));
  EXPECT_EQ(pics[0].point(1190), white(-13942, -13943, 0, 0xC0));
}

TEST_F(KalvorTest, GrowingCircleImports) {
  SKIP_WITHOUT_FIXTURE("ilda/growing_circle.ild");
  auto pics = import("growing_circle.ild");
  ASSERT_EQ(pics.size(), 201u);
  size_t points = 0;
  for (size_t f = 0; f < pics.size(); ++f) {
    EXPECT_EQ(pics[f].number, f + 1);
    points += pics[f].count;
  }
  EXPECT_EQ((std::vector<size_t>{points, pics[100].count, pics[200].count}), (std::vector<size_t>{201240, 1011, 0}));
  // A blanked black point, then drawn points of colour (0, 255, 221).
  EXPECT_EQ(pics[0].point(2), pt(103, 143, 0, 0xC0, 0, 0, 0, 0));
  EXPECT_EQ(pics[0].point(500), pt(-615, -509, 0, 0x80, 0, 0, 255, 221));
  EXPECT_EQ(pics[100].point(505), pt(-15677, -18192, 0, 0x80, 0, 0, 255, 221));
  EXPECT_EQ(pics[199].point(500), pt(-1060, -1046, 0, 0x80, 0, 0, 255, 221));
}
