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
  // The highest active track: inactive tracks are passed over four at a
  // time, one branch for four picture numbers.
  auto picture = [rec](uint32_t t) { return load(track_at(rec, t), track::pictureNumber); };
  uint32_t count = kTracks;
  while (count >= 4 && (picture(count - 1) | picture(count - 2) | picture(count - 3) | picture(count - 4)) == 0)
    count -= 4;
  while (count > 0 && picture(count - 1) == 0) --count;
  store(rec, record::trackCount, static_cast<uint16_t>(count));

  // Header and tracks, each with only its slots in use; at most 37,443 bytes.
  // The tracks follow the three header bytes in the record, and each sends
  // the front of its record, so the upload is made of runs of the record as
  // it lies; a run ends after a track with fewer than 8 slots in use. A single
  // run (one track, or tracks with all slots in use) is sent from the record
  // without a copy; more runs are gathered on the stack, one copy per run.
  uint8_t upload[3 + record::tracks.size];
  uint8_t* run = rec + record::trackCommand.offset;
  uint32_t run_length = 3, gathered = 0;
  for (uint32_t t = 0; t < count; ++t) {
    uint32_t slots = load(track_at(rec, t), track::slotCount);
    if (slots > kSlots) slots = kSlots;
    run_length += track::upload_size(slots);
    if (slots < kSlots && t + 1 < count) {
      memcpy(upload + gathered, run, run_length);
      gathered += run_length;
      run = track_at(rec, t + 1);
      run_length = 0;
    }
  }
  if (gathered == 0) {
    send(scanner, run, run_length, rec + record::preview.offset);
  } else {
    memcpy(upload + gathered, run, run_length);
    send(scanner, upload, gathered + run_length, rec + record::preview.offset);
  }

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
