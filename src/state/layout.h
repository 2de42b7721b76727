// Byte layout of a scanner's state record, its track and slot records, and
// the areas inside it. Track and slot records and most areas are sent to the
// scanner as they lie, so every offset here is also a wire format. Each offset
// and size is declared once, in the lists below, and checked at compile time:
// the fields of each list must follow each other without gaps.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/bytes.h"

namespace kalvor {

// A typed field at a fixed offset of a byte record.
template <typename T>
struct Field {
  uint32_t offset;
  using type = T;
  static constexpr uint32_t width = sizeof(T);
};

// An area of a record: its offset and size in bytes.
struct Area {
  uint32_t offset;
  uint32_t size;
  constexpr uint32_t end() const { return offset + size; }
};

template <typename T>
inline T load(const uint8_t* base, Field<T> f) {
  return load_le<T>(base + f.offset);
}
template <typename T>
inline void store(uint8_t* base, Field<T> f, T value) {
  store_le<T>(base + f.offset, value);
}

// Array fields: `count` values of type T from offset on.
template <typename T, uint32_t Count>
struct ArrayField {
  uint32_t offset;
  static constexpr uint32_t width = sizeof(T) * Count;
  constexpr Field<T> at(uint32_t i) const { return Field<T>{offset + static_cast<uint32_t>(sizeof(T)) * i}; }
};

namespace detail {
struct Span {
  uint32_t offset, width;
};
// True when the spans follow each other without gaps and end at `size`.
template <size_t N>
constexpr bool contiguous(const Span (&spans)[N], uint32_t start, uint32_t size) {
  uint32_t at = start;
  for (const Span& s : spans) {
    if (s.offset != at) return false;
    at += s.width;
  }
  return at == start + size;
}
}  // namespace detail

// ---- SlotRecord: 84 bytes ---------------------------------------------------
// X(name, type, offset)
#define KALVOR_SLOT_FIELDS(X) \
  X(pivotX, int32_t, 0)       \
  X(pivotY, int32_t, 4)       \
  X(pivotZ, int32_t, 8)       \
  X(angleX, double, 12)       \
  X(angleY, double, 20)       \
  X(angleZ, double, 28)       \
  X(preMoveX, int32_t, 36)    \
  X(preMoveY, int32_t, 40)    \
  X(preMoveZ, int32_t, 44)    \
  X(postMoveX, int32_t, 48)   \
  X(postMoveY, int32_t, 52)   \
  X(postMoveZ, int32_t, 56)   \
  X(scaleX, double, 60)       \
  X(scaleY, double, 68)       \
  X(scaleZ, double, 76)

namespace slot {
#define KALVOR_DECLARE_FIELD(name, type, offset) inline constexpr Field<type> name{offset};
KALVOR_SLOT_FIELDS(KALVOR_DECLARE_FIELD)
inline constexpr uint32_t size = 84;
}  // namespace slot

// ---- TrackRecord: 1,170 bytes ----------------------------------------------
#define KALVOR_TRACK_FIELDS(X)     \
  X(sparkling1, uint16_t, 0)       \
  X(sparkling2, uint8_t, 2)        \
  X(scanLimitLow, double, 3)       \
  X(scanLimitHigh, double, 11)     \
  X(rParam1, double, 19)           \
  X(gParam1, double, 27)           \
  X(bParam1, double, 35)           \
  X(rParam2, double, 43)           \
  X(gParam2, double, 51)           \
  X(bParam2, double, 59)           \
  X(rParam3, double, 67)           \
  X(gParam3, double, 75)           \
  X(bParam3, double, 83)           \
  X(rParam4, double, 91)           \
  X(gParam4, double, 99)           \
  X(bParam4, double, 107)          \
  X(rByte1, uint8_t, 115)          \
  X(gByte1, uint8_t, 116)          \
  X(bByte1, uint8_t, 117)          \
  X(rByte2, uint8_t, 118)          \
  X(gByte2, uint8_t, 119)          \
  X(bByte2, uint8_t, 120)          \
  X(color, uint8_t, 121)           \
  X(rgbColor, double, 122)         \
  X(world, uint8_t, 130)           \
  X(colorShift, double, 131)       \
  X(intensity, double, 139)        \
  X(rotR, double, 147)             \
  X(rotG, double, 155)             \
  X(rotB, double, 163)             \
  X(hotSpot, double, 171)          \
  X(centerRecolorR, double, 179)   \
  X(centerRecolorG, double, 187)   \
  X(centerRecolorB, double, 195)   \
  X(ugc1, double, 203)             \
  X(ugc2, double, 211)             \
  X(ugc3, double, 219)             \
  X(ugc4, double, 227)             \
  X(ugc5, double, 235)             \
  X(ugc6, double, 243)             \
  X(ugc7, double, 251)             \
  X(ugc8, double, 259)             \
  X(ugc9, double, 267)             \
  X(ugc10, double, 275)            \
  X(ugcByte, uint8_t, 283)         \
  X(hue, double, 284)              \
  X(saturation, double, 292)       \
  X(lightness, double, 300)        \
  X(prismCount, uint32_t, 308)     \
  X(prismFactor, double, 312)      \
  X(prismMode, uint8_t, 320)       \
  X(surface, uint8_t, 321)         \
  X(pictureNumber, uint16_t, 322)  \
  X(morphPicture, uint16_t, 324)   \
  X(morph, double, 326)            \
  X(flags, uint16_t, 334)          \
  X(pipeline, uint32_t, 336)       \
  X(rotationOrder, uint8_t, 340)   \
  X(worldAngleX, double, 341)      \
  X(worldAngleY, double, 349)      \
  X(worldAngleZ, double, 357)      \
  X(clipX1, uint16_t, 365)         \
  X(clipY1, uint16_t, 367)         \
  X(clipX2, uint16_t, 369)         \
  X(clipY2, uint16_t, 371)         \
  X(clipZ1, int32_t, 373)          \
  X(clipZ2, int32_t, 377)          \
  X(sizeX, double, 381)            \
  X(sizeY, double, 389)            \
  X(shiftX, int32_t, 397)          \
  X(shiftY, int32_t, 401)          \
  X(rotateX, double, 405)          \
  X(rotateY, double, 413)          \
  X(rotateZ, double, 421)          \
  X(depthCue1, uint32_t, 429)      \
  X(depthCue2, uint32_t, 433)      \
  X(shearXByY, double, 437)        \
  X(shearXByZ, double, 445)        \
  X(shearYByX, double, 453)        \
  X(shearYByZ, double, 461)        \
  X(shearZByX, double, 469)        \
  X(shearZByY, double, 477)        \
  X(viewX, int32_t, 485)           \
  X(viewY, int32_t, 489)           \
  X(viewZ, int32_t, 493)           \
  X(slotCount, uint8_t, 497)

namespace track {
KALVOR_TRACK_FIELDS(KALVOR_DECLARE_FIELD)
inline constexpr uint32_t fieldsSize = 497;    // track fields before slotCount
inline constexpr uint32_t slotsOffset = 498;   // slot k at slotsOffset + 84 * k
inline constexpr uint32_t slotsPerTrack = 8;
inline constexpr uint32_t size = 1170;
// Bytes of a track in the upload: its fields, slotCount and the slots in use.
constexpr uint32_t upload_size(uint32_t slots) { return slotsOffset + slot::size * slots; }
}  // namespace track

// ---- ScannerState header: 450 bytes ----------------------------------------
#define KALVOR_HEADER_FIELDS(X)   \
  X(lastError, uint8_t, 0)        \
  X(networkDebug, uint8_t, 1)     \
  X(signal, uint8_t, 34)          \
  X(output, uint8_t, 35)          \
  X(dmxInEnabled, uint8_t, 36)    \
  X(previewFlag, uint8_t, 37)     \
  X(beamShowFlag, uint8_t, 38)    \
  X(graficFlag, uint8_t, 39)      \
  X(trackCommand, uint8_t, 447)   \
  X(trackCount, uint16_t, 448)

namespace record {
KALVOR_HEADER_FIELDS(KALVOR_DECLARE_FIELD)
#undef KALVOR_DECLARE_FIELD

inline constexpr Area sendName{2, 16};
inline constexpr Area receiveName{18, 16};
// Three rows (R, G, B) of six doubles: entry CnToX at 40 + 48 * row + 8 * n.
inline constexpr ArrayField<double, 18> colourMatrix{40};
inline constexpr Area trueColourTable{184, 263};

// The areas of the record, in order.
inline constexpr Area header{0, 450};
inline constexpr Area tracks{450, 37440};
inline constexpr Area pictureReply{37890, 90117};
inline constexpr Area pictureUpload{128007, 90117};
inline constexpr Area paletteCommand{218124, 386};
inline constexpr Area preview{218510, 176006};
inline constexpr Area fullPreview{394516, 240006};
inline constexpr Area vistrel{634522, 240006};
inline constexpr Area colourBuffers{874528, 4608};
inline constexpr Area geonet{879136, 1946};
inline constexpr Area directPoints{881082, 176007};
inline constexpr Area dmxOutMap{1057089, 1024};
inline constexpr Area dmxInMap{1058113, 1024};
inline constexpr uint32_t size = 1059137;
inline constexpr uint32_t scannerCount = 21;  // records 0 to 20
}  // namespace record

// ---- areas with inner layouts ----------------------------------------------

// PicturePoint, 11 bytes: the point record of pictures and picture files.
namespace point {
inline constexpr Field<int16_t> x{0};
inline constexpr Field<int16_t> y{2};
inline constexpr Field<int16_t> z{4};
inline constexpr Field<uint8_t> statusByte{6};
inline constexpr Field<uint8_t> repeatByte{7};
inline constexpr Field<uint8_t> red{8};
inline constexpr Field<uint8_t> green{9};
inline constexpr Field<uint8_t> blue{10};
inline constexpr uint32_t size = 11;
}  // namespace point

// PictureUploadBuffer and PictureReplyArea share this layout; the reply's
// first three bytes are not interpreted.
namespace picture {
inline constexpr Field<uint8_t> opcode{0};
inline constexpr Field<uint16_t> pictureNumber{1};
inline constexpr Field<uint16_t> pointCount{3};
inline constexpr uint32_t pointsOffset = 5;
inline constexpr uint32_t maxPoints = 8192;
}  // namespace picture

// PreviewBuffer (11-byte points), FullPreviewBuffer and VistrelBuffer (15-byte points).
namespace preview {
inline constexpr Field<uint16_t> pointCount{0};
inline constexpr Field<uint32_t> waitValue{2};
inline constexpr uint32_t pointsOffset = 6;
inline constexpr uint32_t maxPoints = 16000;
inline constexpr uint32_t pointSize = 11;
inline constexpr uint32_t fullPointSize = 15;
}  // namespace preview

// ColourBuffer: 64 six-byte channel entries, then 64 RGB entries.
namespace colour_buffer {
inline constexpr uint32_t entries = 64;
inline constexpr uint32_t channelsOffset = 0;
inline constexpr uint32_t rgbOffset = 384;
inline constexpr uint32_t size = 576;
inline constexpr uint32_t count = 8;
}  // namespace colour_buffer

// PaletteCommand: opcode, entry count, 64 six-byte entries.
namespace palette_command {
inline constexpr Field<uint8_t> opcode{0};
inline constexpr Field<uint8_t> entryCount{1};
inline constexpr uint32_t entriesOffset = 2;
inline constexpr uint32_t size = 386;
}  // namespace palette_command

// TrueColourTable: opcode, byte argument, 29 nine-byte entries.
namespace true_colour {
inline constexpr Field<uint8_t> opcode{0};
inline constexpr Field<uint8_t> value{1};
inline constexpr uint32_t entriesOffset = 2;
inline constexpr uint32_t entrySize = 9;
inline constexpr uint32_t entries = 29;
}  // namespace true_colour

// GeonetArea: opcode, byte argument, 81 points of three doubles.
namespace geonet {
inline constexpr Field<uint8_t> opcode{0};
inline constexpr Field<uint8_t> value{1};
inline constexpr uint32_t pointsOffset = 2;
inline constexpr uint32_t pointSize = 24;
inline constexpr uint32_t gridSize = 9;
}  // namespace geonet

// DirectPointBuffer: opcode, three parameters, 16,000 eleven-byte points.
namespace direct {
inline constexpr Field<uint8_t> opcode{0};
inline constexpr Field<uint16_t> param1{1};
inline constexpr Field<uint16_t> param2{3};
inline constexpr Field<uint16_t> param3{5};
inline constexpr uint32_t pointsOffset = 7;
inline constexpr uint32_t pointSize = 11;
inline constexpr uint32_t maxPoints = 16000;
}  // namespace direct

// DMX maps: entry for host channel k (1..512) at 2 * (k - 1).
namespace dmx {
inline constexpr uint32_t channels = 512;
}

// ---- compile-time checks ---------------------------------------------------
namespace detail {
#define KALVOR_SPAN(name, type, offset) Span{offset, sizeof(type)},
inline constexpr Span slotSpans[] = {KALVOR_SLOT_FIELDS(KALVOR_SPAN)};
inline constexpr Span trackSpans[] = {KALVOR_TRACK_FIELDS(KALVOR_SPAN)};
#undef KALVOR_SPAN
inline constexpr Span headerSpans[] = {
    {record::lastError.offset, 1},     {record::networkDebug.offset, 1},
    {record::sendName.offset, 16},     {record::receiveName.offset, 16},
    {record::signal.offset, 1},        {record::output.offset, 1},
    {record::dmxInEnabled.offset, 1},  {record::previewFlag.offset, 1},
    {record::beamShowFlag.offset, 1},  {record::graficFlag.offset, 1},
    {record::colourMatrix.offset, record::colourMatrix.width},
    {record::trueColourTable.offset, record::trueColourTable.size},
    {record::trackCommand.offset, 1},  {record::trackCount.offset, 2}};
inline constexpr Span recordSpans[] = {
    {record::header.offset, record::header.size},
    {record::tracks.offset, record::tracks.size},
    {record::pictureReply.offset, record::pictureReply.size},
    {record::pictureUpload.offset, record::pictureUpload.size},
    {record::paletteCommand.offset, record::paletteCommand.size},
    {record::preview.offset, record::preview.size},
    {record::fullPreview.offset, record::fullPreview.size},
    {record::vistrel.offset, record::vistrel.size},
    {record::colourBuffers.offset, record::colourBuffers.size},
    {record::geonet.offset, record::geonet.size},
    {record::directPoints.offset, record::directPoints.size},
    {record::dmxOutMap.offset, record::dmxOutMap.size},
    {record::dmxInMap.offset, record::dmxInMap.size}};
}  // namespace detail

static_assert(detail::contiguous(detail::slotSpans, 0, slot::size));
static_assert(detail::contiguous(detail::trackSpans, 0, track::fieldsSize + 1));
static_assert(track::slotCount.offset == track::fieldsSize);
static_assert(track::upload_size(track::slotsPerTrack) == track::size);
static_assert(detail::contiguous(detail::headerSpans, 0, record::header.size));
static_assert(detail::contiguous(detail::recordSpans, 0, record::size));
static_assert(record::tracks.size == 32 * track::size);
static_assert(record::pictureUpload.size == picture::pointsOffset + picture::maxPoints * point::size);
static_assert(record::pictureReply.size == record::pictureUpload.size);
static_assert(record::paletteCommand.size == palette_command::entriesOffset + 6 * colour_buffer::entries);
static_assert(record::preview.size == preview::pointsOffset + preview::maxPoints * preview::pointSize);
static_assert(record::fullPreview.size == preview::pointsOffset + preview::maxPoints * preview::fullPointSize);
static_assert(record::vistrel.size == record::fullPreview.size);
static_assert(record::colourBuffers.size == colour_buffer::count * colour_buffer::size);
static_assert(colour_buffer::rgbOffset == 6 * colour_buffer::entries);
static_assert(colour_buffer::size == 9 * colour_buffer::entries);
static_assert(record::trueColourTable.size == true_colour::entriesOffset + true_colour::entries * true_colour::entrySize);
static_assert(record::geonet.size == geonet::pointsOffset + 81 * geonet::pointSize);
static_assert(record::directPoints.size == direct::pointsOffset + direct::maxPoints * direct::pointSize);
static_assert(record::dmxOutMap.size == 2 * dmx::channels && record::dmxInMap.size == 2 * dmx::channels);
static_assert(record::size * record::scannerCount == 22241877);

}  // namespace kalvor
