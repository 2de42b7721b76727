// Colour buffers: entries, defaults, palette command, rotation, cross-fade,
// palette and RGB files, true colour and colour scale.
#include <cmath>

#include "support/harness.h"

using namespace kt;

namespace {

// The six channels of entry `index` of a buffer of scanner 1.
Bytes channels(uint8_t buffer, uint8_t index) {
  Bytes e = colour_entry(1, buffer, index);
  return Bytes(e.begin(), e.begin() + 6);
}

// Channel byte 0 of entries 0..63.
Bytes first_bytes(uint8_t buffer) {
  Bytes out;
  for (uint8_t i = 0; i < 64; ++i) out.push_back(channels(buffer, i)[0]);
  return out;
}

// Buffer with entry i = (v(i), 0, 0, 0, 0, v(i)).
template <typename F>
void fill(uint8_t buffer, F v) {
  for (uint8_t i = 0; i < 64; ++i) displaysetcolorbuffer(1, buffer, i, uint8_t(v(i)), 0, 0, 0, 0, uint8_t(v(i)));
}

Bytes expected(int (*v)(int)) {
  Bytes out;
  for (int i = 0; i < 64; ++i) out.push_back(uint8_t(v(i)));
  return out;
}

}  // namespace

TEST_F(KalvorTest, EntriesAndDefaultsLeaveTheRestAlone) {
  displayinitcolorbuffer(1, 2, 9);
  displaydefaultcolorbuffer(1, 2);
  EXPECT_EQ(colour_entry(1, 2, 2), (Bytes{255, 0, 255, 0, 255, 255, 255, 127, 127}));
  EXPECT_EQ(colour_entry(1, 2, 63), Bytes(9, 9));
  displaysetcolorbuffer(1, 2, 63, 1, 2, 3, 4, 5, 6);
  displaysetcolorbufferrgb(1, 2, 63, 7, 8, 9);
  displaysetcolorbuffer(1, 2, 64, 0, 0, 0, 0, 0, 0);  // ignored
  displaysetcolorbuffer(1, 8, 0, 0, 0, 0, 0, 0, 0);   // no buffer 8
  EXPECT_EQ(concat({colour_entry(1, 2, 63), colour_entry(1, 2, 0)}), concat({{1, 2, 3, 4, 5, 6, 7, 8, 9}, Bytes(9, 255)}));
  uint8_t c[6] = {42, 42, 42, 42, 42, 42};
  displaygetcolorbuffer(1, 2, 200, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
  displaygetcolorbufferrgb(1, 2, 64, &c[0], &c[1], &c[2]);
  EXPECT_EQ(Bytes(c, c + 6), Bytes(6, 42));
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, PaletteCommandCarriesTheBufferNotWhatSetpalWrote) {
  displayinitcolorbuffer(1, 4, 0);
  displaysetcolorbuffer(1, 4, 5, 10, 11, 12, 13, 14, 15);
  displaysetpal(1, 5, 1, 2, 3, 4, 5, 6);
  uint8_t c[6];
  displaygetpal(1, 5, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
  EXPECT_EQ(Bytes(c, c + 6), (Bytes{1, 2, 3, 4, 5, 6}));
  displayupdatepal(1, 4);
  EXPECT_EQ(rec.last().bytes, concat({{0x05, 0x40}, Bytes(5 * 6, 0), {10, 11, 12, 13, 14, 15}, Bytes(58 * 6, 0)}));
  displaygetpal(1, 5, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
  EXPECT_EQ(Bytes(c, c + 6), (Bytes{10, 11, 12, 13, 14, 15}));
}

TEST_F(KalvorTest, RotationAndCrossFadeBlendWithWrapAndWorkInPlace) {
  fill(0, [](int i) { return i * 4; });
  auto rotated = [](double phase, int first = 0, int last = 63) {
    displayinitcolorbuffer(1, 1, 0x55);
    displaycolorrotation(1, phase, 0, 1, first, last);
    return first_bytes(1);
  };
  EXPECT_EQ(rotated(0.0), expected([](int i) { return i * 4; }));
  EXPECT_EQ(rotated(1.0 / 64), expected([](int i) { return (i + 1) % 64 * 4; }));
  EXPECT_EQ(rotated(-1.0 / 64), expected([](int i) { return (i + 63) % 64 * 4; }));
  // A phase beyond the 32-bit range holds s at 2^31 - 1, reduced like any other.
  EXPECT_EQ(rotated(1e300), expected([](int i) { return (i + 63) % 64 * 4; }));
  EXPECT_EQ(rotated(0.5 / 64), expected([](int i) { return i == 63 ? 126 : i * 4 + 2; }));
  EXPECT_EQ(rotated(NAN), Bytes(64, 0));
  EXPECT_EQ(rotated(0.25, 70, -5), Bytes(64, 0x55));  // limited to 63 and 0: empty
  // Entries 10..13 take source entries 0..3 (n = 4), shifted by one.
  EXPECT_EQ(rotated(0.25, 10, 13),
            expected([](int i) { return i == 10 ? 12 : i == 11 ? 0 : i == 12 ? 4 : i == 13 ? 8 : 0x55; }));

  fill(2, [](int i) { return i % 2 ? 255 : 0; });
  displaycolorrotation(1, 0.5 / 64, 2, 3, 0, 63);
  EXPECT_EQ(channels(3, 0), (Bytes{127, 0, 0, 0, 0, 127}));
  displaycolorrotation(1, -0.5 / 64, 2, 3, 0, 63);  // 0 - 255 x 0.5 = -127: low 8 bits
  EXPECT_EQ(channels(3, 0)[0], 129);

  // In place: entry 63 reads entry 0, which already holds the old entry 1.
  displaycolorrotation(1, 1.0 / 64, 0, 0, 0, 63);
  EXPECT_EQ(first_bytes(0), expected([](int i) { return i == 63 ? 4 : (i + 1) * 4; }));

  // Cross-fade blends the same way, position by position.
  fill(0, [](int i) { return i < 32 ? 0 : 100; });
  fill(1, [](int i) { return i < 32 ? 255 : 200; });
  displaycolorcrossfade(1, 0.5, 0, 1, 2, 0, 63);
  EXPECT_EQ(channels(2, 0), (Bytes{127, 0, 0, 0, 0, 127}));
  displaycolorcrossfade(1, 2.0, 0, 1, 2, 0, 63);
  EXPECT_EQ(channels(2, 40)[0], 44);  // 300 - 256
  displayinitcolorbuffer(1, 2, 9);
  displaycolorcrossfade(1, 1.0, 0, 1, 2, -10, 0);
  displaycolorcrossfade(1, 1.0, 0, 1, 2, 63, 62);  // empty
  EXPECT_EQ((Bytes{channels(2, 0)[0], channels(2, 1)[0], channels(2, 63)[0]}), (Bytes{255, 9, 9}));
  displaycolorcrossfade(1, 1.0, 0, 1, 0, 0, 200);  // into the from buffer
  EXPECT_EQ(channels(0, 63), (Bytes{200, 0, 0, 0, 0, 200}));
}

TEST_F(KalvorTest, PaletteAndRgbFilesRoundTripAndToleratePoorFiles) {
  for (uint8_t i = 0; i < 64; ++i) {
    displaysetcolorbuffer(1, 0, i, i, 1, 2, 3, 4, 5);
    displaysetcolorbufferrgb(1, 0, i, 9, 8, i);
  }
  std::string pal = temp_path("colours.PAL");
  displaysavepal(1, 0, pal.c_str());
  Bytes file = read_file(pal);
  ASSERT_EQ(file.size(), 576u);
  EXPECT_EQ(Bytes(file.begin() + 9, file.begin() + 18), (Bytes{9, 8, 1, 1, 1, 2, 3, 4, 5}));
  displayloadpal(1, 5, pal.c_str());
  EXPECT_EQ(colour_entry(1, 5, 63), (Bytes{63, 1, 2, 3, 4, 5, 9, 8, 63}));
  EXPECT_EQ(rec.last().bytes[0], 0x05);  // the loaded buffer is sent

  // Any other extension, or none, reads three-byte records; a short file
  // leaves the entries past its end, and a partial record, alone.
  for (std::string name : {"short.rgb", "short"}) {
    std::string path = temp_path(name);
    write_file(path, {10, 20, 30, 40, 50, 60, 70});
    displayloadpal(1, 5, path.c_str());
    EXPECT_EQ(colour_entry(1, 5, 1), (Bytes{40, 50, 60, 0, 0, 0, 40, 50, 60}));
    EXPECT_EQ(channels(5, 2), (Bytes{2, 1, 2, 3, 4, 5}));
  }
  displayloadRGB(1, 6, pal.c_str());
  EXPECT_EQ(channels(6, 3), (Bytes{9, 8, 1, 0, 0, 0}));  // bytes 9..11 of the file

  rec.clear();
  displayloadpal(1, 5, temp_path("missing.pal").c_str());
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, TrueColourTableAndColourScale) {
  displaysettruecolor(1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9);
  displaysettruecolor(1, 28, 9, 8, 7, 6, 5, 4, 3, 2, 1);
  displayinittrack(1);
  displayframe(1, 0, 1);  // track 0 active: its first bytes follow the table's end
  displayupdate(1);
  const std::vector<Bytes> upload = rec.bytes();
  // Ignored: the track fields that follow the table in the record stay.
  displaysettruecolor(1, 29, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE);
  rec.clear();
  displayupdate(1);
  EXPECT_EQ(rec.bytes(), upload);
  displayupdatetruecolor(1, 0x77);
  EXPECT_EQ(rec.last().bytes,
            concat({{0x34, 0x77, 1, 2, 3, 4, 5, 6, 7, 8, 9}, Bytes(27 * 9, 0), {9, 8, 7, 6, 5, 4, 3, 2, 1}}));

  displaycscale(1, -1, 0.5, 2, 1, 0, NAN);
  // Each scale is held to 0..1; NaN passes the limits as it is.
  EXPECT_EQ(rec.last().bytes, concat({{0x18}, le_bytes(0.0), le_bytes(0.5), le_bytes(1.0), le_bytes(1.0), le_bytes(0.0),
                                      le_bytes(double(NAN))}));
}
