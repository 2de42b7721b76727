// The three preview areas a scanner answers into (preview, full preview and
// Vistrel), read point by point with each point's six colour channels turned
// into RGB through the scanner's colour matrix; and the host's preview flags.
#include "colour/colour_buffers.h"
#include "core/convert.h"
#include "core/library.h"
#include "core/opcodes.h"
#include "core/transport.h"
#include "kalvor/kalvor.h"

using namespace kalvor;

namespace {

template <typename T>
void put(T* out, T value) {
  if (out) *out = value;
}

// Sends the refresh command with the area as answer area, then reports the
// area's point count and the value after it (also when nothing answered).
void refresh(uint32_t scanner, Opcode opcode, Area area, uint16_t* count, uint32_t* value) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  uint8_t cmd[1] = {op(opcode)};
  send(scanner, cmd, rec + area.offset);
  put(count, load(rec + area.offset, preview::pointCount));
  put(value, load(rec + area.offset, preview::waitValue));
}

void point_count(uint32_t scanner, Area area, uint16_t* count) {
  if (const uint8_t* rec = scanner_record(scanner)) put(count, load(rec + area.offset, preview::pointCount));
}

// A colour sum as a byte: above 255 gives 255; otherwise truncated toward
// zero, low 8 bits (so -1.5 gives 255; NaN gives 0).
uint8_t colour_byte(double sum) { return sum > 255.0 ? 255 : trunc_low8(sum); }

// Point `index` of an area whose points hold x and y as Coord, then six
// channel bytes and a status byte. An index beyond the area's 16,000 points
// is ignored and leaves every out untouched; the count in the area is not
// consulted, so whatever it holds no read leaves the area.
template <typename Coord>
void read_point(uint32_t scanner, Area area, uint16_t index, Coord* x, Coord* y, uint8_t* status, uint8_t* r,
                uint8_t* g, uint8_t* b) {
  constexpr uint32_t point_size = 2 * sizeof(Coord) + kChannels + 1;
  static_assert(preview::pointsOffset + preview::maxPoints * point_size <= record::fullPreview.size);
  const uint8_t* rec = scanner_record(scanner);
  if (!rec || index >= preview::maxPoints) return;
  const uint8_t* point = rec + area.offset + preview::pointsOffset + point_size * index;
  const uint8_t* channels = point + 2 * sizeof(Coord);
  put(x, load_le<Coord>(point));
  put(y, load_le<Coord>(point + sizeof(Coord)));
  put(status, channels[kChannels]);
  uint8_t* outs[3] = {r, g, b};
  for (uint32_t row = 0; row < 3; ++row) {
    double sum = 0.0;
    for (uint32_t n = 0; n < kChannels; ++n) sum += load(rec, record::colourMatrix.at(6 * row + n)) * channels[n];
    put(outs[row], colour_byte(sum));
  }
}

void set_matrix_row(uint32_t scanner, uint32_t row, const double (&weights)[kChannels]) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  for (uint32_t n = 0; n < kChannels; ++n) store(rec, record::colourMatrix.at(6 * row + n), weights[n]);
}

}  // namespace

// X(name part, refresh opcode, area, type of x and y)
#define KALVOR_PREVIEW_AREAS(X)                                        \
  X(previewbuffer, RefreshPreview, record::preview, uint16_t)          \
  X(fullpreviewbuffer, RefreshFullPreview, record::fullPreview, int32_t)    \
  X(vistrelbuffer, RefreshVistrel, record::vistrel, int32_t)

#define KALVOR_DEFINE_PREVIEW(name, opcode, area, coord)                                                       \
  static_assert(sizeof(coord) == (area.size == record::preview.size ? 2 : 4));                                \
  KALVOR_API void KALVOR_CALL displayupdate##name(uint32_t scanner, uint16_t* count, uint32_t* value) {       \
    refresh(scanner, Opcode::opcode, area, count, value);                                                     \
  }                                                                                                           \
  KALVOR_API void KALVOR_CALL displayget##name##cnt(uint32_t scanner, uint16_t* count) {                      \
    point_count(scanner, area, count);                                                                        \
  }                                                                                                           \
  KALVOR_API void KALVOR_CALL displayget##name##vector(uint32_t scanner, uint16_t index, coord* x, coord* y,  \
                                                       uint8_t* status, uint8_t* r, uint8_t* g, uint8_t* b) { \
    read_point<coord>(scanner, area, index, x, y, status, r, g, b);                                           \
  }
KALVOR_PREVIEW_AREAS(KALVOR_DEFINE_PREVIEW)
#undef KALVOR_DEFINE_PREVIEW

// X(name part, header field): flags the host stores and reads back.
#define KALVOR_PREVIEW_FLAGS(X)      \
  X(previewflag, record::previewFlag) \
  X(beamshowflag, record::beamShowFlag) \
  X(graficflag, record::graficFlag)

#define KALVOR_DEFINE_FLAG(name, field)                                           \
  KALVOR_API void KALVOR_CALL displayset##name(uint32_t scanner, uint8_t value) { \
    if (uint8_t* rec = scanner_record(scanner)) store(rec, field, value);         \
  }                                                                               \
  KALVOR_API uint8_t KALVOR_CALL displayget##name(uint32_t scanner) {             \
    const uint8_t* rec = scanner_record(scanner);                                 \
    return rec ? load(rec, field) : 0;                                            \
  }
KALVOR_PREVIEW_FLAGS(KALVOR_DEFINE_FLAG)
#undef KALVOR_DEFINE_FLAG

// X(component, matrix row)
#define KALVOR_MATRIX_ROWS(X) X(R, 0) X(G, 1) X(B, 2)

#define KALVOR_DEFINE_ROW(component, row)                                                                     \
  KALVOR_API void KALVOR_CALL DisplaySetPreview##component(uint32_t scanner, double c0, double c1, double c2, \
                                                           double c3, double c4, double c5) {               \
    set_matrix_row(scanner, row, {c0, c1, c2, c3, c4, c5});                                                   \
  }
KALVOR_MATRIX_ROWS(KALVOR_DEFINE_ROW)
#undef KALVOR_DEFINE_ROW

KALVOR_API void KALVOR_CALL displayscannermapping(uint32_t scanner, uint32_t mask) {
  if (scanner >= 1 && scanner <= kMaxScanner) g_library.scannerMappingTable[scanner] = mask;
}
