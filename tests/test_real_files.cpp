// ILDA files made by other programs: the ILDA test pattern (one format-0
// frame) and an animation of 200 format-5 frames.
#include "pictures_support.h"

using namespace kt;

namespace {

uint16_t be(const Bytes& b, size_t at) { return static_cast<uint16_t>(b[at] << 8 | b[at + 1]); }

// One frame section of a file: where its records start and how many it has.
struct Section {
  size_t records;
  uint16_t count;
};

std::vector<Section> frame_sections(const Bytes& file, size_t record_size) {
  std::vector<Section> out;
  for (size_t at = 0; at + 32 <= file.size(); at += 32 + record_size * be(file, at + 24))
    out.push_back({at + 32, be(file, at + 24)});
  return out;
}

// The picture point a record of the file becomes: y mirrored, blank from bit 6.
Bytes expected_point(const Bytes& file, size_t r, bool true_colour) {
  auto x = static_cast<int16_t>(be(file, r)), y = static_cast<int16_t>(~be(file, r + 2));
  if (!true_colour) {
    uint8_t status = file[r + 6], colour = file[r + 7];
    return pt(x, y, static_cast<int16_t>(be(file, r + 4)), static_cast<uint8_t>(0x80 | (status & 0x40) | (colour % 64)),
              0, 255, 255, 255);
  }
  uint8_t status = file[r + 4], blue = file[r + 5], green = file[r + 6], red = file[r + 7];
  bool blank = (status & 0x40) || (red == 0 && green == 0 && blue == 0);
  return pt(x, y, 0, blank ? 0xC0 : 0x80, 0, red, green, blue);
}

void check_import(Recorder& rec, const std::string& name, uint8_t format, size_t record_size, size_t frames) {
  Bytes file = read_file(fixture("ilda/" + name));
  ASSERT_FALSE(file.empty()) << name;
  auto sections = frame_sections(file, record_size);
  ASSERT_EQ(sections.size(), frames + 1) << "frames and the closing header";
  EXPECT_EQ(file[7], format);

  displayimportilda(1, fixture("ilda/" + name).c_str(), 0);
  auto pics = sent_pictures(rec);
  ASSERT_EQ(pics.size(), sections.size());
  for (size_t f = 0; f < pics.size(); ++f) {
    EXPECT_EQ(pics[f].number, f + 1);
    ASSERT_EQ(pics[f].count, sections[f].count) << "frame " << f;
    for (size_t i : {size_t{0}, size_t{pics[f].count / 2u}, size_t{pics[f].count - 1u}}) {
      if (i >= pics[f].count) continue;
      EXPECT_EQ(pics[f].point(i), expected_point(file, sections[f].records + record_size * i, format == 5))
          << "frame " << f << " point " << i;
    }
  }
}

}  // namespace

TEST_F(KalvorTest, IldaTestPatternImports) {
  check_import(rec, "ildatest.ild", 0, 8, 1);
  EXPECT_EQ(sent_pictures(rec).at(0).count, 1191);
}

TEST_F(KalvorTest, GrowingCircleImports) { check_import(rec, "growing_circle.ild", 5, 8, 200); }
