// What a file reader changed while reading: pictures the file ends inside,
// pictures with more points than a picture keeps, and parts passed over.
// The exports read without a report; a host that wants to tell its user what
// a file lost (the kalvor tool) calls the readers below with one. The readers
// touch the report only where they change something, never per point.
#pragma once

#include <cstdint>

namespace kalvor::pictures {

struct ReadReport {
  // The file ends inside a picture's points: the picture (by the number it
  // was sent under) announced `cut_announced` points, `cut_missing` of them
  // were padded as blanked points. A file ends once, so there is one such.
  bool cut = false;
  uint32_t cut_picture = 0, cut_announced = 0, cut_missing = 0;
  // Pictures with more points than kept, the points dropped, and the first
  // such picture's number.
  uint32_t clamped_pictures = 0, clamped_first = 0;
  uint64_t dropped_points = 0;
  // Parts passed over without a picture: ILDA sections of format 3 or above
  // 5, catalogue records of an unknown type or of too many points, a picture
  // file of a layout this library does not know.
  uint32_t skipped = 0;
  // The file ends inside a header: the reading stopped there.
  bool header_cut = false;
};

inline void note_cut(ReadReport* report, uint32_t picture, uint32_t announced, uint32_t missing) {
  if (!report || missing == 0) return;
  report->cut = true;
  report->cut_picture = picture;
  report->cut_announced = announced;
  report->cut_missing = missing;
}
inline void note_clamped(ReadReport* report, uint32_t picture, uint64_t dropped) {
  if (!report || dropped == 0) return;
  if (report->clamped_pictures++ == 0) report->clamped_first = picture;
  report->dropped_points += dropped;
}
inline void note_skipped(ReadReport* report) {
  if (report) ++report->skipped;
}
inline void note_header_cut(ReadReport* report) {
  if (report) report->header_cut = true;
}

// The readers with a report (null: none), as their exports call them.
void import_ilda(uint32_t scanner, const char* path, uint16_t start, ReadReport* report);
void import_las(uint32_t scanner, const char* path, uint32_t start, ReadReport* report);
void import_flx(uint32_t scanner, const char* path, uint32_t start, ReadReport* report);
void load_catalogue_file(uint32_t scanner, const char* path, ReadReport* report);
void load_show_file(uint32_t scanner, const char* path, ReadReport* report);
void load_picture_file(uint32_t scanner, const char* path, uint16_t number, ReadReport* report);

}  // namespace kalvor::pictures
