// The profile section of a scanner, read from real files, and its identity.
#include <string>
#include <vector>

#include "support/harness.h"

using namespace kt;
using namespace std::string_literals;  // "..."s keeps NULs

namespace {

class Profile : public KalvorTest {
 protected:
  // Writes the profile file and restarts the library so that it takes the name.
  void use_profile(const std::string& text) {
    std::string path = temp_path("profile" + std::to_string(++files_) + ".ini");
    write_file(path, Bytes(text.begin(), text.end()));
    restart(path);
  }
  int files_ = 0;
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
    for (int k = 0; k < 6; ++k) answer = concat({answer, Bytes(4 + k, 0), Bytes{200}, Bytes(6 - k, 0)});
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

  // "send name/receive name signal".
  std::string identity(uint32_t scanner) {
    char send[16], receive[16];
    getsendname(scanner, send);
    getreceivename(scanner, receive);
    return std::string(send) + "/" + receive + " " + std::to_string(displaygetsignal(scanner));
  }
};

}  // namespace

TEST_F(Profile, WithoutAFileEverythingTakesItsDefault) {
  displaysignal(1, 9);
  DisplaySetPreviewR(1, 0, 0, 0, 0, 0, 1);
  rec.clear();
  EXPECT_EQ(getscannerprofile(1), 0);
  EXPECT_EQ(identity(1), "MASTER/SLAVE 2");
  EXPECT_EQ(concat({matrix_row(1, 0), matrix_row(1, 1), matrix_row(1, 2)}),
            (Bytes{200, 0, 0, 0, 0, 0, 0, 200, 0, 0, 0, 0, 0, 0, 200, 0, 0, 0}));
  EXPECT_EQ(rec.count(), 3);  // only the three preview refreshes: the profile sends nothing
}

TEST_F(Profile, SectionSetsNamesSignalAndDecimalWeightsButOneNameIsNotEnough) {
  use_profile(
      "[1]\r\nMasterName=only master\r\nSignal=7\r\nC1ToB=1\r\n"
      "[2]\nMasterName=PC1\nSlaveName=LAS1\nSignal=260\n"
      "[3]\nC0ToR = 2.5e-1\nc1tor=   +0.75xyz\nC2ToR=abc\nC3ToR=   -0.25\nC0ToG=\n"
      "[5]\nC0ToG=1e999\nC1ToB=.5\nC2ToB=--1\nC5ToB=0.5");
  EXPECT_EQ(getscannerprofile(2), 1);
  EXPECT_EQ(identity(2), "PC1/LAS1 4");
  getscannerprofile(3);
  // -0.25 x 200 = -50 keeps its low 8 bits; an empty value is 0.0, a missing key its default.
  EXPECT_EQ(matrix_row(3, 0), (Bytes{50, 150, 0, 206, 0, 0}));
  EXPECT_EQ(matrix_row(3, 1), (Bytes{0, 200, 0, 0, 0, 0}));
  // Overflow gives infinity (and infinity x 0 a NaN, which gives 0); a second
  // sign starts no number.
  getscannerprofile(5);
  EXPECT_EQ(matrix_row(5, 1), (Bytes{255, 0, 0, 0, 0, 0}));
  EXPECT_EQ(matrix_row(5, 2), (Bytes{0, 100, 0, 0, 0, 100}));

  // Only one name: signal and matrix still change, the names do not.
  EXPECT_EQ(getscannerprofile(1), 0);
  EXPECT_EQ(identity(1), "MASTER/SLAVE 7");
  EXPECT_EQ(matrix_row(1, 2), (Bytes{0, 200, 200, 0, 0, 0}));
}

TEST_F(Profile, NamesOfSixteenCharactersAreIgnoredAndTheRestSendsNothing) {
  use_profile("[2]\nMasterName=abcdefghijklmnop\nSlaveName=ok\n");
  EXPECT_EQ(getscannerprofile(2), 1);  // both found, the long one not stored
  EXPECT_EQ(identity(2), "MASTER/ok 2");
  setsendname(2, "fifteen chars!!");
  setreceivename(2, "sixteen chars!!!");
  setsendname(2, nullptr);
  EXPECT_EQ(identity(2), "fifteen chars!!/ok 2");
  // The last error, the debug switch and the adapter dump send nothing; print is passed on.
  EXPECT_EQ(getlasterror(1), 0);
  setnetworkdebug(1, 1);
  DumpAdapterStatus();
  EXPECT_EQ(rec.count(), 0);
  rec.set_print_result(77);
  EXPECT_EQ(displayprint(1234), 77u);
  EXPECT_EQ(rec.last_print(), 1234u);
}

// UTF-16LE bytes of ASCII-and-beyond text, with the byte-order mark.
static std::string utf16le(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (char16_t c : text) bytes += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
  return bytes;
}

// Files that editors and hand-editing produce, read for scanner 1 as
// Windows's profile functions read them.
TEST_F(Profile, FilesReadAsWindowsReadsThem) {
  struct Row {
    std::string text;
    std::string names;  // MASTER/SLAVE: left as they were
    int signal;
  };
  const std::string bom = "\xEF\xBB\xBF";
  std::vector<Row> rows = {
      // Case, blanks, comments, quotes; the first section and first key win;
      // a comment after a value is part of it.
      {"; c\n  [ 1 ]  \n masterNAME = \"Quoted Name\" \n; SlaveName=x\nSLAVENAME='LAS 2'\nSlaveName=B\n"
       "Signal = -3 ; c\n[1]\nSignal=9\nMasterName=C", "Quoted Name/LAS 2", 253},
      {"[1]\nMasterName=\"A'\nSlaveName=\"\nSignal=\"8\"x", "\"A'/\"", 0},  // unmatched quotes stay
      {"[1]\rMasterName=A\rSlaveName=B\rSignal=5", "A/B", 5},  // lone CRs end lines
      // UTF-8 in Windows-1252: e-acute stays, A-macron becomes A, a bad byte '?'.
      {bom + "[1]\nMasterName=K\xC3\xA9\xC4\x80\xFF\nSlaveName=\xEF\xBC\x90\nSignal=\xEF\xBC\x95", "K\xE9" "A?/0", 0},
      // A multi-byte character across the reader's 4,096-byte blocks.
      {bom + "[1]\n;" + std::string(4075, 'c') + "\nMasterName=\xC3\xA9\nSlaveName=B", "\xE9/B", 2},
      {utf16le(u"[1]\nMasterName=\u20AC\u0100\nSlaveName=\xD800\nSignal=12"), "\x80" "A/?", 12},
      {"[1]\nMasterName=A\x1A\nSlaveName=\x1A" "B\nSignal=7\x1A", "A/B", 7},  // 0x1A is a blank
      {"[1]\nSignal\nSignal=9\nMasterName\nMasterName=A\nSlaveName=B", "MASTER/SLAVE", 2},  // no '=': default
      {"[1]]\nSignal=4\n[1] ]\nSignal=5", "MASTER/SLAVE", 2},  // names run to the last ']'
      {"[1]\nSignal=6\n[2\nSignal=8", "MASTER/SLAVE", 6},       // "[2" is no header
      {"[1\0x]\nSignal=4\nMaster\0Name=A\nMasterName\0x=B\nSlaveName=C\0D"s, "B/C", 4},  // NUL ends names
      {"[1 \0]\nSignal=4"s, "MASTER/SLAVE", 2},
      {"[1]\n;" + std::string(3000, 'c') + "\nSignal=" + std::string(2100, ' ') + "11", "MASTER/SLAVE", 11},
  };
  // Signal values alone. Only 29 characters count; 29 between quotes lose the last one.
  const std::string zeros(27, '0');
  const std::pair<std::string, int> signals[] = {
      {"0x10", 16}, {"-0o17", 241}, {"0b11", 3}, {"0X10", 0}, {"\x01\x0B" "7", 7}, {"\" \"", 0}, {"\"\"", 2},
      {zeros + "005", 0}, {"\"0" + zeros + "5\"", 0}, {"\"" + zeros + "5\"", 5}};
  for (const auto& [value, signal] : signals) rows.push_back({"[1]\nSignal=" + value, "MASTER/SLAVE", signal});
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::PrintToString(row.text.substr(0, 60)));
    use_profile(row.text);
    getscannerprofile(1);
    EXPECT_EQ(identity(1), row.names + " " + std::to_string(row.signal));
  }
}
