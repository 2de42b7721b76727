// Picture files (.pic) in both record layouts, and glyph file names.
#include "pictures_support.h"

using namespace kt;

namespace {

const Bytes A = pt(100, -200, 300, 0x85, 0x21, 10, 20, 30);
const Bytes B = pt(-1, 2, -3, 0xC0, 0x00, 0, 0, 0);

// A picture-file header: version, point count and skip count.
Bytes pic_header(uint16_t version, uint16_t count, uint32_t skip = 0) {
  return concat({be16(version), Bytes(4, 0), be16(count), be16(1), be16(static_cast<uint16_t>(skip)),
                 be16(static_cast<uint16_t>(skip >> 16))});
}

std::vector<Picture> load(const Bytes& file) {
  return loaded(temp_path("in.pic"), file, [](const char* p) { displayloadpic(1, p, 1); });
}

}  // namespace

TEST_F(KalvorTest, PictureFilesLoadInBothLayoutsAndASavedOneUnderAnotherNumber) {
  rec.set_reply(0x04, picture_reply(concat({A, B})));
  std::string path = temp_path("two.pic");
  displaysavepic(1, path.c_str(), 5);
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x04, 0x05, 0x00}}));
  EXPECT_EQ(read_file(path), concat({Bytes{4, 0, 0, 0, 0, 0, 0, 2, 0, 1, 0, 0, 0, 0}, A, B}));
  displayloadpic(1, path.c_str(), 9);
  EXPECT_EQ(rec.last().bytes, concat({Bytes{0x00, 9, 0, 2, 0}, A, B}));

  // Skip bytes between the header and the points.
  EXPECT_EQ(load(concat({pic_header(1024, 1, 0x10006), Bytes(0x10006, 0xEE), A})).at(0).points, A);

  // Older records: repeat x 2, status of the line leaving the point, x, y (mirrored), z; big-endian.
  set_palette(1, concat({Bytes(15, 0), {50, 51, 52, 60, 61, 62, 70, 71, 72}}));
  auto pics = load(concat({pic_header(512, 3), Bytes{0x06, 0x05}, be16(100), be16(100), be16(7),  //
                           Bytes{0x00, 0x46}, be16(0xFFFF), be16(0), be16(0),                      //
                           Bytes{0x02, 0x07}, be16(1), be16(0x8000), be16(0xFFFF)}));
  ASSERT_EQ(pics.size(), 1u);
  // Point 0 keeps the colour bytes the upload buffer held (A's); 0x07 falls on point 3, not sent.
  EXPECT_EQ(pics[0].points, concat({pt(100, -101, 7, 0xC0, 3, 10, 20, 30), pt(-1, -1, 0, 0x05, 0, 50, 51, 52),
                                    pt(1, 32767, -1, 0x46, 1, 60, 61, 62)}));
}

TEST_F(KalvorTest, MalformedPictureFilesStayInsideTheUploadBuffer) {
  // Empty, cut inside the header, unknown version, a folder, no file: nothing is sent.
  for (const Bytes& refused : {Bytes{}, Bytes(13, 0), concat({pic_header(1025, 1), A})})
    EXPECT_EQ(load(refused).size(), 0u);
  displayloadpic(1, ::testing::TempDir().c_str(), 1);
  displayloadpic(1, temp_path("missing.pic").c_str(), 1);
  displayloadpic(1, nullptr, 1);
  EXPECT_EQ(rec.count(), 0);

  // Too many points, a file ending inside a record, a skip past the end: the
  // picture keeps its count (at most 8192); missing points are blanked.
  auto pics = load(concat({pic_header(1024, 9000), A, B}));
  ASSERT_EQ(pics.at(0).count, 8192);
  EXPECT_EQ(pics[0].point(8191), kMissing);
  EXPECT_EQ(load(concat({pic_header(1024, 2), A, Bytes(5, 1)})).at(0).points, concat({A, kMissing}));
  EXPECT_EQ(load(concat({pic_header(1024, 1, 0xFFFFFFFF), A})).at(0).points, kMissing);
  pics = load(concat({pic_header(0, 9000), Bytes{0, 0x80}, be16(1), be16(1), be16(1)}));
  ASSERT_EQ(pics.at(0).count, 8192);
  EXPECT_EQ(pics[0].point(1), kMissing);
}

TEST_F(KalvorTest, GlyphFileNames) {
  std::pair<uint8_t, const char*> cases[] = {
      {'a', "#lo_a.pic"},      {'A', "#up_A.pic"},  {'7', "#7.pic"},         {'(', "#bracket2_l.pic"},
      {0, "#.pic"},            {' ', "#space.pic"}, {0xC4, "#up_\xE4.pic"}, {0xDF, "#lo_\xDF.pic"},
      {0xFC, "#lo_\xFC.pic"}, {'\\', "#\\.pic"},   {0xFF, "#\xFF.pic"}};
  for (auto [c, appended] : cases) {
    char text[64] = "fonts/";
    DisplayCharToFont(c, text);
    EXPECT_EQ(std::string(text), std::string("fonts/") + appended) << int{c};
  }
  DisplayCharToFont('a', nullptr);
}

TEST_F(KalvorTest, LongOlderLayoutPicturesTakeColoursFromTheRecordBefore) {
  // Long pictures go through the group conversion and the one-record loop;
  // a fault in either shows as a point that differs from its records. Every
  // field varies, and each of the 64 colours differs in every channel.
  Bytes palette;
  for (int i = 0; i < 64; ++i) palette = concat({palette, {uint8_t(i * 3 + 1), uint8_t(i * 5 + 2), uint8_t(255 - i)}});
  set_palette(1, palette);
  constexpr int kPoints = 1000;
  Bytes file = pic_header(512, kPoints), want;
  uint8_t before = 0;
  for (int i = 0; i < kPoints; ++i) {
    auto x = static_cast<uint16_t>(i * 40503u), y = static_cast<uint16_t>(i * 2654u + 7);
    auto z = static_cast<uint16_t>(x ^ y);
    auto repeat = static_cast<uint8_t>(i * 7), status = static_cast<uint8_t>(i * 37 + 3);
    file = concat({file, Bytes{repeat, status}, be16(x), be16(y), be16(z)});
    Bytes p = pt(static_cast<int16_t>(x), static_cast<int16_t>(~y), static_cast<int16_t>(z), i ? before : 0xC0,
                 static_cast<uint8_t>(repeat >> 1), palette[3 * (before & 63)], palette[3 * (before & 63) + 1],
                 palette[3 * (before & 63) + 2]);
    if (i == 0) p.resize(8);  // point 0 keeps the colour bytes the upload buffer held
    want = concat({want, p});
    before = status;
  }
  auto pics = load(file);
  ASSERT_EQ(pics.size(), 1u);
  Bytes got = pics[0].points;
  got.erase(got.begin() + 8, got.begin() + 11);
  EXPECT_EQ(got, want);
}
