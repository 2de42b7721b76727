// Device queries, Vistrel, the ILDA export name, firmware upload and file copy.
#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, QueriesReturnTheAnswerOrTheirPreset) {
  struct Case { uint32_t (*call)(uint32_t); Bytes sent; uint32_t preset; Bytes answer; uint32_t result; };
  Case cases[] = {
      {[](uint32_t s) -> uint32_t { return GetRouting(s); }, {0x71, 7}, 0, {0xAB}, 0xAB},
      {[](uint32_t s) -> uint32_t { return GetInvertX(s); }, {0x72, 7}, 0, {1}, 1},
      {[](uint32_t s) -> uint32_t { return GetInvertY(s); }, {0x73, 7}, 0, {2}, 2},
      {[](uint32_t s) -> uint32_t { return GetSwapXY(s); }, {0x74, 7}, 0, {3}, 3},
      {[](uint32_t s) -> uint32_t { return GetInterpolatedPointCnt(s); }, {0x75, 7}, 0, {0x34, 0x12}, 0x1234},
      {[](uint32_t s) -> uint32_t { return HWManagerGetStatus(s); }, {0x78}, 99, {5}, 5},
      {[](uint32_t s) { return SoftwareGetCRC(s); }, {0x70}, 0, {1, 2, 3, 4}, 0x04030201},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.call(7), c.preset);  // nothing answers
    rec.set_reply(c.sent[0], c.answer);
    EXPECT_EQ(c.call(7), c.result);
    EXPECT_EQ(rec.last().bytes, c.sent);
    EXPECT_TRUE(rec.last().reply);
  }
  // The device settings spread one answer over eight outs.
  rec.set_reply(0x7C, concat({{1, 2, 3}, le_bytes<uint32_t>(4), le_bytes<uint32_t>(5), le_bytes<uint32_t>(6),
                              le_bytes<uint32_t>(7), le_bytes<uint32_t>(0x89ABCDEF)}));
  uint8_t a = 0, b = 0, c = 0;
  uint32_t d = 0, e = 0, f = 0, g = 0, h = 0;
  GetDeviceSettings(9, &a, &b, &c, &d, &e, &f, &g, &h);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x7C, 9}));
  EXPECT_EQ((std::vector<uint32_t>{a, b, c, d, e, f, g, h}),
            (std::vector<uint32_t>{1, 2, 3, 4, 5, 6, 7, 0x89ABCDEF}));
}

TEST_F(KalvorTest, VistrelSwitchesTheFollowUpOfEveryUpload) {
  // 200 is negative as a signed byte: off; scanner 21 does not exist: no change.
  struct Case { uint32_t scanner; uint8_t flag; int sent; };
  for (Case c : {Case{2, 1, 3}, Case{1, 200, 2}, Case{21, 1, 2}}) {
    SetVistrel(c.scanner, c.flag);
    if (c.scanner == 2) { EXPECT_EQ(rec.last().bytes, (Bytes{0x7D, 0x01})); }
    rec.clear();
    displayupdate(5);
    ASSERT_EQ(rec.count(), c.sent);
    if (c.sent == 3) { EXPECT_EQ(rec.last().bytes, Bytes{0x7E}); }
  }
}

TEST_F(KalvorTest, IldaNameIsCutToItsField) {
  SetExportILDAName(1, "show.ild");
  EXPECT_EQ(rec.last().bytes, concat({{0x76, 's', 'h', 'o', 'w', '.', 'i', 'l', 'd'}, Bytes(247, 0)}));
  SetExportILDAName(1, std::string(300, 'x').c_str());
  EXPECT_EQ(rec.last().bytes, concat({{0x76}, Bytes(255, 'x')}));  // no room for the zero
}

// Firmware: the length field keeps the file length's low 16 bits, cut to the
// 65,001 bytes of room. Copy: a header naming the file, then 1,024-byte blocks.
TEST_F(KalvorTest, FileUploadsNeverReadPastTheirRoom) {
  struct Case { size_t size, firmware; };
  for (Case c : {Case{10, 10}, Case{2048, 2048}, Case{2500, 2500}, Case{0, 0}, Case{65535, 65001},
                 Case{65536 + 4, 4}}) {
    Bytes data(c.size);
    for (size_t i = 0; i < c.size; ++i) data[i] = uint8_t(i % 251);
    std::string path = temp_path("data.bin");
    write_file(path, data);
    rec.clear();
    softwareupdate(1, path.c_str());
    displaycopyfile(4, path.c_str());
    const uint16_t blocks = uint16_t((c.size + 1023) / 1024);
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    std::vector<Bytes> want = {
        concat({{0x23}, le_bytes(uint16_t(c.firmware)), Bytes(data.begin(), data.begin() + long(c.firmware))}),
        concat({{0x2A}, Bytes(name.begin(), name.end()), Bytes(256 - name.size(), 0), le_bytes(uint32_t(c.size)),
                le_bytes(blocks)})};
    for (size_t at = 0; at < c.size; at += 1024) {
      const size_t count = std::min<size_t>(1024, c.size - at);
      want.push_back(concat({le_bytes(uint16_t(count)), Bytes(data.begin() + long(at), data.begin() + long(at + count)),
                             Bytes(1024 - count, 0)}));
    }
    EXPECT_EQ(rec.bytes(), want) << c.size;
  }
  rec.clear();
  displaycopyfile(4, temp_path("missing.bin").c_str());
  softwareupdate(1, temp_path("missing.bin").c_str());
  EXPECT_EQ(rec.count(), 0);
}
