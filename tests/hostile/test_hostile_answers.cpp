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

#include "support/harness.h"

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

uint16_t be16(const Bytes& b, size_t at) { return static_cast<uint16_t>(b[at] << 8 | b[at + 1]); }

// Walks a file of picture records (a head of `head` bytes, the record's point
// count at `count_at` of it, then 11 bytes a point) from `at` to its end:
// every count is at most 8,192 and the records fill the file exactly. Returns
// the number of records.
size_t walk_pictures(const Bytes& file, size_t at, size_t head, size_t count_at) {
  size_t records = 0;
  for (; at + head <= file.size(); ++records) {
    size_t n = le<uint16_t>(file, at + count_at);
    EXPECT_LE(n, 8192u);
    at += head + 11 * n;
  }
  EXPECT_EQ(at, file.size());
  return records;
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
  Bytes file = read_file(pic);
  ASSERT_GE(file.size(), 14u);
  EXPECT_EQ(be16(file, 6), 8192);
  EXPECT_EQ(file.size(), 14u + 11u * 8192);

  // ILDA: every header counts exactly the records that follow it, and the
  // file ends with a closing header of no records.
  std::string ild = temp_path("huge.ild");
  displayexportilda(kScanner, ild.c_str(), 1, 1);
  file = read_file(ild);
  size_t at = 0, frames = 0, records = 0;
  while (at + 32 <= file.size()) {
    ASSERT_EQ(Bytes(file.begin() + static_cast<long>(at), file.begin() + static_cast<long>(at + 4)),
              (Bytes{'I', 'L', 'D', 'A'}));
    size_t n = be16(file, at + 24);
    at += 32 + 8 * n;
    records += n;
    if (n == 0) break;
    ++frames;
  }
  EXPECT_EQ(at, file.size());
  EXPECT_GE(frames, 1u);
  EXPECT_LE(records, 8192u * 16);

  // A scanner claiming 65,535 pictures of 65,535 points each: every catalogue
  // and show record carries at most 8,192 points and its count matches.
  rec.set_reply(0x2B, {0x03, 0x00, 0x00, 0x00});
  std::string cat = temp_path("huge.cat"), lds = temp_path("huge.lds");
  saveCAT(kScanner, cat.c_str());
  EXPECT_EQ(walk_pictures(read_file(cat), 0, 3, 1), 3u);
  saveLDS(kScanner, lds.c_str());
  file = read_file(lds);
  ASSERT_GE(file.size(), 6u);
  EXPECT_EQ(le<uint16_t>(file, 4), 3);
  EXPECT_EQ(walk_pictures(file, 6, 4, 2), 3u);

  // Many pictures of one point: the writer goes through all 65,535.
  Bytes small = huge_picture();
  small.resize(5 + 11);
  small[3] = 1;
  small[4] = 0;
  rec.set_reply(0x04, small);
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
    EXPECT_EQ(x, inside ? 0x1111 : 7);
    EXPECT_EQ(s, inside ? 0x11 : 7);
    for (auto get : {displaygetfullpreviewbuffervector, displaygetvistrelbuffervector}) {
      fx = fy = 7;
      s = 7;
      get(kScanner, index, &fx, &fy, &s, &r, &g, &b);
      EXPECT_EQ(fx, inside ? 0x22222222 : 7);
      EXPECT_EQ(s, inside ? 0x22 : 7);
    }
  }
}
