// ILDA export: a range of the scanner's pictures, read back one by one, as
// format-5 (2-D true colour) frames, closed by a header without records.
#include "kalvor/kalvor.h"
#include "pictures/picture_points.h"

using namespace kalvor;
using namespace kalvor::pictures;

namespace {

constexpr uint32_t kHeaderSize = 32;
constexpr uint32_t kRecordSize = 8;
constexpr uint32_t kMaxRecords = 65535;  // the header's 16-bit record count

void write_header(FileWriter& file, uint16_t records, uint16_t frame, uint16_t total) {
  uint8_t h[kHeaderSize] = {'I', 'L', 'D', 'A', 0, 0, 0, 5, 'E', 'X', 'P', 'O', 'R', ' ', ' ', ' ',
                            'T', 'a', 'r', 'v', 'e', 'l', 'i', 'n'};
  store_be<uint16_t>(h + 24, records);
  store_be<uint16_t>(h + 26, frame);
  store_be<uint16_t>(h + 28, total);
  file.write(h, sizeof h);
}

// Number of records the first n reply points expand to (each 1 + repeat),
// at most 65535: a picture that expands further is cut at that many records.
uint32_t record_count(const uint8_t* reply, uint32_t n) {
  uint32_t records = 0;
  for (uint32_t i = 0; i < n; ++i) records += 1u + (point_at(reply, i)[point::repeatByte.offset] & 15);
  return records < kMaxRecords ? records : kMaxRecords;
}

// Writes the reply points as `records` format-5 records, through a block on
// the stack.
void write_records(FileWriter& file, const uint8_t* reply, uint32_t n, uint32_t records) {
  uint8_t block[512 * kRecordSize];
  uint32_t used = 0;
  for (uint32_t i = 0; i < n && records > 0; ++i) {
    const uint8_t* p = point_at(reply, i);
    bool blank = p[point::statusByte.offset] & kBlankBit;
    uint8_t r[kRecordSize];
    store_be<uint16_t>(r, load_le<uint16_t>(p + point::x.offset));
    store_be<uint16_t>(r + 2, static_cast<uint16_t>(~load_le<uint16_t>(p + point::y.offset)));
    r[4] = blank ? kBlankBit : 0;
    r[5] = blank ? 0 : p[point::blue.offset];
    r[6] = blank ? 0 : p[point::green.offset];
    r[7] = blank ? 0 : p[point::red.offset];
    for (uint32_t c = 1u + (p[point::repeatByte.offset] & 15); c > 0 && records > 0; --c, --records) {
      if (used == sizeof block) {
        file.write(block, used);
        used = 0;
      }
      memcpy(block + used, r, kRecordSize);
      used += kRecordSize;
    }
  }
  file.write(block, used);
}

}  // namespace

KALVOR_API void KALVOR_CALL displayexportilda(uint32_t scanner, const char* path, uint16_t first, uint16_t last) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  FileWriter file(path);
  if (!file.is_open()) return;
  uint8_t* reply = reply_area(rec);
  auto total = static_cast<uint16_t>(last - first + 1);
  uint16_t frame = 0;
  for (uint32_t p = first; p <= last; ++p) {
    uint32_t n = query_picture(scanner, rec, static_cast<uint16_t>(p));
    uint32_t records = record_count(reply, n);
    write_header(file, static_cast<uint16_t>(records), frame, total);
    write_records(file, reply, n, records);
    if (p < last) ++frame;  // the closing header repeats the last frame's number
  }
  write_header(file, 0, frame, total);
  file.commit();
}
