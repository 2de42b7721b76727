// Shared pieces of the picture subsystem: the point record, the two picture
// areas of a scanner's record, the picture commands built on them, colour
// buffer 0 as the file readers see it, and block-wise record reading.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/file_io.h"
#include "core/library.h"
#include "core/opcodes.h"
#include "core/transport.h"
#include "pictures/read_report.h"
#include "state/layout.h"

namespace kalvor::pictures {

inline constexpr uint32_t kMaxPoints = picture::maxPoints;

// statusByte bits: colour index in bits 0..5, blank in bit 6, flag7 in bit 7.
inline constexpr uint8_t kIndexMask = 0x3F;
inline constexpr uint8_t kBlankBit = 0x40;
inline constexpr uint8_t kFlag7 = 0x80;

inline uint8_t status_byte(uint32_t index, uint32_t blank, uint32_t flag7) {
  return static_cast<uint8_t>((index & kIndexMask) | ((blank & 1) << 6) | ((flag7 & 1) << 7));
}
inline uint8_t repeat_byte(uint32_t repeat, uint32_t high_nibble) {
  return static_cast<uint8_t>((repeat & 15) | ((high_nibble & 15) << 4));
}

inline uint8_t* upload_area(uint8_t* rec) { return rec + record::pictureUpload.offset; }
inline uint8_t* reply_area(uint8_t* rec) { return rec + record::pictureReply.offset; }
inline uint8_t* point_at(uint8_t* area, uint32_t i) { return area + picture::pointsOffset + point::size * i; }
inline const uint8_t* point_at(const uint8_t* area, uint32_t i) {
  return area + picture::pointsOffset + point::size * i;
}

// Writes one PicturePoint record.
inline void put_point(uint8_t* p, uint16_t x, uint16_t y, uint16_t z, uint8_t status, uint8_t repeat,
                      uint8_t red, uint8_t green, uint8_t blue) {
  store_le<uint16_t>(p + point::x.offset, x);
  store_le<uint16_t>(p + point::y.offset, y);
  store_le<uint16_t>(p + point::z.offset, z);
  p[point::statusByte.offset] = status;
  p[point::repeatByte.offset] = repeat;
  p[point::red.offset] = red;
  p[point::green.offset] = green;
  p[point::blue.offset] = blue;
}

// Points a file announces but does not hold become blanked points at the
// centre, so that a truncated file never draws lines left by earlier pictures.
inline void blank_points(uint8_t* area, uint32_t from, uint32_t to) {
  for (uint32_t i = from; i < to && i < kMaxPoints; ++i) put_point(point_at(area, i), 0, 0, 0, kFlag7 | kBlankBit, 0, 0, 0, 0);
}

// Point count of the last picture read back, limited to what the area holds:
// a scanner answering more than 8192 points never makes a reader leave it.
inline uint32_t reply_count(uint8_t* rec) {
  uint32_t n = load(reply_area(rec), picture::pointCount);
  return n < kMaxPoints ? n : kMaxPoints;
}

// Sends the upload area as picture `number` with `count` points (at most 8192).
inline void send_picture(uint32_t scanner, uint8_t* rec, uint16_t number, uint32_t count) {
  if (count > kMaxPoints) count = kMaxPoints;
  uint8_t* area = upload_area(rec);
  store(area, picture::opcode, op(Opcode::Picture));
  store(area, picture::pictureNumber, number);
  store(area, picture::pointCount, static_cast<uint16_t>(count));
  send(scanner, area, picture::pointsOffset + point::size * count, nullptr);
}

// Asks the scanner for picture `number`; the answer lands in the reply area.
// Returns the limited point count of the reply area.
inline uint32_t query_picture(uint32_t scanner, uint8_t* rec, uint16_t number) {
  uint8_t cmd[3] = {op(Opcode::PictureQuery)};
  store_le<uint16_t>(cmd + 1, number);
  send(scanner, cmd, reply_area(rec));
  return reply_count(rec);
}

// The scanner's picture total: 0 when the transport is not bound.
inline uint16_t query_picture_total(uint32_t scanner) {
  uint8_t cmd[1] = {op(Opcode::PictureTotal)};
  uint8_t reply[4] = {};
  send(scanner, cmd, reply);
  return load_le<uint16_t>(reply);
}

inline void clear_pictures(uint32_t scanner) {
  uint8_t cmd[1] = {op(Opcode::ClearPictures)};
  send(scanner, cmd);
}

// The six channel bytes of entry (index mod 64) of colour buffer 0; indexed
// readers take c0, c1, c2 as a point's red, green and blue.
inline const uint8_t* colour_entry(uint8_t* rec, uint8_t index) {
  return rec + record::colourBuffers.offset + colour_buffer::channelsOffset + 6u * (index & kIndexMask);
}

// Sets entry i (below 64) of colour buffer 0 from an RGB colour: the RGB half
// gets (r, g, b), the channel half (r, g, b, 0, 0, 0).
inline void set_colour_entry(uint8_t* rec, uint32_t i, uint8_t r, uint8_t g, uint8_t b) {
  uint8_t* buffer = rec + record::colourBuffers.offset;
  uint8_t* channels = buffer + colour_buffer::channelsOffset + 6 * i;
  uint8_t* rgb = buffer + colour_buffer::rgbOffset + 3 * i;
  channels[0] = rgb[0] = r;
  channels[1] = rgb[1] = g;
  channels[2] = rgb[2] = b;
  channels[3] = channels[4] = channels[5] = 0;
}

// Reads `count` records of `size` bytes (at most kMaxRecord) in blocks and
// hands each block to fn(records, first, n): n whole records in file order,
// the first of them record number `first`. Returns how many whole records the
// file held; the reading stops at the end of the file. The records are read
// where they lie in the file's buffer, so a block is every whole record
// buffered; the one record that straddles the buffer's end comes as a block
// of its own. The hot readers loop over a block with their position in
// locals: called once per record, a callback would reload everything it
// reaches by reference after each point it writes, since a byte store may
// alias anything.
inline constexpr uint32_t kMaxRecord = 11;
template <typename Fn>
uint32_t read_blocks(FileReader& file, uint32_t size, uint32_t count, Fn&& fn) {
  uint32_t done = 0;
  while (done < count) {
    const uint8_t* data = nullptr;
    size_t have = file.buffered(&data) / size;
    if (have) {
      uint32_t n = have < count - done ? static_cast<uint32_t>(have) : count - done;
      fn(data, done, n);
      file.advance(size_t{n} * size);
      done += n;
      continue;
    }
    uint8_t record[kMaxRecord];
    if (!file.read_exact(record, size)) break;  // the end of the file, or a record cut short
    fn(static_cast<const uint8_t*>(record), done, 1u);
    ++done;
  }
  return done;
}

// The same, record by record: fn(record, i).
template <typename Fn>
uint32_t read_records(FileReader& file, uint32_t size, uint32_t count, Fn&& fn) {
  return read_blocks(file, size, count, [&](const uint8_t* records, uint32_t first, uint32_t n) {
    for (uint32_t i = 0; i < n; ++i) fn(records + size * i, first + i);
  });
}

// Tells the report (if any) how picture `number` of `count` points fared when
// `got` of its first `kept` points were in the file.
inline void note_points(ReadReport* report, uint16_t number, uint32_t count, uint32_t kept, uint32_t got) {
  if (got < kept)
    note_cut(report, number, count, count - got);
  else
    note_clamped(report, number, count - kept);
}

// Reads `count` PicturePoint records straight into points 0.. of the upload
// area and passes over records beyond the 8192nd. Points the file does not
// hold are blanked. Returns the number of points the picture has (at most 8192).
inline uint32_t read_raw_points(FileReader& file, uint8_t* rec, uint32_t count, ReadReport* report = nullptr,
                                uint16_t number = 0) {
  uint8_t* area = upload_area(rec);
  uint32_t kept = count < kMaxPoints ? count : kMaxPoints;
  size_t got = file.read(point_at(area, 0), size_t{point::size} * kept) / point::size;
  blank_points(area, static_cast<uint32_t>(got), kept);
  if (count > kept) file.skip(uint64_t{point::size} * (count - kept));
  note_points(report, number, count, kept, static_cast<uint32_t>(got));
  return kept;
}

// ASCII letter-case-insensitive comparison of a path's extension.
inline bool same_extension(const char* a, const char* b) {
  for (;; ++a, ++b) {
    char ca = (*a >= 'A' && *a <= 'Z') ? static_cast<char>(*a + 32) : *a;
    char cb = (*b >= 'A' && *b <= 'Z') ? static_cast<char>(*b + 32) : *b;
    if (ca != cb) return false;
    if (!ca) return true;
  }
}

}  // namespace kalvor::pictures
