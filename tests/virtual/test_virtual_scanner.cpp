// The virtual scanner seen through kalvor's exports: its picture memory, the
// answer to every query opcode, the state it keeps, and its robustness against
// short commands.
#include <thread>
#include <vector>

#include "points.h"

using namespace kt;

namespace {

const std::vector<Point> kSquare = {{-4096, -4096, 0, 0xC0, 0, 255, 0, 0},
                                    {4096, -4096, 0, 0x80, 2, 0, 255, 0},
                                    {4096, 4096, 7, 0x85, 0, 0, 0, 255}};
const std::vector<Point> kDot = {{100, 200, 0, 0x80, 0, 1, 2, 3}};

using Values = std::vector<double>;

}  // namespace

class VirtualScanner : public VirtualTest {};

TEST_F(VirtualScanner, PictureMemoryStoresAnswersCountsAndClears) {
  upload(1, 5, kSquare);
  upload(1, 9, kDot);
  upload(2, 3, kDot);  // another scanner's memory is separate
  EXPECT_EQ(read_back(1, 5), kSquare);
  EXPECT_EQ(read_back(1, 9), kDot);
  // No picture 7; the highest stored number + 1 on each scanner; two pictures stored.
  EXPECT_EQ((Values{double(displaygetpic(1, 7)), double(GetMaxPic(1)), double(GetMaxPic(2)),
                    double(virtual_scanner_pictures(1))}),
            (Values{0, 10, 4, 2}));

  displaysetpic(1, 9, 0);  // an empty picture is no picture
  Values after{double(GetMaxPic(1))};
  clearpicmem(1);
  after.insert(after.end(), {double(GetMaxPic(1)), double(displaygetpic(1, 5)), double(GetMaxPic(2))});
  EXPECT_EQ(after, (Values{6, 0, 0, 4}));
}

TEST_F(VirtualScanner, PreviewsShowTheActiveTracksDirectPointsOrNothing) {
  upload(1, 5, kSquare);
  displayinittrack(1);
  displayframe(1, 2, 5);
  displaysize(1, 2, 0.5, 2.0);
  DisplayShiftX(1, MAKEMASK(2), 0, 0, 0.5);  // + 32767 units
  displaypointrate(1, 1);                     // 1000 points per second
  // 3 points, the second output 3 times: 5 points, 5 ms.
  EXPECT_EQ((Values{double(displayupdate(1)), double(displayvisualupdate(1)), double(GetInterpolatedPointCnt(1))}),
            (Values{5, 5, 5}));
  uint16_t count = 0, x = 0, y = 0;
  uint32_t value = 0;
  uint8_t status = 0, r = 0, g = 0, b = 0;
  auto preview = [&](uint16_t i) {
    displaygetpreviewbuffervector(1, i, &x, &y, &status, &r, &g, &b);
    return Values{double(count), double(int16_t(x)), double(int16_t(y)), double(status), double(r), double(b)};
  };
  displayupdatepreviewbuffer(1, &count, &value);
  EXPECT_EQ(value, 5u);
  EXPECT_EQ(preview(0), (Values{3, 30719, -8192, 0xC0, 255, 0}));  // x = -4096 * 0.5 + 32767, y = -4096 * 2
  EXPECT_EQ(preview(1)[1], 32767);  // 34815 does not fit 16 bits: held at the edge
  // The full and Vistrel previews carry 32-bit coordinates; beyond the field
  // the point is not held but dark: the clip box starts at the field's edges.
  displayupdatefullpreviewbuffer(1, &count, &value);
  EXPECT_EQ(frame(1), (std::vector<Out>{{30719, -8192, 0xC0, 255, 0, 0}, {34815, -8192, 0xC0, 0, 255, 0},
                                        {34815, 8192, 0xC5, 0, 0, 255}}));
  displayupdatevistrelbuffer(1, &count, &value);
  EXPECT_EQ(count, 3);

  // Direct points: the first parameter is the number of points shown.
  displaydirectpoint(1, 0, 10, 20, 1, 2, 3, 4, 5, 6, 0x80);
  displaydirectpoint(1, 1, 30, 40, 9, 9, 9, 0, 0, 0, 0xC0);
  displaydirectpoint(1, 2, 50, 60, 9, 9, 9, 0, 0, 0, 0x80);
  displaydirect(1, 2, 0, 0);
  displaygetpreviewbuffercnt(1, &count);
  EXPECT_EQ(preview(0), (Values{2, 10, 20, 0x80, 1, 3}));
  // A raster frame, or a track upload with no active track, shows nothing.
  displayrasterframe(1, 1, 2, 3, 4, 0.5, 6, 7, 8, 9, 10, 11, 12, 0.1, 0.2, 0.3, 0.4, 0.5, 18);
  displaygetpreviewbuffercnt(1, &count);
  EXPECT_EQ(count, 0);
  displaycleartrack(1);
  EXPECT_EQ(displayupdate(1), 0u);
}

TEST_F(VirtualScanner, KeepsWhatItIsSentAndAnswersItsSettings) {
  Values got{double(displaygetversion(1)), double(GetRouting(7)), double(GetInvertX(1)), double(GetInvertY(1)),
             double(GetSwapXY(1)), double(SoftwareGetCRC(1)), double(HWManagerGetStatus(1))};
  for (auto step : {StartHWManager, ShowHWManager, HideHWManager}) {
    step(1);
    got.push_back(HWManagerGetStatus(1));
  }
  EXPECT_EQ(got, (Values{0x00010000, 7, 0, 0, 0, 0, 0, 1, 2, 1}));

  std::string firmware = temp_path("firmware.bin");
  write_file(firmware, Bytes{'1', '2', '3', '4', '5', '6', '7', '8', '9'});
  softwareupdate(1, firmware.c_str());
  EXPECT_EQ(SoftwareGetCRC(1), 0xCBF43926u);  // the CRC-32 of "123456789"

  upload(1, 3, kDot);
  displaysignal(1, 5);
  displayshutter(1, 1);
  displayenabledmxin(1, 1);
  displaypointrate(1, 12);
  uint8_t a = 0, b = 0, c = 0;
  uint32_t rate = 0, stored = 0, total = 0, frame = 9, version = 0;
  GetDeviceSettings(1, &a, &b, &c, &rate, &stored, &total, &frame, &version);
  EXPECT_EQ((std::vector<uint32_t>{a, b, c, rate, stored, total, frame, version}),
            (std::vector<uint32_t>{5, 1, 1, 12000, 1, 4, 0, 0x00010000}));

  // World shift and size: as last set, shift 0 and size 1 before.
  int32_t sx = 1, sy = 1;
  double zx = 0, zy = 0;
  displayworldgetshiftsize(1, 4, &sx, &sy, &zx, &zy);
  Values world{double(sx), double(sy), zx, zy};
  displayworldsetshiftsize(1, 4, -100, 200, 0.5, 1.5, 0, 0, 0, 0, 0);
  displayworldgetshiftsize(1, 4, &sx, &sy, &zx, &zy);
  world.insert(world.end(), {double(sx), double(sy), zx, zy});
  EXPECT_EQ(world, (Values{0, 0, 1, 1, -100, 200, 0.5, 1.5}));

  // The palette, DMX, geometry net and copied files it keeps.
  uint8_t entries[384] = {};
  EXPECT_EQ(virtual_scanner_palette(1, entries), 0u);
  displaydefaultcolorbuffer(1, 0);
  displayupdatepal(1, 0);
  EXPECT_EQ(virtual_scanner_palette(1, entries), 0x05u);
  EXPECT_EQ((Bytes(entries + 18, entries + 24)), (Bytes{255, 0, 0, 0, 0, 0}));  // default entry 3
  displayinitcolorbuffer(1, 3, 9);
  displayreset(1, 3);
  EXPECT_EQ(virtual_scanner_palette(1, entries), 0x1Bu);
  EXPECT_EQ(entries[383], 9);

  displaysetdmx(1, 7, 200);
  EXPECT_EQ((Values{double(displaygetdmx(1, 7)), double(displaygetdmx(1, 8))}), (Values{200, 0}));  // input wired to output

  displayinitgeonet(1);
  displayupdategeonet(1, 3);
  Bytes geonet(1946);
  ASSERT_EQ(virtual_scanner_last_command(1, 0x29, geonet.data(), 1946), 1946u);
  EXPECT_EQ(geonet[1], 3);

  Bytes data(2500), copied(3000);
  for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<uint8_t>(i * 7);
  std::string path = temp_path("show.bin");
  write_file(path, data);
  displaycopyfile(1, path.c_str());
  char name[256] = {};
  EXPECT_EQ(virtual_scanner_file(1, name, copied.data(), 3000), 2500u);
  EXPECT_EQ(path.substr(path.find_last_of("/\\") + 1), name);
  EXPECT_EQ(Bytes(copied.begin(), copied.begin() + 2500), data);
}

#if !(defined(_WIN32) && !defined(_WIN64))  // 32-bit Windows decorates the __stdcall name
extern "C" uint32_t NetScanCommand(uint32_t scanner, uint8_t* bytes, uint32_t length, uint8_t* reply);

// Every opcode, sent with every length up to 40 bytes of junk, never reads
// past the command (the sanitizer stage checks) nor writes past its answer's
// size; nothing answers for a scanner outside 1..20.
TEST_F(VirtualScanner, ShortCommandsNeverOverrunEitherArea) {
  const std::pair<int, uint32_t> answers[] = {
      {0x04, 90117}, {0x09, 36},     {0x1E, 36},     {0x14, 27},     {0x22, 4},      {0x2B, 4},
      {0x2E, 1},     {0x70, 4},      {0x71, 1},      {0x72, 1},      {0x73, 1},      {0x74, 1},
      {0x75, 2},     {0x78, 1},      {0x7C, 23},     {0x01, 176006}, {0x16, 176006}, {0x06, 176006},
      {0x2F, 176006}, {0x33, 176006}, {0x7B, 240006}, {0x7E, 240006}};
  upload(1, 0xFFFF, kSquare);  // a picture whose number the junk names
  for (int opcode = 0; opcode < 256; ++opcode) {
    uint32_t size = 0;
    for (const auto& [op, bytes] : answers)
      if (op == opcode) size = bytes;
    for (uint32_t length = 1; length <= 40; ++length) {
      Bytes command(length, 0xFF), reply(size + 64, 0xAA);
      command[0] = static_cast<uint8_t>(opcode);
      NetScanCommand(1, command.data(), length, reply.data());
      for (size_t i = size; i < reply.size(); ++i) ASSERT_EQ(reply[i], 0xAA) << opcode << " " << length;
    }
  }
  Bytes query{0x22}, reply(4, 0xAA);
  EXPECT_EQ(NetScanCommand(21, query.data(), 1, reply.data()), 0u);
  EXPECT_EQ(reply, Bytes(4, 0xAA));
}
#endif

TEST_F(VirtualScanner, ScannersMayBeDrivenFromSeveralThreads) {
  std::vector<std::thread> threads;
  for (uint32_t s = 1; s <= 8; ++s)
    threads.emplace_back([s] {
      for (uint16_t n = 1; n <= 50; ++n) upload(s, n, kSquare);
    });
  for (auto& t : threads) t.join();
  for (uint32_t s = 1; s <= 8; ++s) EXPECT_EQ(read_back(s, 50), kSquare);
}
