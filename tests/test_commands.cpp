// Commands sent at once with no answer: each row is one call on scanner 6 and
// the exact bytes the scanner receives.
#include <cmath>
#include <tuple>

#include "track_probe.h"

using namespace kt;

TEST_F(KalvorTest, CommandsCarryTheirValues) {
  struct Case { void (*call)(); Bytes bytes; };
  const Case cases[] = {
      // output and rates
      {[] { displayshutter(6, 7); }, {0x28, 7}},
      {[] { displayfreq(6, 0x01020304); }, {0x02, 4, 3, 2, 1}},
      {[] { displaypointrate(6, 12); }, {0x02, 0xE0, 0x2E, 0, 0}},
      {[] { displaypointrate(6, 255); }, {0x02, 0x18, 0xE4, 0x03, 0}},
      {[] { displaypicpersec(6, 25.0); }, {0x15, 0, 0, 0, 0, 0, 0, 0x39, 0x40}},
      {[] { displayenablewait(6); }, {0x26}},
      {[] { displayendsession(6); }, {0xFF}},
      {[] { displaybeamparking(6, 3); }, {0x0D, 3}},
      {[] { displaytostartpoint(6, 51); }, {0x1C, 50}},
      {[] { displaytostartpoint(6, 50); }, {0x1C, 50}},
      // scan parameters 5, 6, 9 and 10 go out as 1 when 0
      {[] { displayscanpar(6, 1, 2, 3, 4, 0, 0, 7, 8, 0, 0, 0, 0); },
       {0x25, 1, 2, 3, 4, 1, 0, 1, 0, 7, 8, 1, 0, 1, 0, 0, 0, 0, 0}},
      {[] { displayscanpar(6, 0, 0, 0, 0, 0x0506, 0x0708, 0, 0, 0x0B0C, 0x0D0E, 0x0F10, 0x1112); },
       {0x25, 0, 0, 0, 0, 6, 5, 8, 7, 0, 0, 0x0C, 0x0B, 0x0E, 0x0D, 0x10, 0x0F, 0x12, 0x11}},
      // the scanner's own equipment
      {[] { ZRKErzeugeFormular(6); }, {0x63}},
      {[] { EnableILDAOutput(6); }, {0x64}},
      {[] { DisableILDAOutput(6); }, {0x65}},
      {[] { ShowHWManager(6); }, {0x66}},
      {[] { HideHWManager(6); }, {0x67}},
      {[] { CheckforUpdate(6); }, {0x6F}},
      {[] { StartHWManager(6); }, {0x77}},
      {[] { EnableILDAOutputonce(6); }, {0x79}},
      {[] { Display_Invert_Y(6); }, {0x66}},
      {[] { Showhelp(6); }, {0x6E, 6, 0, 0, 0}},
      {[] { displaywritelpt(6, 0x12, 0x3456); }, {0x11, 0x12, 0x56, 0x34}},
      // colour: sparkle level 0..1 as 0..15 (NaN 0), b2, b4, b5 capped at 15, words at least 100
      {[] { displaysparkle(6, 0x0102, 0x0304, 0x0506, 1.0); }, {0x20, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05, 15}},
      {[] { displaysparkle(6, 0, 0, 0, 0.99); }, {0x20, 0, 0, 0, 0, 0, 0, 14}},
      {[] { displaysparkle(6, 0, 0, 0, -2.0); }, {0x20, 0, 0, 0, 0, 0, 0, 0}},
      {[] { displaysparkle(6, 0, 0, 0, NAN); }, {0x20, 0, 0, 0, 0, 0, 0, 0}},
      {[] { displayequalize(6, 0x0102, 0x0304, 0x0506); }, {0x1F, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05}},
      {[] { displaydynamicint(6, 200, 16, 16, 16, 16, 50, 0x1234); }, {0x17, 200, 15, 16, 15, 15, 100, 0, 0x34, 0x12}},
      {[] { displaydynamicint(6, 1, 2, 3, 4, 5, 100, 99); }, {0x17, 1, 2, 3, 4, 5, 100, 0, 100, 0}},
      // DMX, world geometry net, UGC (u1..u8 fractions of the coordinate range, u9 and u10 as they are)
      {[] { displayupdatedmx(6); }, {0x30}},
      {[] { displayenabledmxin(6, 1); }, {0x31, 0x01}},
      {[] { displayworldgeonet(6, 1, 2, 3, 4, 0xFFEE); }, {0x27, 1, 0, 2, 0, 3, 0, 4, 0, 0xEE, 0xFF}},
      {[] { displaysetugc(6, 0.5, 1, 2, 3, 4, 5, 6, -1, 0.5, 7.25, 0x5A); },
       b(uint8_t{0x2C}, 32767.5, 65535., 131070., 196605., 262140., 327675., 393210., -65535., 0.5, 7.25,
         uint8_t{0x5A})},
  };
  for (const Case& c : cases) {
    rec.clear();
    c.call();
    ASSERT_EQ(rec.count(), 1);
    EXPECT_EQ((std::tuple{rec.at(0).scanner, rec.at(0).bytes, rec.at(0).reply}), (std::tuple{6u, c.bytes, false}));
  }
}
