// ILDA export: exact file bytes, the way back in, ranges and limits.
#include "pictures_support.h"

using namespace kt;

namespace {

Bytes export_header(uint16_t records, uint16_t frame, uint16_t total) {
  const std::string names = "EXPOR   Tarvelin";  // frame and company name
  return concat({Bytes{'I', 'L', 'D', 'A', 0, 0, 0, 5}, Bytes(names.begin(), names.end()), be16(records), be16(frame),
                 be16(total), Bytes{0, 0}});
}

}  // namespace

TEST_F(KalvorTest, IldaExportWritesFormatFiveFramesExactlyReadsBackAndCutsLongFrames) {
  // A blanked point (colour dropped) and a drawn one repeated 3 times.
  rec.set_reply(0x04, picture_reply(concat({pt(10, 0, 5, 0xC5, 0x10, 200, 100, 50),  //
                                            pt(-2, -32768, 9, 0x85, 0x03, 200, 100, 50)})));
  std::string path = temp_path("out.ild");
  displayexportilda(1, path.c_str(), 7, 7);
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x04, 0x07, 0x00}}));
  EXPECT_EQ(read_file(path), concat({export_header(5, 0, 1), be16(10), be16(0xFFFF), Bytes{0x40, 0, 0, 0},
                                     times(4, concat({be16(0xFFFE), be16(0x7FFF), Bytes{0x00, 50, 100, 200}})),
                                     export_header(0, 0, 1)}));
  // The way back in: z is lost and repeats come back as points.
  auto pics = sent_by([&] { displayimportilda(1, path.c_str(), 0); });
  EXPECT_EQ(numbers(pics), (Numbers{{1, 5}, {2, 0}}));
  EXPECT_EQ(pics[0].points,
            concat({pt(10, 0, 0, 0xC0, 0, 0, 0, 0), times(4, pt(-2, -32768, 0, 0x80, 0, 200, 100, 50))}));

  // Two frames: numbered 0 and 1; the closing header repeats 1.
  rec.clear();
  rec.set_reply(0x04, picture_reply({}));
  displayexportilda(1, path.c_str(), 3, 4);
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x04, 0x03, 0x00}, {0x04, 0x04, 0x00}}));
  EXPECT_EQ(read_file(path), concat({export_header(0, 0, 2), export_header(0, 1, 2), export_header(0, 1, 2)}));

  // first above last: only the closing header, total frames on 16 bits.
  rec.clear();
  displayexportilda(1, path.c_str(), 5, 3);
  EXPECT_EQ(read_file(path), export_header(0, 0, 65535));
  EXPECT_EQ(rec.count(), 0);

  // 8192 points of repeat 15 expand to 131,072 records; the frame keeps 65,535.
  Bytes points;
  for (int i = 0; i < 8192; ++i) points = concat({points, pt(static_cast<int16_t>(i), 0, 0, 0x80, 0x0F, 1, 1, 1)});
  rec.set_reply(0x04, picture_reply(points));
  displayexportilda(1, path.c_str(), 1, 1);
  Bytes file = read_file(path);
  ASSERT_EQ(file.size(), 32u + 8u * 65535 + 32u);
  EXPECT_EQ(Bytes(file.begin() + 24, file.begin() + 26), be16(65535));
  EXPECT_EQ(Bytes(file.end() - 40, file.end() - 38), be16(4095));  // point 4095, 16th record
}
