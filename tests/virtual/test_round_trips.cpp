// Pictures through every file format and back, with the virtual scanner's
// picture memory in between: ILDA -> catalogue -> show -> picture file -> ILDA.
#include <vector>

#include "pictures_support.h"
#include "points.h"

using namespace kt;

namespace {

// A format-4 point (3-D true colour).
Bytes point4(int16_t x, int16_t y, int16_t z, uint8_t status, uint8_t red, uint8_t green, uint8_t blue) {
  return concat({be16(uint16_t(x)), be16(uint16_t(y)), be16(uint16_t(z)), Bytes{status, blue, green, red}});
}

}  // namespace

class RoundTrip : public VirtualTest {};

TEST_F(RoundTrip, IldaThroughCatalogueShowAndPictureFileKeepsWhatEachFormatHolds) {
  std::string path = temp_path("in.ild");
  write_file(path, concat({ilda_header(4, 5),
                           point4(-30000, 30000, 100, 0x40, 10, 20, 30),  // blanked move, with a colour
                           point4(30000, 30000, -100, 0x00, 255, 0, 0),   // drawn red
                           point4(30000, -30000, 0, 0x00, 0, 0, 0),       // drawn black
                           point4(-32768, -32768, 32767, 0x00, 1, 2, 3),  // the extreme corner
                           point4(0, 0, 0, 0x80, 9, 8, 7),                // the last-point bit is ignored
                           ilda_header(0, 0)}));
  displayimportilda(1, path.c_str(), 0);
  // y is mirrored on import (ILDA's y grows upwards); colours as given.
  std::vector<Point> stored = {{-30000, -30001, 100, 0xC0, 0, 10, 20, 30}, {30000, -30001, -100, 0x80, 0, 255, 0, 0},
                               {30000, 29999, 0, 0x80, 0, 0, 0, 0}, {-32768, 32767, 32767, 0x80, 0, 1, 2, 3},
                               {0, -1, 0, 0x80, 0, 9, 8, 7}};
  EXPECT_EQ(read_back(1, 1), stored);

  // Give one point a repeat count, which only the scanner's formats hold.
  stored[1].repeat = 2;
  upload(1, 1, stored);

  // Catalogue, show and picture file hold the points byte for byte.
  std::string cat = temp_path("a.cat"), lds = temp_path("a.lds"), pic = temp_path("a.pic");
  saveCAT(1, cat.c_str());
  loadCAT(1, cat.c_str());
  EXPECT_EQ(read_back(1, 1), stored);
  saveLDS(1, lds.c_str());
  loadLDS(1, lds.c_str());
  EXPECT_EQ(read_back(1, 1), stored);
  displaysavepic(1, pic.c_str(), 1);
  clearpicmem(1);
  displayloadpic(1, pic.c_str(), 1);
  EXPECT_EQ(read_back(1, 1), stored);

  // ILDA output (2-D true colour) keeps x, y, blanking and the colour of drawn
  // points. Lost: z, a blanked point's colour (written black), the repeat count
  // (the point is written 1 + repeat times), and a drawn black point reads back
  // as blanked.
  std::string out = temp_path("out.ild");
  displayexportilda(1, out.c_str(), 1, 1);
  clearpicmem(1);
  displayimportilda(1, out.c_str(), 1);
  const Point red = {30000, -30001, 0, 0x80, 0, 255, 0, 0};
  EXPECT_EQ(read_back(1, 1), (std::vector<Point>{{-30000, -30001, 0, 0xC0, 0, 0, 0, 0}, red, red, red,
                                                 {30000, 29999, 0, 0xC0, 0, 0, 0, 0},
                                                 {-32768, 32767, 0, 0x80, 0, 1, 2, 3}, {0, -1, 0, 0x80, 0, 9, 8, 7}}));
  EXPECT_EQ(GetMaxPic(1), 2);  // the closing header is an empty picture 2: no picture
}
