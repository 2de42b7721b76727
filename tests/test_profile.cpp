// The profile section of a scanner, read from real files, and its identity.
#include <string>

#include "support/harness.h"

using namespace kt;

namespace {

class Profile : public KalvorTest {
 protected:
  // Writes the profile file and restarts the library so that it takes the name.
  void use_profile(const std::string& text) {
    std::string path = temp_path("profile.ini");
    write_file(path, Bytes(text.begin(), text.end()));
    restart(path);
  }
  void TearDown() override {
    restart(temp_path("missing.ini"));
    KalvorTest::TearDown();
  }
  void restart(const std::string& profile) {
    set_env("KALVOR_PROFILE", profile.c_str());
    DisplayExit();
    DisplayInit();
    rec.clear();
  }

  // Colour-matrix row `row` (0 R, 1 G, 2 B) as bytes: point k of a preview
  // answer has channel k at 200, so each byte is the weight times 200.
  Bytes matrix_row(uint32_t scanner, int row) {
    Bytes answer = concat({le_bytes<uint16_t>(6), le_bytes<uint32_t>(0)});
    for (int k = 0; k < 6; ++k) {
      Bytes point(11, 0);
      point[4 + k] = 200;
      answer = concat({answer, point});
    }
    rec.set_reply(0x06, answer);
    displayupdatepreviewbuffer(scanner, nullptr, nullptr);
    Bytes out;
    for (uint16_t k = 0; k < 6; ++k) {
      uint8_t rgb[3];
      displaygetpreviewbuffervector(scanner, k, nullptr, nullptr, nullptr, &rgb[0], &rgb[1], &rgb[2]);
      out.push_back(rgb[row]);
    }
    return out;
  }

  std::string names(uint32_t scanner) {
    char send[16], receive[16];
    getsendname(scanner, send);
    getreceivename(scanner, receive);
    return std::string(send) + "/" + receive;
  }
};

}  // namespace

TEST_F(Profile, WithoutAFileEverythingTakesItsDefault) {
  displaysignal(1, 9);
  DisplaySetPreviewR(1, 0, 0, 0, 0, 0, 1);
  rec.clear();
  EXPECT_EQ(getscannerprofile(1), 0);
  EXPECT_EQ(displaygetsignal(1), 2);
  EXPECT_EQ(names(1), "MASTER/SLAVE");
  EXPECT_EQ(matrix_row(1, 0), (Bytes{200, 0, 0, 0, 0, 0}));
  EXPECT_EQ(matrix_row(1, 1), (Bytes{0, 200, 0, 0, 0, 0}));
  EXPECT_EQ(matrix_row(1, 2), (Bytes{0, 0, 200, 0, 0, 0}));
  EXPECT_EQ(rec.count(), 3);  // only the three preview refreshes: the profile sends nothing
}

TEST_F(Profile, SectionSetsNamesSignalAndMatrix) {
  use_profile("[3]\nMasterName=PC1\nSlaveName=LAS1\nSignal=260\nC3ToR=0.5\n");
  EXPECT_EQ(getscannerprofile(3), 1);
  EXPECT_EQ(names(3), "PC1/LAS1");
  EXPECT_EQ(displaygetsignal(3), 4);
  EXPECT_EQ(matrix_row(3, 0), (Bytes{200, 0, 0, 100, 0, 0}));
}

TEST_F(Profile, IniRulesOnAnAwkwardFile) {
  use_profile(
      "; leading comment\r\n"
      "[1]\r\nMasterName=only master\r\nSignal=7\r\n"
      "\r\n  [3]  \r\n"
      "  masterNAME   =   \"Quoted Name\"   \r\n"
      "SLAVENAME='LAS 2'\r\n"
      "; SlaveName=commented out\r\n"
      "Signal =  -3 \r\n"
      "C0ToR = 2.5e-1\r\n"
      "c1tor=   +0.75xyz\r\n"
      "C2ToR=abc\r\n"
      "C3ToR=   -0.25\r\n"
      "C0ToG=\r\n"
      "SlaveName=second\r\n"
      "[3]\r\nSignal=9\r\nC1ToB=1\r\n"
      "[5]\nC0ToG=1e999\nC1ToB=.5\nC2ToB=--1\nMasterName=x\nSlaveName=y\nC5ToB=0.5");
  EXPECT_EQ(getscannerprofile(3), 1);
  EXPECT_EQ(names(3), "Quoted Name/LAS 2");  // quotes stripped, first key wins
  EXPECT_EQ(displaygetsignal(3), 253);        // -3, low 8 bits
  // -0.25 x 200 = -50 keeps its low 8 bits; an empty value is 0.0, a missing key its default.
  EXPECT_EQ(matrix_row(3, 0), (Bytes{50, 150, 0, 206, 0, 0}));
  EXPECT_EQ(matrix_row(3, 1), (Bytes{0, 200, 0, 0, 0, 0}));
  EXPECT_EQ(matrix_row(3, 2), (Bytes{0, 0, 200, 0, 0, 0}));  // the repeated [3] is not read

  // Only one name: signal and matrix still change, the names do not.
  EXPECT_EQ(getscannerprofile(1), 0);
  EXPECT_EQ(names(1), "MASTER/SLAVE");
  EXPECT_EQ(displaygetsignal(1), 7);

  // Overflow gives infinity (and infinity x 0 a NaN, which gives 0); a second
  // sign starts no number; a last line without a newline is read.
  EXPECT_EQ(getscannerprofile(5), 1);
  EXPECT_EQ(matrix_row(5, 1), (Bytes{255, 0, 0, 0, 0, 0}));
  EXPECT_EQ(matrix_row(5, 2), (Bytes{0, 100, 0, 0, 0, 100}));

  EXPECT_EQ(getscannerprofile(4), 0);  // no section: defaults
  EXPECT_EQ(displaygetsignal(4), 2);
}

TEST_F(Profile, NamesOfSixteenCharactersAreIgnored) {
  use_profile("[2]\nMasterName=abcdefghijklmnop\nSlaveName=ok\n");
  EXPECT_EQ(getscannerprofile(2), 1);  // both found, the long one not stored
  EXPECT_EQ(names(2), "MASTER/ok");
  setsendname(2, "fifteen chars!!");
  setreceivename(2, "sixteen chars!!!");
  EXPECT_EQ(names(2), "fifteen chars!!/ok");
  setsendname(2, nullptr);
  EXPECT_EQ(names(2), "fifteen chars!!/ok");
}

TEST_F(Profile, LastErrorDebugSwitchAndPrint) {
  EXPECT_EQ(getlasterror(1), 0);
  setnetworkdebug(1, 1);
  DumpAdapterStatus();
  EXPECT_EQ(rec.count(), 0);
  rec.set_print_result(77);
  EXPECT_EQ(displayprint(1234), 77u);
  EXPECT_EQ(rec.last_print(), 1234u);
}
