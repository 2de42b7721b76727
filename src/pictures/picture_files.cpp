// Picture files (.pic): one picture behind a 14-byte big-endian header. The
// current layout stores PicturePoint records as they are; the older layout
// stores 8-byte big-endian records whose status byte describes the line that
// leaves the point.
#include "kalvor/kalvor.h"
#include "pictures/picture_points.h"
#include "pictures/point_groups.h"

using namespace kalvor;
using namespace kalvor::pictures;

namespace {

constexpr uint16_t kCurrentVersion = 1024;
constexpr uint32_t kHeaderSize = 14;
constexpr uint32_t kOlderRecordSize = 8;

// Reads older-layout records into the upload area. The status and colour of
// record i belong to the line from point i to point i + 1, so they are
// stored on point i + 1, where the current layout keeps them.
uint32_t read_older_records(FileReader& file, uint8_t* rec, uint32_t count, ReadReport* report, uint16_t number) {
  uint8_t* area = upload_area(rec);
  uint32_t kept = count < kMaxPoints ? count : kMaxPoints;
  point_at(area, 0)[point::statusByte.offset] = kFlag7 | kBlankBit;
  uint8_t colours[3][64];  // the channels of colour buffer 0, for the groups
  for (uint8_t i = 0; i < 64; ++i)
    for (int c = 0; c < 3; ++c) colours[c][i] = colour_entry(rec, i)[c];
  uint32_t got = read_blocks(file, kOlderRecordSize, kept, [&](const uint8_t* r, uint32_t first, uint32_t n) {
    for (uint32_t i = first; i < first + n; ++i, r += kOlderRecordSize) {
      uint8_t* p = point_at(area, i);
      store_le<uint16_t>(p + point::x.offset, load_be<uint16_t>(r + 2));
      store_le<uint16_t>(p + point::y.offset, static_cast<uint16_t>(~load_be<uint16_t>(r + 4)));
      store_le<uint16_t>(p + point::z.offset, load_be<uint16_t>(r + 6));
      p[point::repeatByte.offset] = static_cast<uint8_t>(r[0] >> 1);
      if (i + 1 < kMaxPoints) {
        uint8_t* next = point_at(area, i + 1);
        const uint8_t* c = colour_entry(rec, r[1]);
        next[point::statusByte.offset] = r[1];
        next[point::red.offset] = c[0];
        next[point::green.offset] = c[1];
        next[point::blue.offset] = c[2];
      }
      // The points after record i are whole once their records are in the
      // block; the last of them still owes its status to the point after it,
      // so the loop goes on from its record.
      uint32_t done = convert_groups_older(r, first + n - i, point_at(area, i + 1), colours);
      if (done) i += done - 1, r += kOlderRecordSize * (done - 1);
    }
  });
  blank_points(area, got, kept);
  note_points(report, number, count, kept, got);
  return kept;
}

}  // namespace

KALVOR_API void KALVOR_CALL displaysavepic(uint32_t scanner, const char* path, uint16_t pictureNumber) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  uint32_t n = query_picture(scanner, rec, pictureNumber);
  FileWriter file(path);
  if (!file.is_open()) return;
  uint8_t header[kHeaderSize] = {};
  store_be<uint16_t>(header + 0, kCurrentVersion);
  store_be<uint16_t>(header + 6, static_cast<uint16_t>(n));
  store_be<uint16_t>(header + 8, 1);
  file.write(header, sizeof header);
  file.write(point_at(reply_area(rec), 0), size_t{point::size} * n);
  file.commit();
}

void kalvor::pictures::load_picture_file(uint32_t scanner, const char* path, uint16_t pictureNumber,
                                         ReadReport* report) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  FileReader file(path);
  uint8_t header[kHeaderSize];
  if (!file.is_open()) return;
  if (!file.read_exact(header, sizeof header)) return note_header_cut(report);
  uint16_t version = load_be<uint16_t>(header + 0);
  uint16_t count = load_be<uint16_t>(header + 6);
  uint64_t skip = load_be<uint16_t>(header + 10) + 65536ull * load_be<uint16_t>(header + 12);
  if (version > kCurrentVersion) return note_skipped(report);  // a layout this library does not know
  file.skip(skip);
  uint32_t n = version == kCurrentVersion ? read_raw_points(file, rec, count, report, pictureNumber)
                                          : read_older_records(file, rec, count, report, pictureNumber);
  send_picture(scanner, rec, pictureNumber, n);
}

KALVOR_API void KALVOR_CALL displayloadpic(uint32_t scanner, const char* path, uint16_t pictureNumber) {
  load_picture_file(scanner, path, pictureNumber, nullptr);
}
