// ILDA import: every frame section of an ILDA file becomes one picture, sent
// as soon as the section ends; palette sections fill colour buffer 0.
#include "kalvor/kalvor.h"
#include "pictures/point_groups.h"
#include "pictures/picture_points.h"
#include "pictures/read_report.h"

using namespace kalvor;
using namespace kalvor::pictures;

namespace {

constexpr uint32_t kHeadSize = 8;       // signature, reserved bytes, format code
constexpr uint32_t kHeaderRest = 24;    // the rest of a 32-byte section header
constexpr uint32_t kCountInRest = 16;   // record count: section offset 24
constexpr uint32_t kLastSlot = kMaxPoints - 1;
constexpr uint8_t kPalette = 2;
constexpr uint8_t kTrueColourPalette = 3;

// Where a point format keeps its fields; z 0 means a 2-D format. True-colour
// formats hold blue, green, red from `colour` on; indexed ones a colour index.
// With `grouped`, `groups` converts runs of records faster where it can
// (formats 0 and 5).
struct PointFormat {
  uint8_t size, z, status, colour;
  bool true_colour, black_blanks, grouped;
  GroupConverter groups;
};
constexpr PointFormat kIndexed3D{8, 4, 6, 7, false, false, true, convert_groups_format0};    // format 0
constexpr PointFormat kIndexed2D{6, 0, 4, 5, false, false, false, nullptr};                  // format 1
constexpr PointFormat kTrueColour3D{10, 4, 6, 7, true, false, false, nullptr};               // format 4
constexpr PointFormat kTrueColour2D{8, 0, 4, 5, true, true, true, convert_groups_format5};  // format 5

template <const PointFormat& f>
void convert_point(const uint8_t* r, uint8_t* p) {
  uint8_t status = r[f.status];
  uint8_t blank = status & kBlankBit;  // bit 7 (last point) is not used
  uint8_t index = 0, red = 255, green = 255, blue = 255;
  if (f.true_colour) {
    blue = r[f.colour];
    green = r[f.colour + 1];
    red = r[f.colour + 2];
    if (f.black_blanks && (red | green | blue) == 0) blank = kBlankBit;
  } else {
    index = r[f.colour] & kIndexMask;
  }
  uint16_t z = f.z ? load_be<uint16_t>(r + f.z) : 0;
  // The file's vertical axis points the other way: y becomes -1 - y.
  put_point(p, load_be<uint16_t>(r), static_cast<uint16_t>(~load_be<uint16_t>(r + 2)), z,
            static_cast<uint8_t>(kFlag7 | blank | index), 0, red, green, blue);
}

// Whether any of the n records at r equals the one before it (`before`, the
// record ahead of the first, may be null).
template <const PointFormat& f>
bool any_repeat(const uint8_t* r, uint32_t n, const uint8_t* before) {
  if (before && memcmp(before, r, f.size) == 0) return true;
  if constexpr (f.size == 8) return any_repeat8(r, n);
  for (const uint8_t* end = r + f.size * n; r + f.size < end; r += f.size)
    if (memcmp(r, r + f.size, f.size) == 0) return true;
  return false;
}

// Reads the n records of a frame section into the upload area. From the
// 8192nd record on every record lands on slot 8191, which is not sent, so a
// frame keeps at most 8191 points. With `fold`, a record equal byte for byte
// to the last stored one raises that point's repeat count (up to 15) instead.
// A record that is folded equals the last stored one, so comparing each
// record with the one before it (kept across blocks in `prev`) is the same.
// One loop per format and folding choice keeps offsets and sizes constant.
template <const PointFormat& f, bool fold>
uint32_t read_frame(FileReader& file, uint8_t* rec, uint32_t n, uint16_t number, ReadReport* report) {
  uint8_t* area = upload_area(rec);
  uint32_t k = 0, last = 0;
  uint8_t prev[kMaxRecord] = {};
  uint32_t got = read_blocks(file, f.size, n, [&](const uint8_t* r, uint32_t first, uint32_t count) {
    uint8_t* const points = area;    // locals stay in registers for the whole block
    uint32_t at = k, stored = last;
    const uint8_t* before = prev;    // the record before r, if any
    bool has_before = first > 0;
    const uint8_t* end = r + f.size * count;
    // Records that each get a slot of their own, and nothing to fold, go to
    // the group converter first; the loop below takes the rest.
    if constexpr (f.grouped) {
      if (!fold || !any_repeat<f>(r, count, has_before ? before : nullptr)) {
        uint32_t room = kLastSlot - at;
        uint32_t done = f.groups(r, count < room ? count : room, point_at(points, at));
        if (done) {
          r += f.size * done, at += done, stored = at - 1;
          before = r - f.size, has_before = true;
        }
      }
    }
    for (; r < end; before = r, r += f.size, has_before = true) {
      if (fold && has_before && memcmp(r, before, f.size) == 0) {
        uint8_t& repeat = point_at(points, stored)[point::repeatByte.offset];
        if (repeat < 15) ++repeat;
        continue;
      }
      convert_point<f>(r, point_at(points, at));
      stored = at;
      if (++at > kLastSlot) at = kLastSlot;
    }
    if (fold) memcpy(prev, before, f.size);
    k = at, last = stored;
  });
  if (!fold && got > kLastSlot) note_clamped(report, number, got - kLastSlot);
  if (got < n) {  // the file ends inside the section
    uint32_t end = k + (n - got) < kLastSlot ? k + (n - got) : kLastSlot;
    blank_points(area, k, end);
    k = end;
    note_cut(report, number, n, n - got);
  }
  return k;
}

using FrameReader = uint32_t (*)(FileReader&, uint8_t*, uint32_t, uint16_t, ReadReport*);

// The frame reader of a point format code (0, 1, 4 or 5); format 5 is never
// folded.
template <bool fold>
FrameReader frame_reader(uint8_t code) {
  switch (code) {
    case 0: return read_frame<kIndexed3D, fold>;
    case 1: return read_frame<kIndexed2D, fold>;
    case 4: return read_frame<kTrueColour3D, fold>;
    default: return read_frame<kTrueColour2D, false>;
  }
}

void read_palette(FileReader& file, uint8_t* rec, uint32_t n) {
  read_records(file, 3, n, [&](const uint8_t* r, uint32_t i) {
    if (i < colour_buffer::entries) set_colour_entry(rec, i, r[0], r[1], r[2]);
  });
}

}  // namespace

// Reads the file section by section. With `fold`, runs of equal records are
// folded (not in format 5) and format-5 frames are numbered from p + index.
static void read_ilda(uint32_t scanner, const char* path, uint16_t start, uint32_t index, bool fold,
                      ReadReport* report) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  FileReader file(path);
  if (!file.is_open()) return;
  uint16_t p = start ? start : 1;
  uint8_t head[kHeadSize];
  // The file ends at the first head or header it cuts short.
  while (file.read_exact(head, kHeadSize)) {
    uint8_t code = head[7];
    if (code == kTrueColourPalette) {
      uint8_t rest[8];
      if (!file.read_exact(rest, sizeof rest)) return note_header_cut(report);
      file.skip(3ull * load_be<uint32_t>(rest + 4));
      note_skipped(report);
      continue;
    }
    if (code > 5) {
      uint8_t length[4];
      if (!file.read_exact(length, sizeof length)) return note_header_cut(report);
      file.skip(load_be<uint32_t>(length));
      note_skipped(report);
      continue;
    }
    uint8_t rest[kHeaderRest];
    if (!file.read_exact(rest, sizeof rest)) return note_header_cut(report);
    uint32_t n = load_be<uint16_t>(rest + kCountInRest);
    if (code == kPalette) {
      read_palette(file, rec, n);
      continue;
    }
    uint16_t number = fold && code == 5 ? static_cast<uint16_t>(p + index) : p;
    uint32_t count = (fold ? frame_reader<true>(code) : frame_reader<false>(code))(file, rec, n, number, report);
    send_picture(scanner, rec, number, count);
    ++p;
  }
}

void kalvor::pictures::import_ilda(uint32_t scanner, const char* path, uint16_t start, ReadReport* report) {
  read_ilda(scanner, path, start, 0, false, report);
}

KALVOR_API void KALVOR_CALL displayimportilda(uint32_t scanner, const char* path, uint16_t startPicture) {
  read_ilda(scanner, path, startPicture, 0, false, nullptr);
}

KALVOR_API void KALVOR_CALL displayimportildafromindex(uint32_t scanner, uint32_t index, const char* path,
                                                       uint16_t startPicture) {
  read_ilda(scanner, path, startPicture, index, true, nullptr);
}
