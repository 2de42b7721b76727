// A transport that answers with counts beyond the library's areas: a picture
// of 65,535 points where the reply area holds 8,192, previews of 65,535 points
// where the areas hold 16,000, a scanner claiming 65,535 pictures. No export
// may read or write past an area: the picture count is limited where it is
// read, every file written from such answers is consistent with its own
// counts, and the preview readers serve the areas' 16,000 points only.
// Scanner 20 owns the last record of the table, so under AddressSanitizer a
// read past its areas runs off the table.
#include <cstdio>
#include <string>
#include <vector>

#include "pictures_support.h"

using namespace kt;

namespace {

constexpr uint32_t kScanner = 20;
constexpr size_t kReplyArea = 90117, kPreviewArea = 176006, kFullPreviewArea = 240006;

// A picture answer whose count says 65,535; each point is drawn, repeated
// 1 + 15 times, so that an ILDA frame of it has more records than its count
// field can hold.
Bytes huge_picture() {
  Bytes reply(kReplyArea);
  for (size_t i = 5; i < reply.size(); ++i) reply[i] = static_cast<uint8_t>(i * 31);
  for (size_t p = 0; p < 8192; ++p) {
    reply[5 + 11 * p + 6] = 0x80;  // status: drawn
    reply[5 + 11 * p + 7] = 0x0F;  // repeat 15
  }
  reply[3] = reply[4] = 0xFF;
  return reply;
}

// Walks a file of picture records from `at` to its end: a head of `head` bytes
// with the record's point count at `count_at`, then `point` bytes a point. The
// records must fill the file exactly. Returns the counts in order.
std::vector<size_t> walk(const Bytes& file, size_t at, size_t head, size_t count_at, size_t point,
                         bool big_endian = false) {
  std::vector<size_t> counts;
  while (at + head <= file.size()) {
    counts.push_back(big_endian ? size_t{file[at + count_at]} << 8 | file[at + count_at + 1]
                                : le<uint16_t>(file, at + count_at));
    at += head + point * counts.back();
  }
  EXPECT_EQ(at, file.size());
  return counts;
}

class HostileAnswers : public KalvorTest {};

}  // namespace

TEST_F(HostileAnswers, PictureCountsBeyondTheReplyAreaAreLimited) {
  rec.set_reply(0x04, huge_picture());
  EXPECT_EQ(displaygetpic(kScanner, 1), 8192);
  uint16_t count = 0;
  displaygetpiccnt(kScanner, &count);
  EXPECT_EQ(count, 8192);

  // A picture file holds what its header says: 8,192 points.
  std::string pic = temp_path("huge.pic");
  displaysavepic(kScanner, pic.c_str(), 1);
  EXPECT_EQ(walk(read_file(pic), 0, 14, 6, 11, true), std::vector<size_t>{8192});

  // ILDA: the one frame is cut at the 65,535 records its header can count
  // (8,192 points of 16 records each would be more), then the closing header.
  std::string ild = temp_path("huge.ild");
  displayexportilda(kScanner, ild.c_str(), 1, 1);
  EXPECT_EQ(walk(read_file(ild), 0, 32, 24, 8, true), (std::vector<size_t>{65535, 0}));

  // A scanner claiming 65,535 pictures of 65,535 points each: every catalogue
  // and show record carries 8,192 points and its count says so.
  rec.set_reply(0x2B, {0x03, 0x00, 0x00, 0x00});
  std::string cat = temp_path("huge.cat"), lds = temp_path("huge.lds");
  saveCAT(kScanner, cat.c_str());
  EXPECT_EQ(walk(read_file(cat), 0, 3, 1, 11), (std::vector<size_t>{8192, 8192, 8192}));
  saveLDS(kScanner, lds.c_str());
  const Bytes show = read_file(lds);
  EXPECT_EQ(le<uint16_t>(show, 4), 3);  // the show's picture count
  EXPECT_EQ(walk(show, 6, 4, 2, 11), (std::vector<size_t>{8192, 8192, 8192}));

  // Many pictures of one point: the writer goes through all 65,535.
  rec.set_reply(0x04, picture_reply(Bytes(11, 0)));
  rec.set_reply(0x2B, {0xFF, 0xFF, 0x00, 0x00});
  saveCAT(kScanner, cat.c_str());
  EXPECT_EQ(read_file(cat).size(), 65535u * (3 + 11));
  for (const std::string& written : {pic, ild, cat, lds}) std::remove(written.c_str());
}

TEST_F(HostileAnswers, PreviewCountsBeyondTheAreasReadOnlyTheAreas) {
  // Answers whose count says 65,535, with a recognisable last point.
  Bytes preview(kPreviewArea, 0x11), full(kFullPreviewArea, 0x22);
  preview[0] = preview[1] = full[0] = full[1] = 0xFF;
  for (uint8_t opcode : {0x01, 0x06, 0x2F, 0x33}) rec.set_reply(opcode, preview);
  for (uint8_t opcode : {0x7B, 0x7E}) rec.set_reply(opcode, full);

  displayinittrack(kScanner);
  displayframe(kScanner, 0, 1);
  SetVistrel(kScanner, 1);
  EXPECT_EQ(displayupdate(kScanner), 0x11111111u);
  SetVistrel(kScanner, 0);
  uint16_t count = 0;
  uint32_t value = 0;
  for (auto refresh : {displayupdatepreviewbuffer, displayupdatefullpreviewbuffer, displayupdatevistrelbuffer})
    refresh(kScanner, &count, &value);
  displaydirect(kScanner, 1, 2, 3);

  // The count is reported as received; points are served up to the areas' end.
  for (auto get : {displaygetpreviewbuffercnt, displaygetfullpreviewbuffercnt, displaygetvistrelbuffercnt}) {
    get(kScanner, &count);
    EXPECT_EQ(count, 0xFFFF);
  }
  for (uint16_t index : {uint16_t{15999}, uint16_t{16000}, uint16_t{65535}}) {
    SCOPED_TRACE(index);
    const bool inside = index < 16000;
    uint16_t x = 7, y = 7;
    int32_t fx = 7, fy = 7;
    uint8_t s = 7, r = 7, g = 7, b = 7;
    displaygetpreviewbuffervector(kScanner, index, &x, &y, &s, &r, &g, &b);
    EXPECT_EQ((std::vector<int>{x, s}), (inside ? std::vector<int>{0x1111, 0x11} : std::vector<int>{7, 7}));
    for (auto get : {displaygetfullpreviewbuffervector, displaygetvistrelbuffervector}) {
      fx = fy = 7;
      s = 7;
      get(kScanner, index, &fx, &fy, &s, &r, &g, &b);
      EXPECT_EQ((std::vector<int>{fx, s}), (inside ? std::vector<int>{0x22222222, 0x22} : std::vector<int>{7, 7}));
    }
  }
}
