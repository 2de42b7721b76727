// ILDA import: conversions of each format, numbering, palettes, folding,
// limits and malformed files.
#include "pictures_support.h"

using namespace kt;

namespace {

Bytes rec0(int16_t x, int16_t y, int16_t z, uint8_t status, uint8_t colour) {
  return concat({be16(static_cast<uint16_t>(x)), be16(static_cast<uint16_t>(y)), be16(static_cast<uint16_t>(z)),
                 Bytes{status, colour}});
}
Bytes rec5(int16_t x, int16_t y, uint8_t status, uint8_t b, uint8_t g, uint8_t r) {
  return concat({be16(static_cast<uint16_t>(x)), be16(static_cast<uint16_t>(y)), Bytes{status, b, g, r}});
}

std::vector<Picture> import(const Bytes& file, uint16_t start = 0, bool from_index = false, uint32_t index = 0) {
  std::string path = temp_path("in.ild");
  write_file(path, file);
  Recorder::get().clear();
  if (from_index)
    displayimportildafromindex(1, index, path.c_str(), start);
  else
    displayimportilda(1, path.c_str(), start);
  return sent_pictures(Recorder::get());
}

}  // namespace

TEST_F(KalvorTest, IldaFormatsConvertToPicturePoints) {
  Bytes file = concat({ilda_header(0, 2), rec0(100, 100, -5, 0x00, 70), rec0(-32768, 32767, 0, 0xC0, 1),
                       ilda_header(1, 1), be16(7), be16(0), Bytes{0x40, 3},
                       ilda_header(4, 2), rec0(1, 2, 3, 0x00, 1), Bytes{2, 3}, rec0(0, 0, 0, 0x00, 0), Bytes{0, 0},
                       ilda_header(5, 2), rec5(1, 2, 0x00, 0, 0, 0), rec5(3, 4, 0x80, 10, 20, 30),
                       ilda_header(0, 0)});
  auto pics = import(file);
  ASSERT_EQ(pics.size(), 5u);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(pics[i].number, i + 1);  // startPicture 0 counts from 1
  // Indexed: y mirrored, colour index modulo 64, white; bit 7 of the status ignored.
  EXPECT_EQ(pics[0].points, concat({pt(100, -101, -5, 0x86, 0, 255, 255, 255), pt(-32768, -32768, 0, 0xC1, 0, 255, 255, 255)}));
  EXPECT_EQ(pics[1].points, pt(7, -1, 0, 0xC3, 0, 255, 255, 255));
  // True colour: stored blue, green, red; black blanks only in format 5.
  EXPECT_EQ(pics[2].points, concat({pt(1, -3, 3, 0x80, 0, 3, 2, 1), pt(0, -1, 0, 0x80, 0, 0, 0, 0)}));
  EXPECT_EQ(pics[3].points, concat({pt(1, -3, 0, 0xC0, 0, 0, 0, 0), pt(3, -5, 0, 0x80, 0, 30, 20, 10)}));
  EXPECT_EQ(pics[4].count, 0);  // the closing header
}

TEST_F(KalvorTest, IldaNumberingSkipsPalettesAndUnknownSections) {
  Bytes palette = concat({ilda_header(2, 65), Bytes{9, 8, 7, 6, 5, 4}, Bytes(63 * 3, 1)});
  Bytes format3 = concat({Bytes{'I', 'L', 'D', 'A', 0, 0, 0, 3}, be32(0), be32(2), Bytes(6, 0xAB)});
  Bytes unknown = concat({Bytes{'I', 'L', 'D', 'A', 0, 0, 0, 9}, be32(3), Bytes(3, 0xCD)});
  Bytes frame = concat({ilda_header(0, 1), rec0(1, 1, 1, 0x00, 1)});
  auto pics = import(concat({frame, palette, format3, unknown, frame}), 40);
  ASSERT_EQ(pics.size(), 2u);
  EXPECT_EQ(pics[0].number, 40);
  EXPECT_EQ(pics[1].number, 41);

  // The palette filled colour buffer 0: an indexed catalogue point takes its colour from there.
  std::string cat = temp_path("c.cat");
  write_file(cat, concat({Bytes{0, 1, 0}, le_bytes<uint16_t>(0), le_bytes<uint16_t>(0), le_bytes<uint16_t>(0),
                          Bytes{0x41, 0}}));
  rec.clear();
  loadCAT(1, cat.c_str());
  EXPECT_EQ(sent_pictures(rec).at(0).points, pt(0, 0, 0, 0x41, 0, 6, 5, 4));
}

TEST_F(KalvorTest, IldaFromIndexFoldsRunsAndShiftsTrueColourFrames) {
  Bytes a = rec0(5, 5, 5, 0x00, 2), b = rec0(6, 6, 6, 0x00, 2);
  Bytes runs = concat({ilda_header(0, 4), a, a, a, b});
  auto plain = import(runs);
  ASSERT_EQ(plain.size(), 1u);
  EXPECT_EQ(plain[0].count, 4);
  auto folded = import(runs, 0, true);
  ASSERT_EQ(folded.size(), 1u);
  EXPECT_EQ(folded[0].points, concat({pt(5, -6, 5, 0x82, 2, 255, 255, 255), pt(6, -7, 6, 0x82, 0, 255, 255, 255)}));

  // Repeat stops at 15; format 5 is never folded and is numbered p + index.
  Bytes long_run = ilda_header(1, 20);
  for (int i = 0; i < 20; ++i) long_run = concat({long_run, be16(1), be16(1), Bytes{0, 0}});
  Bytes true_colour = concat({ilda_header(5, 2), rec5(1, 1, 0, 1, 1, 1), rec5(1, 1, 0, 1, 1, 1)});
  auto mixed = import(concat({true_colour, long_run}), 1, true, 100);
  ASSERT_EQ(mixed.size(), 2u);
  EXPECT_EQ(mixed[0].number, 101);
  EXPECT_EQ(mixed[0].count, 2);
  EXPECT_EQ(mixed[1].number, 2);
  ASSERT_EQ(mixed[1].count, 1);
  EXPECT_EQ(mixed[1].point(0)[7], 15);
}

TEST_F(KalvorTest, IldaLimitsAndMalformedFiles) {
  // 9000 records keep 8191 points; the next frame is still read in step.
  Bytes big = ilda_header(1, 9000);
  for (int i = 0; i < 9000; ++i) big = concat({big, be16(static_cast<uint16_t>(i)), be16(0), Bytes{0, 0}});
  auto pics = import(concat({big, ilda_header(1, 1), be16(3), be16(0), Bytes{0, 0}}));
  ASSERT_EQ(pics.size(), 2u);
  EXPECT_EQ(pics[0].count, 8191);
  EXPECT_EQ(pics[0].point(8190), pt(8190, -1, 0, 0x80, 0, 255, 255, 255));
  EXPECT_EQ(pics[1].points, pt(3, -1, 0, 0x80, 0, 255, 255, 255));

  Bytes frame = concat({ilda_header(0, 3), rec0(1, 1, 1, 0, 0), rec0(2, 2, 2, 0, 0)});
  // Cut inside the third record: the frame keeps 3 points, the last one blanked.
  pics = import(concat({frame, Bytes{1, 2, 3}}));
  ASSERT_EQ(pics.size(), 1u);
  EXPECT_EQ(pics[0].count, 3);
  EXPECT_EQ(pics[0].point(2), missing_point());
  // Cut at and inside headers: only the complete sections before count.
  Bytes whole = concat({frame, rec0(3, 3, 3, 0, 0)});
  for (size_t cut : {0, 5, 8, 20, 31}) EXPECT_EQ(import(concat({whole, head(ilda_header(0, 1), cut)})).size(), 1u) << cut;
  // Huge counts in skipped sections end the file without reading past it.
  EXPECT_EQ(import(concat({whole, Bytes{'I', 'L', 'D', 'A', 0, 0, 0, 3}, be32(0), be32(0xFFFFFFFF), whole})).size(), 1u);
  EXPECT_EQ(import(concat({whole, Bytes{'I', 'L', 'D', 'A', 0, 0, 0, 200}, be32(0xFFFFFFFF), whole})).size(), 1u);
  EXPECT_EQ(import(concat({whole, Bytes{'I', 'L', 'D', 'A', 0, 0, 0, 3, 0, 0}})).size(), 1u);
  EXPECT_EQ(import(concat({whole, Bytes{'I', 'L', 'D', 'A', 0, 0, 0, 7, 0}})).size(), 1u);

  rec.clear();
  displayimportilda(1, ::testing::TempDir().c_str(), 0);
  displayimportilda(1, temp_path("missing.ild").c_str(), 0);
  displayimportilda(21, temp_path("in.ild").c_str(), 0);
  EXPECT_EQ(rec.count(), 0);
}
