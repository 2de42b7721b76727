// Catalogue and show files: record types, numbering, dispatch by extension,
// the catalogue folder, round trips and malformed files.
#include <filesystem>

#include "pictures_support.h"

using namespace kt;

namespace {

const Bytes A = pt(1, 2, 3, 0x85, 0x01, 10, 20, 30);
const Bytes B = pt(-4, -5, -6, 0xC0, 0x00, 0, 0, 0);

Bytes u16(uint16_t v) { return le_bytes(v); }
// A catalogue record of type 1.
Bytes cat1(const std::vector<Bytes>& points) {
  Bytes r = concat({Bytes{1}, u16(static_cast<uint16_t>(points.size()))});
  for (const Bytes& p : points) r = concat({r, p});
  return r;
}

// Loads a file through an export and lists the pictures sent as (number, count).
using Loaded = std::vector<std::pair<int, int>>;
template <typename Load>
Loaded loaded(const std::string& path, const Bytes* bytes, Load load) {
  if (bytes) write_file(path, *bytes);
  Recorder::get().clear();
  load(path.c_str());
  Loaded out;
  for (auto& p : sent_pictures(Recorder::get())) out.emplace_back(p.number, p.count);
  return out;
}

}  // namespace

TEST_F(KalvorTest, CatalogueRecordTypesAndNumbering) {
  set_palette(1, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {70, 71, 72}});
  Bytes file = concat({cat1({A, B, A}), cat1({}),                                                            //
                       Bytes{0, 2, 0}, u16(7), u16(8), u16(9), Bytes{0x47, 2}, u16(1), u16(1), u16(1), Bytes{1, 0},  //
                       Bytes{2, 9, 9, 9, 9, 1, 0}, B,                                                         //
                       Bytes{3, 9, 9, 9, 9, 2, 0}, u16(5), u16(6), Bytes{3, 0, 0, 0}, u16(5), u16(6), Bytes{0, 0, 0, 1},
                       Bytes{0x77}, cat1({A})});
  std::string path = temp_path("c.cat");
  // The empty record and the unknown type use up numbers 2 and 6.
  EXPECT_EQ(loaded(path, &file, [](const char* p) { loadCAT(1, p); }), (Loaded{{1, 3}, {3, 2}, {4, 1}, {5, 2}, {7, 1}}));
  EXPECT_EQ(rec.at(0).bytes, Bytes{0x21});
  auto pics = sent_pictures(rec);
  EXPECT_EQ(pics[0].points, concat({A, B, A}));
  EXPECT_EQ(pics[1].points, concat({pt(7, 8, 9, 0x47, 2, 70, 71, 72), pt(1, 1, 1, 0x01, 0, 0, 0, 0)}));
  EXPECT_EQ(pics[2].points, B);
  EXPECT_EQ(pics[3].points, concat({pt(5, 6, 0, 0xC0, 3, 0, 0, 0), pt(5, 6, 0, 0x80, 0, 0, 0, 1)}));

  // Part of a catalogue: records 0..2 of the file as pictures 10..12, without a clear.
  EXPECT_EQ(loaded(path, nullptr, [](const char* p) { loadCATpart(1, 10, 2, p); }), (Loaded{{10, 3}, {12, 2}}));
  EXPECT_EQ(rec.count(), 2);
}

TEST_F(KalvorTest, DispatchByExtensionInAnyCase) {
  Bytes show = concat({Bytes(4, 0), u16(2), u16(0), u16(1), A, u16(1), u16(0)});
  Bytes cat = concat({cat1({A}), cat1({B}), cat1({A})});
  Bytes ilda = concat({ilda_header(5, 1), be16(1), be16(1), Bytes{0, 1, 1, 1}});
  auto whole = [](const char* p) { loadcat(1, p); };
  auto part = [](const char* p) { loadcatpart(1, 20, 1, p); };
  EXPECT_EQ(loaded(temp_path("s.LdS"), &show, whole), (Loaded{{0, 1}, {1, 0}}));
  EXPECT_EQ(loaded(temp_path("c.CAT"), &cat, whole), (Loaded{{1, 1}, {2, 1}, {3, 1}}));
  EXPECT_EQ(loaded(temp_path("i.Ild"), &ilda, whole), (Loaded{{1, 1}}));
  EXPECT_EQ(loaded(temp_path("p.pic"), &cat, whole), Loaded{});
  EXPECT_EQ(rec.count(), 0);
  EXPECT_EQ(loaded(temp_path("s.LdS"), nullptr, part), (Loaded{{0, 1}, {1, 0}}));
  EXPECT_EQ(loaded(temp_path("c.CAT"), nullptr, part), (Loaded{{20, 1}, {21, 1}}));
  EXPECT_EQ(loaded(temp_path("i.Ild"), nullptr, part), (Loaded{{21, 1}}));  // format 5: p + index
  rec.clear();
  savecat(1, temp_path("x.pic").c_str());
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, MissingCatalogueIsLookedForInTheCatalogueFolder) {
  std::error_code error;
  bool created = std::filesystem::create_directory("/CAT", error);
  std::string name = "kalvor_test_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + ".cat";
  write_file("/CAT/" + name, cat1({A}));
  if (read_file("/CAT/" + name).empty()) GTEST_SKIP() << "the catalogue folder cannot be written here";
  auto pictures = loaded(temp_path("elsewhere") + "/" + name, nullptr, [](const char* p) { loadcat(1, p); });
  std::filesystem::remove("/CAT/" + name, error);
  if (created) std::filesystem::remove("/CAT", error);
  EXPECT_EQ(pictures, (Loaded{{1, 1}}));
}

TEST_F(KalvorTest, CatalogueAndShowRoundTrips) {
  rec.emulate_pictures(true);
  for (int i = 0; i < 3; ++i) DisplaySetPicPoint(1, static_cast<uint16_t>(i), static_cast<uint16_t>(i), 1, 2, 0x80, 0, 4, 5, 6);
  displaysetpic(1, 0, 1);
  displaysetpic(1, 1, 3);
  displaysetpic(1, 2, 2);
  std::string cat = temp_path("all.cat"), show = temp_path("all.lds");
  saveCAT(1, cat.c_str());
  saveLDS(1, show.c_str());
  // The scanner reports 3 pictures: a catalogue holds 1..3 (3 is empty), a show 0..2.
  EXPECT_EQ(read_file(cat).size(), 3u * 3 + 11u * (3 + 2));
  Bytes shown = read_file(show);
  EXPECT_EQ(shown.size(), 4u + 2 + 3 * 4 + 11u * (1 + 3 + 2));
  EXPECT_EQ(head(shown, 10), (Bytes{0, 0, 0, 0, 3, 0, 0, 0, 1, 0}));

  auto load = [](const char* p) {
    Recorder::get().emulate_pictures(true);
    loadcat(1, p);
  };
  EXPECT_EQ(loaded(cat, nullptr, load), (Loaded{{1, 3}, {2, 2}}));
  EXPECT_EQ(loaded(show, nullptr, load), (Loaded{{0, 1}, {1, 3}, {2, 2}}));
  EXPECT_EQ(sent_pictures(rec)[1].points, concat({pt(0, 1, 2, 0x80, 0, 4, 5, 6), pt(1, 1, 2, 0x80, 0, 4, 5, 6),
                                                  pt(2, 1, 2, 0x80, 0, 4, 5, 6)}));

  // A file that cannot be created: nothing is asked.
  rec.clear();
  saveCAT(1, (temp_path("no-such-folder") + "/x.cat").c_str());
  saveLDS(1, (temp_path("no-such-folder") + "/x.lds").c_str());
  EXPECT_EQ(rec.count(), 0);
}

TEST_F(KalvorTest, MalformedCataloguesAndShowsStayInsideTheUploadBuffer) {
  auto cat = [](const char* p) { loadCAT(1, p); };
  auto lds = [](const char* p) { loadLDS(1, p); };
  // An oversized record is passed over whole; a record cut inside its points
  // is sent with its count, the rest blanked.
  Bytes file = concat({Bytes{1}, u16(9000), Bytes(11 * 9000, 0x5A), cat1({A}), Bytes{1, 3, 0}, A});
  EXPECT_EQ(loaded(temp_path("bad.cat"), &file, cat), (Loaded{{2, 1}, {3, 3}}));
  EXPECT_EQ(sent_pictures(rec)[1].points, concat({A, missing_point(), missing_point()}));
  // Empty, or cut inside a record head: only the clear is sent.
  for (const Bytes& cut : {Bytes{}, Bytes{1}, Bytes{1, 5}, Bytes{2, 0, 0, 0, 0, 1}, Bytes{3, 0}}) {
    EXPECT_EQ(loaded(temp_path("cut.cat"), &cut, cat), Loaded{});
    EXPECT_EQ(rec.count(), 1);
  }

  // Show: more than 8192 points keeps 8192 and stays in step; then the file ends inside a record.
  file = concat({Bytes(4, 0), u16(3), u16(0), u16(9000), Bytes(11 * 9000, 0x11), u16(1), u16(1), B, u16(2), u16(1)});
  EXPECT_EQ(loaded(temp_path("bad.lds"), &file, lds), (Loaded{{0, 8192}, {1, 1}, {2, 1}}));
  EXPECT_EQ(sent_pictures(rec)[2].points, missing_point());
  for (const Bytes& cut : {Bytes{}, Bytes(5, 0), concat({Bytes(4, 0), u16(1), u16(0)})}) {
    EXPECT_EQ(loaded(temp_path("cut.lds"), &cut, lds), Loaded{});
    EXPECT_EQ(rec.count(), 1);
  }
  EXPECT_EQ(loaded(::testing::TempDir(), nullptr, lds), Loaded{});
  EXPECT_EQ(rec.bytes(), (std::vector<Bytes>{{0x21}}));
}
