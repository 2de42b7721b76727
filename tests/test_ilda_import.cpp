// ILDA import: conversions of each format, numbering, palettes, folding,
// limits and malformed files.
#include <optional>

#include "pictures_support.h"

using namespace kt;

namespace {

// Format-0 (x, y, z, status, colour) and format-5 (x, y, status, b, g, r) records.
Bytes rec0(uint16_t x, uint16_t y, uint16_t z, uint8_t status, uint8_t colour) {
  return concat({be16(x), be16(y), be16(z), Bytes{status, colour}});
}
Bytes rec5(uint16_t x, uint16_t y, uint8_t status, uint8_t b, uint8_t g, uint8_t r) {
  return concat({be16(x), be16(y), Bytes{status, b, g, r}});
}
// The head of a section: signature and format code.
Bytes head_of(uint8_t format) { return Bytes{'I', 'L', 'D', 'A', 0, 0, 0, format}; }

// Without an index the file goes through displayimportilda, which folds nothing.
std::vector<Picture> import(const Bytes& file, uint16_t start = 0, std::optional<uint32_t> index = {}) {
  return loaded(temp_path("in.ild"), file, [=](const char* p) {
    index ? displayimportildafromindex(1, *index, p, start) : displayimportilda(1, p, start);
  });
}

}  // namespace

TEST_F(KalvorTest, IldaFormatsConvertToPicturePoints) {
  // Palettes (of more entries than the buffer holds: the next buffer stays),
  // format 3 and unknown formats are passed over without using up a number.
  const Bytes untouched = colour_entry(1, 1, 0);
  auto pics = import(concat({ilda_header(0, 2), rec0(100, 100, 0xFFFB, 0x00, 70), rec0(0x8000, 0x7FFF, 0, 0xC0, 1),
                             ilda_header(2, 65), Bytes(65 * 3, 1), head_of(3), be32(0), be32(2), Bytes(6, 0xAB),
                             head_of(9), be32(3), Bytes(3, 0xCD),  //
                             ilda_header(1, 1), be16(7), be16(0), Bytes{0x40, 3},
                             ilda_header(4, 2), rec0(1, 2, 3, 0, 1), Bytes{2, 3}, rec0(0, 0, 0, 0, 0), Bytes{0, 0},
                             ilda_header(5, 2), rec5(1, 2, 0x00, 0, 0, 0), rec5(3, 4, 0x80, 10, 20, 30),
                             ilda_header(0, 0)}));
  // startPicture 0 counts from 1; the closing header is an empty picture.
  EXPECT_EQ(numbers(pics), (Numbers{{1, 2}, {2, 1}, {3, 2}, {4, 2}, {5, 0}}));
  EXPECT_EQ(colour_entry(1, 1, 0), untouched);
  // Indexed: y mirrored, colour index modulo 64, white; bit 7 of the status ignored.
  EXPECT_EQ(pics[0].points, concat({white(100, -101, -5, 0x86), white(-32768, -32768, 0, 0xC1)}));
  EXPECT_EQ(pics[1].points, white(7, -1, 0, 0xC3));
  // True colour: stored blue, green, red; black blanks only in format 5.
  EXPECT_EQ(pics[2].points, concat({pt(1, -3, 3, 0x80, 0, 3, 2, 1), pt(0, -1, 0, 0x80, 0, 0, 0, 0)}));
  EXPECT_EQ(pics[3].points, concat({pt(1, -3, 0, 0xC0, 0, 0, 0, 0), pt(3, -5, 0, 0x80, 0, 30, 20, 10)}));
}

TEST_F(KalvorTest, IldaFromIndexFoldsRunsAndShiftsTrueColourFrames) {
  Bytes a = rec0(5, 5, 5, 0x00, 2), runs = concat({ilda_header(0, 4), a, a, a, rec0(6, 6, 6, 0x00, 2)});
  EXPECT_EQ(import(runs).at(0).count, 4);
  EXPECT_EQ(import(runs, 0, 0).at(0).points, concat({white(5, -6, 5, 0x82, 2), white(6, -7, 6, 0x82)}));
  // Repeat stops at 15; format 5 is never folded and is numbered p + index.
  auto pics = import(concat({ilda_header(5, 2), times(2, rec5(1, 1, 0, 1, 1, 1)),  //
                             ilda_header(1, 20), times(20, concat({be16(1), be16(1), Bytes{0, 0}}))}),
                     40, 100);
  EXPECT_EQ(numbers(pics), (Numbers{{140, 2}, {41, 1}}));
  EXPECT_EQ(pics.at(1).points, white(1, -2, 0, 0x80, 15));
}

TEST_F(KalvorTest, IldaLimitsAndMalformedFiles) {
  // 9000 records keep 8191 points, the group converter's and the one-record
  // loop's alike: past slot 8191 every record lands on the last slot, which
  // is not sent. The next frame is still read in step.
  Bytes big = ilda_header(0, 9000);
  for (int i = 0; i < 9000; ++i) big = concat({big, rec0(static_cast<uint16_t>(i), 0, 0, 0, 0)});
  auto pics = import(concat({big, ilda_header(1, 1), be16(3), be16(0), Bytes{0, 0}}));
  EXPECT_EQ(numbers(pics), (Numbers{{1, 8191}, {2, 1}}));
  EXPECT_EQ(pics[0].point(8190), white(8190, -1));
  EXPECT_EQ(pics[1].points, white(3, -1));

  // Cut inside the third record: the frame keeps 3 points, the last one blanked.
  Bytes frame = concat({ilda_header(0, 3), rec0(1, 1, 1, 0, 0), rec0(2, 2, 2, 0, 0)});
  EXPECT_EQ(import(concat({frame, Bytes{1, 2, 3}})).at(0).point(2), kMissing);
  // Cut at or inside a header, or huge counts in skipped sections: only the
  // complete sections before count, and nothing is read past the end.
  Bytes whole = concat({frame, rec0(3, 3, 3, 0, 0)});
  for (const Bytes& tail : {Bytes{}, head(ilda_header(0, 1), 5), head(ilda_header(0, 1), 8),
                            head(ilda_header(0, 1), 31), concat({head_of(3), be32(0), be32(0xFFFFFFFF), whole}),
                            concat({head_of(200), be32(0xFFFFFFFF), whole}), concat({head_of(3), Bytes{0, 0}}),
                            concat({head_of(7), Bytes{0}})})
    EXPECT_EQ(import(concat({whole, tail})).size(), 1u) << tail.size();

  rec.clear();
  displayimportilda(1, ::testing::TempDir().c_str(), 0);
  displayimportilda(1, temp_path("missing.ild").c_str(), 0);
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, IldaLongSectionsConvertEveryRecordAlike) {
  // Long sections are converted in groups of 16 and the rest one by one; a
  // fault in either shows as a point that differs from its own record. Each
  // record varies every field (blank bit, colour index bits, black and
  // coloured format-5 points) and no two records are equal.
  constexpr int kRecords = 1000;
  Bytes f0 = ilda_header(0, kRecords), f5 = ilda_header(5, kRecords), want0, want5;
  for (int i = 0; i < kRecords; ++i) {
    auto v = static_cast<uint16_t>(i * 40503u), w = static_cast<uint16_t>(i * 2654u + 7);
    auto status = static_cast<uint8_t>(i * 37), colour = static_cast<uint8_t>(i * 11);
    auto b = static_cast<uint8_t>(i % 3 ? i | 1 : 0), g = static_cast<uint8_t>(i % 4 ? i | 2 : 0);
    auto r = static_cast<uint8_t>(i % 5 ? i | 4 : 0);
    f0 = concat({f0, rec0(v, w, static_cast<uint16_t>(v ^ w), status, colour)});
    f5 = concat({f5, rec5(v, w, status, b, g, r)});
    auto x = static_cast<int16_t>(v), y = static_cast<int16_t>(~w);
    want0 = concat({want0, white(x, y, static_cast<int16_t>(v ^ w), 0x80 | (status & 0x40) | (colour & 63))});
    uint8_t blank = (status & 0x40) || (r | g | b) == 0 ? 0x40 : 0;
    want5 = concat({want5, pt(x, y, 0, 0x80 | blank, 0, r, g, b)});
  }
  for (auto index : {std::optional<uint32_t>{}, std::optional<uint32_t>{0}}) {
    auto pics = import(concat({f0, f5}), 0, index);
    ASSERT_EQ(pics.size(), 2u);
    EXPECT_EQ(pics[0].points, want0);
    EXPECT_EQ(pics[1].points, want5);
  }
  // Repeats fold into the point before them, wherever they fall among the
  // groups the fast paths convert.
  Bytes folded = ilda_header(0, kRecords + 2), want = want0;
  for (int i = 0; i < kRecords; ++i) {
    Bytes record(f0.begin() + 32 + 8 * i, f0.begin() + 40 + 8 * i);
    folded = concat({folded, record, i == 200 || i == 510 ? record : Bytes{}});
  }
  want[11 * 200 + 7] = want[11 * 510 + 7] = 1;  // their repeat counts
  auto pics = import(folded, 0, 0);
  ASSERT_EQ(pics.size(), 1u);
  EXPECT_EQ(pics[0].points, want);
}
