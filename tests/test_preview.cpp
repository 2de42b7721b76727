// Preview areas: refresh, counts, points with their colour conversion, flags.
// Reads past the areas are held to their bounds by the hostile-answer tests.
#include <cmath>

#include "support/harness.h"

using namespace kt;

namespace {

// An answer of the preview kind: count, value, then the points as given.
Bytes answer(uint16_t count, uint32_t value, Bytes points = {}) {
  return concat({le_bytes(count), le_bytes(value), points});
}

Bytes preview_point(uint16_t x, uint16_t y, Bytes channels, uint8_t status) {
  return concat({le_bytes(x), le_bytes(y), channels, Bytes{status}});
}

// r, g, b of preview point 0 of scanner 1 after an answer with these channels.
Bytes rgb_of(Recorder& rec, Bytes channels) {
  rec.set_reply(0x06, answer(1, 0, preview_point(0, 0, channels, 0)));
  displayupdatepreviewbuffer(1, nullptr, nullptr);
  uint8_t r = 1, g = 1, b = 1;
  displaygetpreviewbuffervector(1, 0, nullptr, nullptr, nullptr, &r, &g, &b);
  return {r, g, b};
}

}  // namespace

TEST_F(KalvorTest, RefreshersSendTheirOpcodeAndGettersReadTheArea) {
  using Refresh = void (*)(uint32_t, uint16_t*, uint32_t*);
  using Count = void (*)(uint32_t, uint16_t*);
  struct Case { Refresh refresh; Count count; uint8_t opcode; };
  for (Case c : {Case{displayupdatepreviewbuffer, displaygetpreviewbuffercnt, 0x06},
                 Case{displayupdatefullpreviewbuffer, displaygetfullpreviewbuffercnt, 0x7B},
                 Case{displayupdatevistrelbuffer, displaygetvistrelbuffercnt, 0x7E}}) {
    uint16_t n = 9;
    uint32_t value = 9;
    c.count(2, &n);
    EXPECT_EQ(n, 0);  // zero after DisplayInit
    rec.set_reply(c.opcode, answer(3, 0x11223344));
    c.refresh(2, &n, &value);
    EXPECT_EQ(rec.last().bytes, Bytes{c.opcode});
    EXPECT_EQ((std::vector<uint32_t>{n, value}), (std::vector<uint32_t>{3, 0x11223344}));
    c.count(2, &n);
    EXPECT_EQ(n, 3);
  }
  // The points as the answers hold them: 16-bit in the preview, 32-bit in the Vistrel area.
  rec.set_reply(0x06, answer(2, 0, concat({preview_point(1, 2, Bytes(6, 0), 0),
                                           preview_point(0xFFFF, 300, {9, 8, 7, 0, 0, 0}, 0x80)})));
  rec.set_reply(0x7E, answer(1, 0, concat({le_bytes<int32_t>(-70000), le_bytes<int32_t>(123456),
                                           Bytes{1, 2, 3, 0, 0, 0, 0xC0}})));
  displayupdatepreviewbuffer(1, nullptr, nullptr);
  displayupdatevistrelbuffer(1, nullptr, nullptr);
  uint16_t x = 0, y = 0;
  uint8_t status = 0, r = 0, g = 0, b = 0;
  displaygetpreviewbuffervector(1, 1, &x, &y, &status, &r, &g, &b);
  EXPECT_EQ((std::vector<int>{x, y, status, r, g, b}), (std::vector<int>{0xFFFF, 300, 0x80, 9, 8, 7}));
  int32_t fx = 0, fy = 0;
  displaygetvistrelbuffervector(1, 0, &fx, &fy, &status, &r, &g, &b);
  EXPECT_EQ((std::vector<int>{fx, fy, status, r, g, b}), (std::vector<int>{-70000, 123456, 0xC0, 1, 2, 3}));
}

TEST_F(KalvorTest, PointColoursGoThroughTheMatrixWithTheByteRule) {
  EXPECT_EQ(rgb_of(rec, {10, 20, 30, 40, 50, 60}), (Bytes{10, 20, 30}));
  DisplaySetPreviewR(1, 2.0, 0, 0, 0, 0, 0);
  EXPECT_EQ(rgb_of(rec, {200, 0, 0, 0, 0, 0})[0], 255);  // 400 is above 255
  DisplaySetPreviewR(1, 0.5, 0, 0, 0, 0, 0);
  EXPECT_EQ(rgb_of(rec, {255, 0, 0, 0, 0, 0})[0], 127);
  DisplaySetPreviewG(1, 0, 0, 0, 0, 1.0, 1.0);
  EXPECT_EQ(rgb_of(rec, {0, 0, 0, 0, 100, 100})[1], 200);
  DisplaySetPreviewB(1, -0.01, 0, 0, 0, 0, 0);
  EXPECT_EQ(rgb_of(rec, {150, 0, 0, 0, 0, 0})[2], 255);  // -1.5 truncates to -1: low 8 bits
  EXPECT_EQ(rgb_of(rec, {50, 0, 0, 0, 0, 0})[2], 0);     // -0.5 truncates to 0
  DisplaySetPreviewB(1, NAN, 0, 0, 0, 0, 0);
  EXPECT_EQ(rgb_of(rec, {50, 0, 0, 0, 0, 0})[2], 0);
}

TEST_F(KalvorTest, PreviewFlagsAreStoredOnly) {
  using Set = void (*)(uint32_t, uint8_t);
  using Get = uint8_t (*)(uint32_t);
  struct Case { Set set; Get get; uint8_t initial; };
  for (Case c : {Case{displaysetpreviewflag, displaygetpreviewflag, 0},
                 Case{displaysetbeamshowflag, displaygetbeamshowflag, 1},
                 Case{displaysetgraficflag, displaygetgraficflag, 1}}) {
    EXPECT_EQ(c.get(4), c.initial);
    c.set(4, 200);
    EXPECT_EQ((Bytes{c.get(4), c.get(5)}), (Bytes{200, c.initial}));
  }
  EXPECT_EQ(rec.count(), 0);
}
