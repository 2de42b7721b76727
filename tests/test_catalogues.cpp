// Catalogue and show files: record types, numbering, dispatch by extension,
// the catalogue folder, round trips and malformed files.
#include <filesystem>

#include "pictures_support.h"

using namespace kt;

namespace {

const Bytes A = pt(1, 2, 3, 0x85, 0x01, 10, 20, 30);
const Bytes B = pt(-4, -5, -6, 0xC0, 0x00, 0, 0, 0);

// A catalogue record of type 1 holding n points.
Bytes cat1(int n, const Bytes& points) { return concat({Bytes{1}, u16(static_cast<uint16_t>(n)), points}); }
// A show file of n pictures; each picture is its number, count and points.
Bytes show(int n, const Bytes& pictures) { return concat({Bytes(4, 0), u16(static_cast<uint16_t>(n)), pictures}); }

void cat(const char* p) { loadCAT(1, p); }
void lds(const char* p) { loadLDS(1, p); }
void any(const char* p) { loadcat(1, p); }
void part(const char* p) { loadcatpart(1, 20, 1, p); }

}  // namespace

TEST_F(KalvorTest, CatalogueRecordTypesAndNumbering) {
  set_palette(1, concat({Bytes(21, 0), {70, 71, 72}}));
  std::string path = temp_path("c.cat");
  auto pics = loaded(path,
                     concat({cat1(3, concat({A, B, A})), cat1(0, {}),                                          //
                             Bytes{0, 2, 0}, u16(7), u16(8), u16(9), Bytes{0x47, 2, 1, 0, 1, 0, 1, 0, 1, 0},  //
                             Bytes{2, 9, 9, 9, 9, 1, 0}, B,                                                   //
                             Bytes{3, 9, 9, 9, 9, 2, 0}, u16(5), u16(6), Bytes{3, 0, 0, 0}, u16(5), u16(6),
                             Bytes{0, 0, 0, 1}, Bytes{0x77}, cat1(1, A)}),
                     cat);
  // The empty record and the unknown type use up numbers 2 and 6.
  EXPECT_EQ(numbers(pics), (Numbers{{1, 3}, {3, 2}, {4, 1}, {5, 2}, {7, 1}}));
  EXPECT_EQ(rec.at(0).bytes, Bytes{0x21});
  EXPECT_EQ(pics[0].points, concat({A, B, A}));
  // Type 0 takes its colour from colour buffer 0; type 3 blanks black points.
  EXPECT_EQ(pics[1].points, concat({pt(7, 8, 9, 0x47, 2, 70, 71, 72), pt(1, 1, 1, 0x01, 0, 0, 0, 0)}));
  EXPECT_EQ(pics[2].points, B);
  EXPECT_EQ(pics[3].points, concat({pt(5, 6, 0, 0xC0, 3, 0, 0, 0), pt(5, 6, 0, 0x80, 0, 0, 0, 1)}));

  // Part of a catalogue: records 0..2 of the file as pictures 10..12, without a clear.
  EXPECT_EQ(numbers(sent_by([&] { loadCATpart(1, 10, 2, path.c_str()); })), (Numbers{{10, 3}, {12, 2}}));
  EXPECT_EQ(rec.count(), 2);
}

TEST_F(KalvorTest, LoadcatDispatchesByExtensionInAnyCaseAndLooksInTheCatalogueFolder) {
  Bytes ilda = concat({ilda_header(5, 1), be16(1), be16(1), Bytes{0, 1, 1, 1}});
  Bytes catalogue = concat({cat1(1, A), cat1(1, B), cat1(1, A)});
  std::string s = temp_path("s.LdS"), c = temp_path("c.CAT"), i = temp_path("i.Ild");
  EXPECT_EQ(numbers(loaded(s, show(2, concat({u16(0), u16(1), A, u16(1), u16(0)})), any)), (Numbers{{0, 1}, {1, 0}}));
  EXPECT_EQ(numbers(loaded(c, catalogue, any)), (Numbers{{1, 1}, {2, 1}, {3, 1}}));
  EXPECT_EQ(numbers(loaded(i, ilda, any)), (Numbers{{1, 1}}));
  loaded(temp_path("p.pic"), catalogue, any);
  EXPECT_EQ(rec.count(), 0);
  EXPECT_EQ(numbers(loaded(s, read_file(s), part)), (Numbers{{0, 1}, {1, 0}}));
  EXPECT_EQ(numbers(loaded(c, catalogue, part)), (Numbers{{20, 1}, {21, 1}}));
  EXPECT_EQ(numbers(loaded(i, ilda, part)), (Numbers{{21, 1}}));  // format 5: p + index
  rec.clear();
  savecat(1, temp_path("x.pic").c_str());
  EXPECT_EQ(rec.count(), 0);

  // A missing catalogue is looked for in the catalogue folder.
  std::error_code error;
  bool created = std::filesystem::create_directory("/CAT", error);
  std::string name = "kalvor_test_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + ".cat";
  write_file("/CAT/" + name, cat1(1, A));
  if (read_file("/CAT/" + name).empty()) GTEST_SKIP() << "the catalogue folder cannot be written here";
  auto pics = sent_by([&] { loadcat(1, (temp_path("elsewhere") + "/" + name).c_str()); });
  std::filesystem::remove("/CAT/" + name, error);
  if (created) std::filesystem::remove("/CAT", error);
  EXPECT_EQ(numbers(pics), (Numbers{{1, 1}}));
}

TEST_F(KalvorTest, CatalogueAndShowRoundTrips) {
  rec.emulate_pictures(true);
  for (uint16_t i = 0; i < 3; ++i) DisplaySetPicPoint(1, i, i, 1, 2, 0x80, 0, 4, 5, 6);
  displaysetpic(1, 0, 1);
  displaysetpic(1, 1, 3);
  displaysetpic(1, 2, 2);
  std::string c = temp_path("all.cat"), s = temp_path("all.lds");
  savecat(1, c.c_str());
  savecat(1, s.c_str());
  // The scanner reports 3 pictures: a catalogue holds 1..3 (3 is empty), a show 0..2.
  EXPECT_EQ(numbers(sent_by([&] { any(c.c_str()); })), (Numbers{{1, 3}, {2, 2}}));
  auto pics = sent_by([&] { any(s.c_str()); });
  EXPECT_EQ(numbers(pics), (Numbers{{0, 1}, {1, 3}, {2, 2}}));
  EXPECT_EQ(pics[1].points, concat({pt(0, 1, 2, 0x80, 0, 4, 5, 6), pt(1, 1, 2, 0x80, 0, 4, 5, 6),
                                    pt(2, 1, 2, 0x80, 0, 4, 5, 6)}));
}

TEST_F(KalvorTest, MalformedCataloguesAndShowsStayInsideTheUploadBuffer) {
  // Oversized records are passed over whole; a record cut inside its points
  // is sent with its count, the rest blanked.
  Bytes file = concat({Bytes{0}, u16(9000), Bytes(8 * 9000, 0x5A), Bytes{1}, u16(9000), Bytes(11 * 9000, 0x5A),
                       cat1(1, A), cat1(3, A)});
  auto pics = loaded(temp_path("bad.cat"), file, cat);
  EXPECT_EQ(numbers(pics), (Numbers{{3, 1}, {4, 3}}));
  EXPECT_EQ(pics.at(1).points, concat({A, kMissing, kMissing}));
  // Empty, or cut inside a record head: only the clear is sent.
  for (const Bytes& cut : {Bytes{}, Bytes{1}, Bytes{1, 5}, Bytes{2, 0, 0, 0, 0, 1}, Bytes{3, 0}}) {
    loaded(temp_path("cut.cat"), cut, cat);
    EXPECT_EQ(rec.count(), 1);
  }

  // Show: more than 8192 points keeps 8192 and stays in step; then the file ends inside a record.
  pics = loaded(temp_path("bad.lds"),
                show(3, concat({u16(0), u16(9000), Bytes(11 * 9000, 0x11), u16(1), u16(1), B, u16(2), u16(1)})), lds);
  EXPECT_EQ(numbers(pics), (Numbers{{0, 8192}, {1, 1}, {2, 1}}));
  EXPECT_EQ(pics.at(2).points, kMissing);
  for (const Bytes& cut : {Bytes{}, Bytes(5, 0), show(1, u16(0))}) {
    loaded(temp_path("cut.lds"), cut, lds);
    EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x21}}));
  }
  EXPECT_EQ(sent_by([] { lds(::testing::TempDir().c_str()); }).size(), 0u);
  EXPECT_EQ(rec.count(), 1);
}
