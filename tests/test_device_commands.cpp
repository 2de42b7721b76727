// Device queries, one-byte commands, Vistrel, firmware upload and file copy.
#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, OneByteCommandsSendTheirOpcodeOnly) {
  struct Case { void (*call)(uint32_t); uint8_t opcode; };
  for (Case c : {Case{ZRKErzeugeFormular, 0x63}, Case{EnableILDAOutput, 0x64}, Case{DisableILDAOutput, 0x65},
                 Case{ShowHWManager, 0x66}, Case{HideHWManager, 0x67}, Case{CheckforUpdate, 0x6F},
                 Case{StartHWManager, 0x77}, Case{EnableILDAOutputonce, 0x79}, Case{Display_Invert_Y, 0x66}}) {
    rec.clear();
    c.call(6);
    ASSERT_EQ(rec.count(), 1);
    EXPECT_EQ(rec.at(0).scanner, 6u);
    EXPECT_EQ(rec.at(0).bytes, Bytes{c.opcode});
    EXPECT_FALSE(rec.at(0).reply);
  }
}

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
    rec.clear();
    EXPECT_EQ(c.call(7), c.preset);  // nothing answers
    rec.set_reply(c.sent[0], c.answer);
    EXPECT_EQ(c.call(7), c.result);
    EXPECT_EQ(rec.last().bytes, c.sent);
    EXPECT_TRUE(rec.last().reply);
  }
}

TEST_F(KalvorTest, DeviceSettingsSpreadOverEightOuts) {
  rec.set_reply(0x7C, concat({{1, 2, 3}, le_bytes<uint32_t>(4), le_bytes<uint32_t>(5), le_bytes<uint32_t>(6),
                              le_bytes<uint32_t>(7), le_bytes<uint32_t>(0x89ABCDEF)}));
  uint8_t a = 0, b = 0, c = 0;
  uint32_t d = 0, e = 0, f = 0, g = 0, h = 0;
  GetDeviceSettings(9, &a, &b, &c, &d, &e, &f, &g, &h);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x7C, 9}));
  EXPECT_EQ((std::vector<uint32_t>{a, b, c, d, e, f, g, h}),
            (std::vector<uint32_t>{1, 2, 3, 4, 5, 6, 7, 0x89ABCDEF}));
  GetDeviceSettings(9, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

TEST_F(KalvorTest, VistrelSwitchesTheFollowUpOfEveryUpload) {
  SetVistrel(2, 1);
  EXPECT_EQ(rec.last().scanner, 2u);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x7D, 0x01}));
  rec.clear();
  displayupdate(5);
  ASSERT_EQ(rec.count(), 3);
  EXPECT_EQ(rec.at(2).bytes, Bytes{0x7E});
  SetVistrel(1, 200);  // negative as a signed byte: off
  rec.clear();
  displayupdate(5);
  EXPECT_EQ(rec.count(), 2);
  SetVistrel(21, 1);  // no such scanner: nothing changes
  rec.clear();
  displayupdate(5);
  EXPECT_EQ(rec.count(), 2);
}

TEST_F(KalvorTest, NameHelpAndLptCommands) {
  SetExportILDAName(1, "show.ild");
  Bytes b = rec.last().bytes;
  ASSERT_EQ(b.size(), 256u);
  EXPECT_EQ(b[0], 0x76);
  EXPECT_EQ(std::string(b.begin() + 1, b.begin() + 9), "show.ild");
  EXPECT_EQ(Bytes(b.begin() + 9, b.end()), Bytes(247, 0));
  SetExportILDAName(1, std::string(300, 'x').c_str());
  b = rec.last().bytes;
  EXPECT_EQ(Bytes(b.begin() + 1, b.end()), Bytes(255, 'x'));  // cut to the field, no zero
  Showhelp(3);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x6E, 3, 0, 0, 0}));
  EXPECT_EQ(rec.last().scanner, 3u);
  displaywritelpt(1, 0x12, 0x3456);
  EXPECT_EQ(rec.last().bytes, (Bytes{0x11, 0x12, 0x56, 0x34}));
}

TEST_F(KalvorTest, SoftwareUpdateNeverReadsPastItsRoom) {
  auto upload = [&](size_t size) {
    Bytes data(size);
    for (size_t i = 0; i < size; ++i) data[i] = uint8_t(i * 7);
    std::string path = temp_path("firmware.bin");
    write_file(path, data);
    rec.clear();
    softwareupdate(1, path.c_str());
    EXPECT_EQ(rec.count(), 1);
    return std::make_pair(data, rec.last().bytes);
  };
  auto [data, sent] = upload(10);
  EXPECT_EQ(sent, concat({{0x23, 10, 0}, data}));
  std::tie(data, sent) = upload(65535);  // cut to the 65,001 bytes of room
  ASSERT_EQ(sent.size(), 65004u);
  EXPECT_EQ(le<uint16_t>(sent, 1), 65001);
  EXPECT_EQ(Bytes(sent.begin() + 3, sent.end()), Bytes(data.begin(), data.begin() + 65001));
  std::tie(data, sent) = upload(65536 + 4);  // the length's low 16 bits
  EXPECT_EQ(sent, concat({{0x23, 4, 0}, Bytes(data.begin(), data.begin() + 4)}));
  rec.clear();
  softwareupdate(1, temp_path("missing.bin").c_str());
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, CopyFileSendsHeaderThenBlocks) {
  for (size_t size : {2500u, 2048u, 0u}) {
    Bytes data(size);
    for (size_t i = 0; i < size; ++i) data[i] = uint8_t(i % 251);
    std::string path = temp_path("data.bin");
    write_file(path, data);
    rec.clear();
    displaycopyfile(4, path.c_str());
    size_t blocks = (size + 1023) / 1024;
    ASSERT_EQ(rec.count(), int(1 + blocks));
    Bytes header = rec.at(0).bytes;
    ASSERT_EQ(header.size(), 263u);
    EXPECT_EQ(header[0], 0x2A);
    std::string name = path.substr(path.find_last_of("/\\") + 1);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&header[1])), name);
    EXPECT_EQ(le<uint32_t>(header, 257), size);
    EXPECT_EQ(le<uint16_t>(header, 261), blocks);
    for (size_t k = 0; k < blocks; ++k) {
      Bytes block = rec.at(int(1 + k)).bytes;
      ASSERT_EQ(block.size(), 1026u);
      size_t count = std::min<size_t>(1024, size - 1024 * k);
      EXPECT_EQ(le<uint16_t>(block, 0), count);
      EXPECT_EQ(Bytes(block.begin() + 2, block.begin() + 2 + long(count)),
                Bytes(data.begin() + long(1024 * k), data.begin() + long(1024 * k + count)));
      EXPECT_EQ(Bytes(block.begin() + 2 + long(count), block.end()), Bytes(1024 - count, 0));
    }
  }
  rec.clear();
  displaycopyfile(4, temp_path("missing.bin").c_str());
  EXPECT_EQ(rec.count(), 0);
}
