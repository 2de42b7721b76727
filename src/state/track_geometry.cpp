// Track geometry: world angles, rotation, size, shift, view, shear, clip box,
// depth cue, scan limits, the code fields, prism and the picture shown.
// Immediate setters store their values unchanged; masked exports add,
// multiply or replace with the scaling of their table row.
#include "kalvor/kalvor.h"
#include "state/masked.h"

using namespace kalvor;

// ---- immediate setters ---------------------------------------------------------

// X(name, argument type, field): one field of one track, stored unchanged.
#define KALVOR_GEOMETRY_SETTERS(X)                \
  X(displayworldangx, double, worldAngleX)        \
  X(displayworldangy, double, worldAngleY)        \
  X(displayworldangz, double, worldAngleZ)        \
  X(displaysizex, double, sizeX)                  \
  X(displaysizey, double, sizeY)                  \
  X(displayclipx1, uint16_t, clipX1)              \
  X(displayclipy1, uint16_t, clipY1)              \
  X(displayclipx2, uint16_t, clipX2)              \
  X(displayclipy2, uint16_t, clipY2)              \
  X(displayclipz1, int32_t, clipZ1)               \
  X(displayclipz2, int32_t, clipZ2)               \
  X(displayrotationorder, uint8_t, rotationOrder) \
  X(displaypipeline, uint32_t, pipeline)          \
  X(displaysurface, uint8_t, surface)             \
  X(displayflags, uint16_t, flags)                \
  X(displayworld, uint8_t, world)                 \
  X(displayframe, uint16_t, pictureNumber)

KALVOR_GEOMETRY_SETTERS(KALVOR_TRACK_SETTER)

KALVOR_API void KALVOR_CALL displayworldang(uint32_t scanner, uint16_t t, double x, double y, double z) {
  set_track(scanner, t, track::worldAngleX, x, track::worldAngleY, y, track::worldAngleZ, z);
}

KALVOR_API void KALVOR_CALL displaysize(uint32_t scanner, uint16_t t, double x, double y) {
  set_track(scanner, t, track::sizeX, x, track::sizeY, y);
}

KALVOR_API double KALVOR_CALL displaygetsizex(uint32_t scanner, uint16_t t) {
  return get_track(scanner, t, track::sizeX);
}

KALVOR_API double KALVOR_CALL displaygetsizey(uint32_t scanner, uint16_t t) {
  return get_track(scanner, t, track::sizeY);
}

KALVOR_API void KALVOR_CALL displayclip(uint32_t scanner, uint16_t t, uint16_t x1, uint16_t y1, int32_t z1,
                                        uint16_t x2, uint16_t y2, int32_t z2) {
  set_track(scanner, t, track::clipX1, x1, track::clipY1, y1, track::clipZ1, z1, track::clipX2, x2,
            track::clipY2, y2, track::clipZ2, z2);
}

KALVOR_API void KALVOR_CALL displaydepthcue(uint32_t scanner, uint16_t t, uint32_t first, uint32_t second) {
  set_track(scanner, t, track::depthCue1, first, track::depthCue2, second);
}

// The one setter whose track argument is a full 32-bit value: 65,536 + 3 is
// out of range here, not track 3.
KALVOR_API void KALVOR_CALL displayscanlimits(uint32_t scanner, uint32_t t, double low, double high) {
  set_track(scanner, t, track::scanLimitLow, low, track::scanLimitHigh, high);
}

KALVOR_API void KALVOR_CALL displaysetflag(uint32_t scanner, uint16_t t, uint16_t bits) {
  set_track(scanner, t, track::flags, static_cast<uint16_t>(get_track(scanner, t, track::flags) | bits));
}

KALVOR_API void KALVOR_CALL displaymorphing(uint32_t scanner, uint16_t t, uint16_t picture, uint16_t second,
                                            double amount) {
  set_track(scanner, t, track::pictureNumber, picture, track::morphPicture, second, track::morph, amount);
}

// ---- masked exports ------------------------------------------------------------

using AddAngle = AddScaled<360>;

// X(name, operation, field)
#define KALVOR_GEOMETRY_MASKED_1(X)                    \
  X(DisplayWorldAngleX, AddAngle, worldAngleX)         \
  X(DisplayWorldAngleY, AddAngle, worldAngleY)         \
  X(DisplayWorldAngleZ, AddAngle, worldAngleZ)         \
  X(DisplayRotateX, AddAngle, rotateX)                 \
  X(DisplayRotateY, AddAngle, rotateY)                 \
  X(DisplayRotateZ, AddAngle, rotateZ)                 \
  X(DisplaySizeX, Multiply, sizeX)                     \
  X(DisplaySizeY, Multiply, sizeY)                     \
  X(TDisplaySizeX, Multiply, sizeX)                    \
  X(TDisplaySizeY, Multiply, sizeY)                    \
  X(DisplayShiftX, AddPositionTruncIncrement, shiftX)  \
  X(DisplayShiftY, AddPositionTruncIncrement, shiftY)  \
  X(TDisplayShiftX, AddPositionTruncIncrement, shiftX) \
  X(TDisplayShiftY, AddPositionTruncIncrement, shiftY) \
  X(DisplayViewX, AddPositionTruncIncrement, viewX)    \
  X(DisplayViewY, AddPositionTruncIncrement, viewY)    \
  X(DisplayViewZ, AddPositionTruncIncrement, viewZ)    \
  X(DisplayShearXByY, Replace, shearXByY)              \
  X(DisplayShearXByZ, Replace, shearXByZ)              \
  X(DisplayShearYByX, Replace, shearYByX)              \
  X(DisplayShearYByZ, Replace, shearYByZ)              \
  X(DisplayShearZByX, Replace, shearZByX)              \
  X(DisplayShearZByY, Replace, shearZByY)              \
  X(DisplayClipX1, ReplaceClip16, clipX1)              \
  X(DisplayClipY1, ReplaceClip16, clipY1)              \
  X(DisplayClipX2, ReplaceClip16, clipX2)              \
  X(DisplayClipY2, ReplaceClip16, clipY2)              \
  X(DisplayClipZ1, ReplaceClipZ, clipZ1)               \
  X(DisplayClipZ2, ReplaceClipZ, clipZ2)               \
  X(DisplayPipeline, ReplacePipeline, pipeline)

KALVOR_GEOMETRY_MASKED_1(KALVOR_MASKED_TRACK_1)
KALVOR_MASKED_TRACK_2(DisplaySizeXY, Multiply, sizeX, sizeY)
KALVOR_MASKED_TRACK_2(DisplayShiftXY, AddPositionTruncIncrement, shiftX, shiftY)
KALVOR_MASKED_TRACK_3(DisplayWorldAngleXYZ, AddAngle, worldAngleX, worldAngleY, worldAngleZ)
KALVOR_MASKED_TRACK_3(DisplayViewXYZ, AddPositionTruncIncrement, viewX, viewY, viewZ)

KALVOR_API void KALVOR_CALL DisplayShear(uint32_t scanner, uint32_t trackMask, uint32_t, uint32_t, double xByY,
                                         double xByZ, double yByX, double yByZ, double zByX, double zByY) {
  masked_tracks<Replace>(scanner, trackMask,
                         {track::shearXByY, track::shearXByZ, track::shearYByX, track::shearYByZ,
                          track::shearZByX, track::shearZByY},
                         {xByY, xByZ, yByX, yByZ, zByX, zByY});
}

// The rectangle and the depth range are replaced independently, so writing
// them in two passes gives the same record as one.
KALVOR_API void KALVOR_CALL DisplayClipCube(uint32_t scanner, uint32_t trackMask, uint32_t, uint32_t, double x1,
                                            double y1, double z1, double x2, double y2, double z2) {
  masked_tracks<ReplaceClip16>(scanner, trackMask, {track::clipX1, track::clipY1, track::clipX2, track::clipY2},
                               {x1, y1, x2, y2});
  masked_tracks<ReplaceClipZ>(scanner, trackMask, {track::clipZ1, track::clipZ2}, {z1, z2});
}

// Factor limited to -4..4 first, then the count to 0..24; the mode is stored
// unchanged.
KALVOR_API void KALVOR_CALL DisplayPrism(uint32_t scanner, uint32_t trackMask, int32_t count, double factor,
                                         uint8_t mode) {
  double f = limit(factor, -4.0, 4.0);
  uint32_t n = count < 0 ? 0u : count > 24 ? 24u : static_cast<uint32_t>(count);
  for_each_track(scanner, trackMask, [&](uint8_t* tr) {
    store_all(tr, track::prismFactor, f, track::prismCount, n, track::prismMode, mode);
  });
}
