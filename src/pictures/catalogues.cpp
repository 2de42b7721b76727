// Catalogue files (.cat) and show files (.lds): whole sets of pictures, and
// the exports that choose a reader or writer by the file's extension.
#include <cstdio>

#include "kalvor/kalvor.h"
#include "pictures/picture_points.h"

using namespace kalvor;
using namespace kalvor::pictures;

namespace {

constexpr uint32_t kCataloguePictures = 32768;  // loadCAT reads at most this many records
constexpr uint32_t kShortRecordSize = 8;        // catalogue record types 0 and 3

// Record types of a catalogue file.
enum : uint8_t { kIndexedPoints = 0, kPoints = 1, kPointsAfterFour = 2, kColourPoints = 3 };

// Reads the n eight-byte points of a record of type 0 (indexed colour) or 3
// (true colour without z) into the upload area.
void read_short_points(FileReader& file, uint8_t* rec, uint8_t type, uint32_t n, ReadReport* report,
                       uint16_t number) {
  uint8_t* area = upload_area(rec);
  auto convert = [rec, area, type](const uint8_t* r, uint32_t first, uint32_t count) {
    for (uint8_t* p = point_at(area, first); count--; r += kShortRecordSize, p += point::size) {
      uint16_t x = load_le<uint16_t>(r), y = load_le<uint16_t>(r + 2);
      if (type == kIndexedPoints) {
        const uint8_t* c = colour_entry(rec, r[6]);
        put_point(p, x, y, load_le<uint16_t>(r + 4), r[6], r[7], c[0], c[1], c[2]);
      } else {
        uint8_t status = (r[5] | r[6] | r[7]) ? kFlag7 : kFlag7 | kBlankBit;
        put_point(p, x, y, 0, status, r[4], r[5], r[6], r[7]);
      }
    }
  };
  uint32_t got = read_blocks(file, kShortRecordSize, n, convert);
  blank_points(area, got, n);
  note_points(report, number, n, n, got);
}

// Sends up to `records` catalogue records as pictures first, first + 1, ...
// A record of 0 or more than 8192 points, or of an unknown type, is passed
// over but uses up its number.
void load_catalogue(uint32_t scanner, const char* path, uint16_t first, uint64_t records,
                    ReadReport* report = nullptr) {
  uint8_t* rec = scanner_record(scanner);
  FileReader file(path);
  if (!rec || !file.is_open()) return;
  for (uint64_t i = 0; i < records; ++i) {
    uint8_t type;
    if (!file.read_exact(&type, 1)) return;
    if (type > kColourPoints) {
      note_skipped(report);
      continue;
    }
    // Types 2 and 3 put four unused bytes before the point count.
    uint8_t head[6];
    uint32_t head_size = type >= kPointsAfterFour ? 6 : 2;
    if (!file.read_exact(head, head_size)) return note_header_cut(report);
    uint32_t n = load_le<uint16_t>(head + head_size - 2);
    bool short_points = type == kIndexedPoints || type == kColourPoints;
    if (n == 0 || n > kMaxPoints) {
      file.skip(uint64_t{short_points ? kShortRecordSize : point::size} * n);
      if (n) note_skipped(report);
      continue;
    }
    auto number = static_cast<uint16_t>(first + i);
    if (short_points)
      read_short_points(file, rec, type, n, report, number);
    else
      read_raw_points(file, rec, n, report, number);
    send_picture(scanner, rec, number, n);
  }
}

// Sends the pictures of a show file as pictures 0, 1, 2, ...
void load_show(uint32_t scanner, const char* path, ReadReport* report = nullptr) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  clear_pictures(scanner);
  FileReader file(path);
  uint8_t head[6];
  if (!file.is_open()) return;
  if (!file.read_exact(head, sizeof head)) return note_header_cut(report);
  uint32_t total = load_le<uint16_t>(head + 4);
  for (uint32_t p = 0; p < total; ++p) {
    uint8_t picture_head[4];  // picture number (not used), point count
    if (!file.read_exact(picture_head, sizeof picture_head)) return note_header_cut(report);
    uint32_t n = read_raw_points(file, rec, load_le<uint16_t>(picture_head + 2), report, static_cast<uint16_t>(p));
    send_picture(scanner, rec, static_cast<uint16_t>(p), n);
  }
}

void load_whole_catalogue(uint32_t scanner, const char* path, ReadReport* report = nullptr) {
  if (!scanner_record(scanner)) return;
  clear_pictures(scanner);
  load_catalogue(scanner, path, 1, kCataloguePictures, report);
}

// Reads picture p back and writes its point count and points.
void write_picture(FileWriter& file, uint32_t scanner, uint8_t* rec, uint16_t p) {
  uint32_t n = query_picture(scanner, rec, p);
  uint8_t count[2];
  store_le<uint16_t>(count, static_cast<uint16_t>(n));
  file.write(count, sizeof count);
  file.write(point_at(reply_area(rec), 0), size_t{point::size} * n);
}

// Writes the scanner's pictures: a catalogue holds pictures 1..N, each as a
// type-1 record; a show holds pictures 0..N-1 after a six-byte header, each
// after its number. N is the scanner's picture total.
void save_pictures(uint32_t scanner, const char* path, bool show) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  FileWriter file(path);
  if (!file.is_open()) return;
  uint32_t total = query_picture_total(scanner);
  if (show) {
    uint8_t head[6] = {};
    store_le<uint16_t>(head + 4, static_cast<uint16_t>(total));
    file.write(head, sizeof head);
  }
  uint32_t from = show ? 0 : 1;
  for (uint32_t p = from; p < from + total; ++p) {
    uint8_t prefix[2];
    store_le<uint16_t>(prefix, static_cast<uint16_t>(show ? p : uint32_t{kPoints}));
    file.write(prefix, show ? 2 : 1);
    write_picture(file, scanner, rec, static_cast<uint16_t>(p));
  }
  file.commit();
}

enum class Kind { Other, Catalogue, Show, Ilda };

// The file kind named by a path's extension, in any letter case.
struct Target {
  platform::PathParts parts;
  Kind kind = Kind::Other;
  explicit Target(const char* path) {
    platform::split_path(path, &parts);
    if (same_extension(parts.extension, ".cat")) kind = Kind::Catalogue;
    if (same_extension(parts.extension, ".lds")) kind = Kind::Show;
    if (same_extension(parts.extension, ".ild")) kind = Kind::Ilda;
  }
  // The caller's path when it opens; otherwise the same name and extension
  // in the catalogue folder at the root of the drive.
  const char* source(const char* path, char (&fallback)[1024]) const {
    platform::File f = platform::open_read(path);
    if (f.is_open()) {
      platform::close(f);
      return path;
    }
    snprintf(fallback, sizeof fallback, "%s%s%s", platform::catalogue_folder(), parts.name, parts.extension);
    return fallback;
  }
};

}  // namespace

void kalvor::pictures::load_catalogue_file(uint32_t scanner, const char* path, ReadReport* report) {
  load_whole_catalogue(scanner, path, report);
}

void kalvor::pictures::load_show_file(uint32_t scanner, const char* path, ReadReport* report) {
  load_show(scanner, path, report);
}

KALVOR_API void KALVOR_CALL loadcat(uint32_t scanner, const char* path) {
  Target target(path);
  char fallback[1024];
  switch (target.kind) {
    case Kind::Catalogue: load_whole_catalogue(scanner, target.source(path, fallback)); break;
    case Kind::Show: load_show(scanner, target.source(path, fallback)); break;
    case Kind::Ilda: displayimportilda(scanner, path, 0); break;
    case Kind::Other: break;
  }
}

KALVOR_API void KALVOR_CALL loadcatpart(uint32_t scanner, int32_t first, uint32_t count, const char* path) {
  Target target(path);
  char fallback[1024];
  switch (target.kind) {
    case Kind::Catalogue: loadCATpart(scanner, first, count, target.source(path, fallback)); break;
    case Kind::Show: load_show(scanner, target.source(path, fallback)); break;
    case Kind::Ilda: displayimportildafromindex(scanner, static_cast<uint32_t>(first), path, 0); break;
    case Kind::Other: break;
  }
}

KALVOR_API void KALVOR_CALL loadCAT(uint32_t scanner, const char* path) { load_whole_catalogue(scanner, path); }

KALVOR_API void KALVOR_CALL loadCATpart(uint32_t scanner, int32_t first, uint32_t count, const char* path) {
  // Records 0..count of the file become pictures first..first + count.
  load_catalogue(scanner, path, static_cast<uint16_t>(first), uint64_t{count} + 1);
}

KALVOR_API void KALVOR_CALL loadLDS(uint32_t scanner, const char* path) { load_show(scanner, path); }

KALVOR_API void KALVOR_CALL savecat(uint32_t scanner, const char* path) {
  Target target(path);
  if (target.kind == Kind::Catalogue || target.kind == Kind::Show)
    save_pictures(scanner, path, target.kind == Kind::Show);
}

KALVOR_API void KALVOR_CALL saveCAT(uint32_t scanner, const char* path) { save_pictures(scanner, path, false); }

KALVOR_API void KALVOR_CALL saveLDS(uint32_t scanner, const char* path) { save_pictures(scanner, path, true); }
