// displayinittrack, displaycleartrack, and the track upload of displayupdate
// and displayvisualupdate.
#include <cstring>

#include "core/library.h"
#include "core/opcodes.h"
#include "core/transport.h"
#include "kalvor/kalvor.h"

using namespace kalvor;

namespace {

// Track defaults, written by displayinittrack; every field not named here is
// zero, except the track UGC values and prismMode, which keep their values.
void write_track_defaults(uint8_t* t) {
  double ugc[10];
  for (int k = 0; k < 10; ++k) ugc[k] = load_le<double>(t + track::ugc1.offset + 8 * k);
  uint8_t prism_mode = load(t, track::prismMode);
  memset(t, 0, track::size);
  store(t, track::scanLimitHigh, 1.0);
  store(t, track::intensity, 1.0);
  store(t, track::rotR, 1.0);
  store(t, track::rotG, 1.0);
  store(t, track::rotB, 1.0);
  store(t, track::centerRecolorR, 1.0);
  store(t, track::centerRecolorG, 1.0);
  store(t, track::centerRecolorB, 1.0);
  store(t, track::hue, 1.0);
  store(t, track::saturation, 1.0);
  store(t, track::lightness, 1.0);
  store<uint8_t>(t, track::surface, 1);
  store<uint8_t>(t, track::rotationOrder, 3);
  store<uint16_t>(t, track::clipX2, 65535);
  store<uint16_t>(t, track::clipY2, 65535);
  store<int32_t>(t, track::clipZ1, -131070);
  store<int32_t>(t, track::clipZ2, 131070);
  store(t, track::sizeX, 1.0);
  store(t, track::sizeY, 1.0);
  store<uint8_t>(t, track::slotCount, 1);
  for (uint32_t s = 0; s < kSlots; ++s) {
    uint8_t* slot = t + track::slotsOffset + slot::size * s;
    store(slot, slot::scaleX, 1.0);
    store(slot, slot::scaleY, 1.0);
    store(slot, slot::scaleZ, 1.0);
  }
  for (int k = 0; k < 10; ++k) store_le<double>(t + track::ugc1.offset + 8 * k, ugc[k]);
  store(t, track::prismMode, prism_mode);
}

// Serialises tracks 0 up to the highest active one and sends them, then
// refreshes the full preview and, while Vistrel output is on, the Vistrel one.
uint32_t upload_tracks(uint32_t scanner, Opcode opcode) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return 0;
  store(rec, record::trackCommand, op(opcode));
  uint32_t count = 0;
  for (uint32_t t = kTracks; t-- > 0;) {
    if (load(track_at(rec, t), track::pictureNumber) != 0) {
      count = t + 1;
      break;
    }
  }
  store(rec, record::trackCount, static_cast<uint16_t>(count));

  // Header and tracks, each with only its slots in use; at most 37,443 bytes.
  uint8_t upload[3 + record::tracks.size];
  memcpy(upload, rec + record::trackCommand.offset, 3);
  uint32_t length = 3;
  for (uint32_t t = 0; t < count; ++t) {
    const uint8_t* tr = track_at(rec, t);
    uint32_t slots = load(tr, track::slotCount);
    if (slots > kSlots) slots = kSlots;
    uint32_t n = track::upload_size(slots);
    memcpy(upload + length, tr, n);
    length += n;
  }
  send(scanner, upload, length, rec + record::preview.offset);

  uint8_t full[1] = {op(Opcode::RefreshFullPreview)};
  send(scanner, full, rec + record::fullPreview.offset);
  if (g_library.vistrelEnabled > 0) {
    uint8_t vistrel[1] = {op(Opcode::RefreshVistrel)};
    send(scanner, vistrel, rec + record::vistrel.offset);
  }
  return load(rec + record::preview.offset, preview::waitValue);
}

}  // namespace

KALVOR_API void KALVOR_CALL displayinittrack(uint32_t scanner) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  for (uint32_t t = 0; t < kTracks; ++t) write_track_defaults(track_at(rec, t));
}

KALVOR_API void KALVOR_CALL displaycleartrack(uint32_t scanner) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  for (uint32_t t = 0; t < kTracks; ++t) store<uint16_t>(track_at(rec, t), track::pictureNumber, 0);
}

KALVOR_API uint32_t KALVOR_CALL displayupdate(uint32_t scanner) {
  return upload_tracks(scanner, Opcode::TrackUpload);
}

KALVOR_API uint32_t KALVOR_CALL displayvisualupdate(uint32_t scanner) {
  return upload_tracks(scanner, Opcode::VisualTrackUpload);
}
