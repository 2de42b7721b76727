// LAS and FLX animation files: a file header with a picture count, then per
// picture a header with a point count and 11-byte points. Each picture is
// sent as soon as its points are read, under consecutive numbers.
#include "kalvor/kalvor.h"
#include "pictures/picture_points.h"
#include "pictures/point_groups.h"
#include "pictures/read_report.h"

using namespace kalvor;
using namespace kalvor::pictures;

namespace {

constexpr uint32_t kRecordSize = 11;

// Sizes of a format's parts and where its headers keep their counts. LAS
// stores counts minus 1, taken back on 16 bits (65535 means none).
struct AnimationLayout {
  uint32_t file_header, picture_header, trailer;
  uint32_t count_at;
  uint16_t count_bias;
};
constexpr AnimationLayout kLas{4, 8, 2, 2, 1};
constexpr AnimationLayout kFlx{11, 11, 0, 0, 0};

uint32_t header_count(const uint8_t* header, const AnimationLayout& l) {
  return static_cast<uint16_t>(load_le<uint16_t>(header + l.count_at) + l.count_bias);
}

// Reads the file picture by picture; `groups` converts what runs of records
// it can, convert(record, point) fills one point.
// Points beyond the 8192nd are passed over. A picture the file cuts short is
// still sent with its announced count; the file ends at a header cut short.
template <typename Convert>
void import_animation(uint32_t scanner, const char* path, uint32_t start, const AnimationLayout& l,
                      ReadReport* report, GroupConverter groups, Convert convert) {
  uint8_t* rec = scanner_record(scanner);
  FileReader file(path);
  if (!rec || !file.is_open()) return;
  uint8_t* area = upload_area(rec);
  uint8_t header[kRecordSize];
  if (!file.read_exact(header, l.file_header)) return note_header_cut(report);
  uint32_t pictures = header_count(header, l);
  for (uint32_t i = 0; i < pictures; ++i) {
    if (!file.read_exact(header, l.picture_header)) return note_header_cut(report);
    uint32_t n = header_count(header, l);
    uint32_t kept = n < kMaxPoints ? n : kMaxPoints;
    uint32_t got = read_blocks(file, kRecordSize, kept, [area, groups, convert](const uint8_t* r, uint32_t first, uint32_t n) {
      uint8_t* p = point_at(area, first);
      uint32_t done = groups(r, n, p);
      r += kRecordSize * done, p += point::size * done, n -= done;
      for (; n--; r += kRecordSize, p += point::size) convert(r, p);
    });
    blank_points(area, got, kept);
    file.skip(uint64_t{kRecordSize} * (n - kept) + l.trailer);
    auto number = static_cast<uint16_t>(start + i);
    if (got < kept)
      note_cut(report, number, n, n - got);
    else
      note_clamped(report, number, n - kept);
    send_picture(scanner, rec, number, kept);
  }
}

// LAS coordinates have 12 bits, centred on 2048.
uint16_t las_coordinate(const uint8_t* p) {
  return static_cast<uint16_t>(((load_le<uint16_t>(p) & 0xFFF) - 2048) * 16);
}

// FLX coordinates are unsigned, centred on 32768.
uint16_t flx_coordinate(const uint8_t* p) { return static_cast<uint16_t>(load_le<uint16_t>(p) ^ 0x8000); }

}  // namespace

void kalvor::pictures::import_las(uint32_t scanner, const char* path, uint32_t start, ReadReport* report) {
  import_animation(scanner, path, start, kLas, report, convert_groups_las, [](const uint8_t* r, uint8_t* p) {
    // Each point is output twice (repeat 1).
    put_point(p, las_coordinate(r + 1), las_coordinate(r + 3), 0, status_byte(r[7], r[5] & 1, 1), 1, 255, 255, 255);
  });
}

void kalvor::pictures::import_flx(uint32_t scanner, const char* path, uint32_t start, ReadReport* report) {
  import_animation(scanner, path, start, kFlx, report, convert_groups_flx, [](const uint8_t* r, uint8_t* p) {
    uint8_t state = r[9];  // 0 blanked, 2 drawn and output three times, else drawn
    put_point(p, flx_coordinate(r), flx_coordinate(r + 2), 0, status_byte(0, state == 0, 1), state == 2 ? 2 : 0, 255,
              255, 255);
  });
}

KALVOR_API void KALVOR_CALL displayimportlas(uint32_t scanner, const char* path, uint32_t startPicture) {
  import_las(scanner, path, startPicture, nullptr);
}

KALVOR_API void KALVOR_CALL displayimportflx(uint32_t scanner, const char* path, uint32_t startPicture) {
  import_flx(scanner, path, startPicture, nullptr);
}
