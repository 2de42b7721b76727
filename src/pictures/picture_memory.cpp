// Picture memory: the point setters of the upload area, picture transfer and
// read-back, the picture-memory commands, the test picture, direct points and
// the raster frame.
#include "core/convert.h"
#include "kalvor/kalvor.h"
#include "pictures/picture_points.h"

using namespace kalvor;
using namespace kalvor::pictures;

namespace {

// Point `index` of the scanner's upload area, or null for an index of 8192 or
// more or a scanner out of range.
uint8_t* upload_point(uint32_t scanner, uint32_t index) {
  uint8_t* rec = scanner_record(scanner);
  return rec && index < kMaxPoints ? point_at(upload_area(rec), index) : nullptr;
}

// Point `index` of the scanner's reply area, or null.
const uint8_t* reply_point(uint32_t scanner, uint32_t index) {
  uint8_t* rec = scanner_record(scanner);
  return rec && index < kMaxPoints ? point_at(reply_area(rec), index) : nullptr;
}

// Stores a value through a caller's pointer; a null pointer is skipped.
template <typename T>
void put(T* out, T value) {
  if (out) *out = value;
}

// Appends values to a command little-endian, one after the other.
struct Packer {
  uint8_t* at;
  template <typename T>
  Packer& operator<<(T value) {
    store_le<T>(at, value);
    at += sizeof(T);
    return *this;
  }
};

}  // namespace

KALVOR_API void KALVOR_CALL displaysetpicstruct(uint32_t scanner, uint16_t index, uint16_t x, uint16_t y,
                                                uint16_t z, uint8_t colourIndex, uint8_t blank, uint8_t flag7,
                                                uint8_t repeat, uint8_t highNibble, uint8_t red, uint8_t green,
                                                uint8_t blue) {
  if (uint8_t* p = upload_point(scanner, index))
    put_point(p, x, y, z, status_byte(colourIndex, blank, flag7), repeat_byte(repeat, highNibble), red, green, blue);
}

KALVOR_API void KALVOR_CALL DisplaySetPicPoint(uint32_t scanner, uint16_t index, uint16_t x, uint16_t y,
                                               uint16_t z, uint8_t statusByte, uint8_t repeatByte, uint8_t red,
                                               uint8_t green, uint8_t blue) {
  if (uint8_t* p = upload_point(scanner, index)) put_point(p, x, y, z, statusByte, repeatByte, red, green, blue);
}

KALVOR_API void KALVOR_CALL displaysetpoint(uint32_t scanner, uint32_t index, uint32_t x, uint32_t y, uint32_t z,
                                            uint32_t colourIndex, uint32_t blank, uint32_t red, uint32_t green,
                                            uint32_t blue) {
  displaysetpicstruct(scanner, static_cast<uint16_t>(index), static_cast<uint16_t>(x), static_cast<uint16_t>(y),
                      static_cast<uint16_t>(z), static_cast<uint8_t>(colourIndex), static_cast<uint8_t>(blank), 1, 0,
                      0, static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue));
}

KALVOR_API void KALVOR_CALL displaysetpic(uint32_t scanner, uint16_t pictureNumber, uint16_t pointCount) {
  if (uint8_t* rec = scanner_record(scanner)) send_picture(scanner, rec, pictureNumber, pointCount);
}

KALVOR_API uint16_t KALVOR_CALL displaygetpic(uint32_t scanner, uint16_t pictureNumber) {
  uint8_t* rec = scanner_record(scanner);
  return rec ? static_cast<uint16_t>(query_picture(scanner, rec, pictureNumber)) : 0;
}

KALVOR_API void KALVOR_CALL displaygetpiccnt(uint32_t scanner, uint16_t* pointCount) {
  uint8_t* rec = scanner_record(scanner);
  put(pointCount, static_cast<uint16_t>(rec ? reply_count(rec) : 0));
}

KALVOR_API void KALVOR_CALL displaygetpicstruct(uint32_t scanner, uint16_t index, uint16_t* x, uint16_t* y,
                                                uint16_t* z, uint8_t* colourIndex, uint8_t* blank, uint8_t* flag7,
                                                uint8_t* repeat, uint8_t* highNibble, uint8_t* red, uint8_t* green,
                                                uint8_t* blue) {
  const uint8_t* p = reply_point(scanner, index);
  if (!p) return;
  uint8_t status = p[point::statusByte.offset];
  uint8_t repeats = p[point::repeatByte.offset];
  put(x, load_le<uint16_t>(p + point::x.offset));
  put(y, load_le<uint16_t>(p + point::y.offset));
  put(z, load_le<uint16_t>(p + point::z.offset));
  put(colourIndex, static_cast<uint8_t>(status & kIndexMask));
  put(blank, static_cast<uint8_t>((status >> 6) & 1));
  put(flag7, static_cast<uint8_t>(status >> 7));
  put(repeat, static_cast<uint8_t>(repeats & 15));
  put(highNibble, static_cast<uint8_t>(repeats >> 4));
  put(red, p[point::red.offset]);
  put(green, p[point::green.offset]);
  put(blue, p[point::blue.offset]);
}

KALVOR_API void KALVOR_CALL DisplayGetPicPoint(uint32_t scanner, uint16_t index, uint16_t* x, uint16_t* y,
                                               uint16_t* z, uint8_t* statusByte, uint8_t* repeatByte, uint8_t* red,
                                               uint8_t* green, uint8_t* blue) {
  const uint8_t* p = reply_point(scanner, index);
  if (!p) return;
  put(x, load_le<uint16_t>(p + point::x.offset));
  put(y, load_le<uint16_t>(p + point::y.offset));
  put(z, load_le<uint16_t>(p + point::z.offset));
  put(statusByte, p[point::statusByte.offset]);
  put(repeatByte, p[point::repeatByte.offset]);
  put(red, p[point::red.offset]);
  put(green, p[point::green.offset]);
  put(blue, p[point::blue.offset]);
}

KALVOR_API void KALVOR_CALL clearpicmem(uint32_t scanner) { clear_pictures(scanner); }

KALVOR_API uint16_t KALVOR_CALL GetMaxPic(uint32_t scanner) { return query_picture_total(scanner); }

KALVOR_API void KALVOR_CALL displaytestpic(uint32_t scanner, uint16_t pictureNumber) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  constexpr uint32_t lines = true_colour::entries;
  uint8_t* area = upload_area(rec);
  const uint8_t* colours = rec + record::trueColourTable.offset + true_colour::entriesOffset;
  for (uint32_t i = 0; i < lines; ++i) {
    double fraction = static_cast<double>(i) / static_cast<double>(lines - 1);
    auto y = static_cast<uint16_t>(trunc_to_i32(32767.0 - fraction * 65535.0));
    const uint8_t* c = colours + true_colour::entrySize * i;
    // A blanked jump to the left edge, then a drawn stroke to the right edge.
    put_point(point_at(area, 2 * i), 0x8000, y, 0, kFlag7 | kBlankBit, 0, c[0], c[1], c[2]);
    put_point(point_at(area, 2 * i + 1), 0x7FFF, y, 0, kFlag7, 0, c[0], c[1], c[2]);
  }
  send_picture(scanner, rec, pictureNumber, 2 * lines);
}

KALVOR_API void KALVOR_CALL displaydirectpoint(uint32_t scanner, uint32_t index, uint16_t x, uint16_t y, uint8_t d0,
                                               uint8_t d1, uint8_t d2, uint8_t d3, uint8_t d4, uint8_t d5,
                                               uint8_t d6) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec || index >= direct::maxPoints) return;
  uint8_t* p = rec + record::directPoints.offset + direct::pointsOffset + direct::pointSize * index;
  Packer{p} << x << y << d0 << d1 << d2 << d3 << d4 << d5 << d6;
}

KALVOR_API void KALVOR_CALL displaydirect(uint32_t scanner, uint16_t directParam1, uint16_t directParam2,
                                          uint16_t directParam3) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  uint8_t* area = rec + record::directPoints.offset;
  store(area, direct::opcode, op(Opcode::DirectPoints));
  store(area, direct::param1, directParam1);
  store(area, direct::param2, directParam2);
  store(area, direct::param3, directParam3);
  send(scanner, area, record::directPoints.size, rec + record::preview.offset);
}

KALVOR_API void KALVOR_CALL displayrasterframe(uint32_t scanner, uint16_t raster1, uint16_t raster2, uint16_t raster3,
                                               uint16_t raster4, double raster5, uint16_t raster6, uint16_t raster7,
                                               uint16_t raster8, uint8_t raster9, uint16_t raster10,
                                               uint16_t raster11, uint16_t raster12, double raster13, double raster14,
                                               double raster15, double raster16, double raster17, uint16_t raster18) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  uint8_t cmd[72];
  Packer end = Packer{cmd} << op(Opcode::RasterFrame) << raster1 << raster2 << raster3 << raster4 << raster5
                           << raster6 << raster7 << raster8 << raster9 << raster10 << raster11 << raster12
                           << raster13 << raster14 << raster15 << raster16 << raster17 << raster18;
  (void)end;
  send(scanner, cmd, rec + record::preview.offset);
}
