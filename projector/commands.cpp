// The projector engine's commands: what a scanner keeps and answers for each
// opcode. Every command is read only within its length (a short command reads
// zeros past its end), and every answer goes through a Reply that drops writes
// past the size the opcode's answer area has, so no command can make the
// engine read or write out of bounds.
#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "core/bytes.h"
#include "core/convert.h"
#include "core/opcodes.h"
#include "projector.h"

namespace kalvor::projector {
namespace {

constexpr uint32_t kVersion = 0x00010000;      // 1.0 in the high and low halves
constexpr uint32_t kFileBlockSize = 1026;      // a file-copy block: u16 count, 1024 data bytes
constexpr uint32_t kFileBlockData = 1024;

// ---- reading commands and writing answers ----------------------------------

struct Command {
  const uint8_t* bytes;
  uint32_t length;
  uint8_t opcode() const { return bytes[0]; }
  bool has(uint32_t offset, uint32_t width) const { return offset + width <= length; }
  // The little-endian value at offset, or 0 when the command is too short.
  template <typename T>
  T get(uint32_t offset) const {
    return has(offset, sizeof(T)) ? load_le<T>(bytes + offset) : T{};
  }
};

// An answer area of the size the opcode's answer has. Writes beyond it are
// dropped, so an answer never overruns the host's area.
class Reply {
 public:
  Reply(uint8_t* area, uint32_t size) : area_(area), size_(area ? size : 0) {}
  template <typename T>
  void put(uint32_t offset, T value) {
    if (offset + sizeof(T) <= size_) store_le<T>(area_ + offset, value);
  }
  void copy(uint32_t offset, const uint8_t* bytes, uint32_t count) {
    if (offset < size_) std::memcpy(area_ + offset, bytes, std::min(count, size_ - offset));
  }
  void zero(uint32_t offset, uint32_t count) {
    if (offset < size_) std::memset(area_ + offset, 0, std::min(count, size_ - offset));
  }

 private:
  uint8_t* area_;
  uint32_t size_;
};

uint32_t crc32(const uint8_t* bytes, uint32_t count) {
  uint32_t crc = 0xFFFFFFFFu;
  for (uint32_t i = 0; i < count; ++i) {
    crc ^= bytes[i];
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

// ---- pictures --------------------------------------------------------------

void store_picture(Scanner& s, const Command& c, Reply&) {
  if (!c.has(picture::pointsOffset, 0)) return;
  uint16_t number = c.get<uint16_t>(picture::pictureNumber.offset);
  uint32_t count = std::min<uint32_t>({c.get<uint16_t>(picture::pointCount.offset),
                                       (c.length - picture::pointsOffset) / point::size, picture::maxPoints});
  if (count == 0) {
    s.pictures.erase(number);
    s.bounds.erase(number);
    return;
  }
  const uint8_t* points = c.bytes + picture::pointsOffset;
  s.pictures[number].assign(points, points + count * point::size);
  Bounds b{{INT16_MAX, INT16_MAX, INT16_MAX}, {INT16_MIN, INT16_MIN, INT16_MIN}};
  for (uint32_t i = 0; i < count; ++i) {
    const uint8_t* p = points + i * point::size;
    int16_t v[3] = {load(p, point::x), load(p, point::y), load(p, point::z)};
    for (int k = 0; k < 3; ++k) b.lo[k] = std::min(b.lo[k], v[k]), b.hi[k] = std::max(b.hi[k], v[k]);
  }
  s.bounds[number] = b;
}

void clear_pictures(Scanner& s, const Command&, Reply&) {
  s.pictures.clear();
  s.bounds.clear();
}

void answer_picture(Scanner& s, const Command& c, Reply& r) {
  uint16_t number = c.get<uint16_t>(1);
  auto it = s.pictures.find(number);
  uint32_t count = it == s.pictures.end() ? 0 : static_cast<uint32_t>(it->second.size() / point::size);
  r.put<uint8_t>(0, op(Opcode::PictureQuery));
  r.put<uint16_t>(1, number);
  r.put<uint16_t>(picture::pointCount.offset, static_cast<uint16_t>(count));
  if (count) r.copy(picture::pointsOffset, it->second.data(), count * point::size);
}

void answer_picture_total(Scanner& s, const Command&, Reply& r) { r.put<uint32_t>(0, s.picture_total()); }

// ---- the frame and the previews --------------------------------------------

// The preview answers: point count, frame time, then per point x and y,
// six channels and the status. The PreviewBuffer has 16-bit coordinates (held
// at the ends of the range), the full and Vistrel buffers 32-bit ones.
template <typename Coordinate>
void answer_points(Scanner& s, const Command&, Reply& r) {
  constexpr uint32_t width = sizeof(Coordinate);
  static_assert(2 * width + 7 == (width == 2 ? preview::pointSize : preview::fullPointSize));
  auto coordinate = [](int32_t v) {
    return static_cast<Coordinate>(
        std::clamp<int32_t>(v, std::numeric_limits<Coordinate>::min(), std::numeric_limits<Coordinate>::max()));
  };
  r.put<uint16_t>(preview::pointCount.offset, static_cast<uint16_t>(s.frame.count));
  r.put<uint32_t>(preview::waitValue.offset, s.frame_time());
  uint32_t at = preview::pointsOffset;
  for (uint32_t i = 0; i < s.frame.count; ++i) {
    const FramePoint& p = s.frame.points[i];
    r.put<Coordinate>(at, coordinate(p.x));
    r.put<Coordinate>(at + width, coordinate(p.y));
    r.copy(at + 2 * width, p.channels, 6);
    r.put<uint8_t>(at + 2 * width + 6, p.status);
    at += 2 * width + 7;
  }
}
constexpr auto answer_preview = answer_points<int16_t>;
constexpr auto answer_full_preview = answer_points<int32_t>;

// A track upload: kept as received, then rendered into the frame.
void upload_tracks(Scanner& s, const Command& c, Reply& r) {
  s.uploadLength = std::min<uint32_t>(c.length, kMaxUpload);
  std::memcpy(s.upload.data(), c.bytes, s.uploadLength);
  render_tracks(s);
  answer_preview(s, c, r);
}

// Direct points: the first parameter is the number of points to show.
void direct_points(Scanner& s, const Command& c, Reply& r) {
  uint32_t count = std::min<uint32_t>(c.get<uint16_t>(direct::param1.offset), direct::maxPoints);
  s.frame.count = 0;
  for (uint32_t i = 0; i < count; ++i) {
    uint32_t at = direct::pointsOffset + i * direct::pointSize;
    if (!c.has(at, direct::pointSize)) break;
    FramePoint& f = s.frame.points[s.frame.count++];
    f = FramePoint{};
    f.x = c.get<int16_t>(at);
    f.y = c.get<int16_t>(at + 2);
    std::memcpy(f.channels, c.bytes + at + 4, 6);
    f.status = c.bytes[at + 10];
  }
  answer_preview(s, c, r);
}

// A raster frame has no vector points: the frame becomes empty.
void raster_frame(Scanner& s, const Command& c, Reply& r) {
  s.frame.count = 0;
  answer_preview(s, c, r);
}

// ---- settings and device queries -------------------------------------------

void store_palette(Scanner& s, const Command& c, Reply&) {
  if (!c.has(palette_command::entriesOffset, sizeof s.palette)) return;
  std::memcpy(s.palette, c.bytes + palette_command::entriesOffset, sizeof s.palette);
  s.paletteOpcode = c.opcode();
}

void set_point_rate(Scanner& s, const Command& c, Reply&) {
  if (c.has(1, 4)) s.pointRate = c.get<uint32_t>(1);
}

void set_dmx(Scanner& s, const Command& c, Reply&) {
  if (c.has(3, 1)) s.dmx[c.get<uint16_t>(1)] = c.get<uint8_t>(3);
}

// DMX input is wired to the output: a channel reads the level last sent to it.
void answer_dmx(Scanner& s, const Command& c, Reply& r) {
  auto it = s.dmx.find(c.get<uint16_t>(1));
  r.put<uint8_t>(0, it == s.dmx.end() ? 0 : it->second);
}

// World shift and size: 0x0E sets them, 0x14 answers over offsets 3..26.
void set_world(Scanner& s, const Command& c, Reply&) {
  if (!c.has(19, 8)) return;
  World& w = s.worlds[c.get<uint16_t>(1)];
  w.shiftX = c.get<int32_t>(3);
  w.shiftY = c.get<int32_t>(7);
  w.sizeX = c.get<double>(11);
  w.sizeY = c.get<double>(19);
}

void answer_world(Scanner& s, const Command& c, Reply& r) {
  auto it = s.worlds.find(c.get<uint16_t>(1));
  World w = it == s.worlds.end() ? World{} : it->second;  // read before the answer overwrites the command
  r.put<int32_t>(3, w.shiftX);
  r.put<int32_t>(7, w.shiftY);
  r.put<double>(11, w.sizeX);
  r.put<double>(19, w.sizeY);
}

// The virtual projector has no camera: it reports position 0 and angles 0.
void answer_camera(Scanner&, const Command&, Reply& r) { r.zero(0, 36); }

void answer_version(Scanner&, const Command&, Reply& r) { r.put<uint32_t>(0, kVersion); }

void take_firmware(Scanner& s, const Command& c, Reply&) {
  uint32_t n = std::min<uint32_t>(c.get<uint16_t>(1), c.length >= 3 ? c.length - 3 : 0);
  s.firmwareCrc = crc32(c.bytes + 3, n);
}

void answer_crc(Scanner& s, const Command&, Reply& r) { r.put<uint32_t>(0, s.firmwareCrc); }

// Routing: every scanner's output is routed to itself.
void answer_routing(Scanner&, const Command& c, Reply& r) { r.put<uint8_t>(0, c.get<uint8_t>(1)); }

// Neither axis is inverted nor are they swapped.
void answer_zero_byte(Scanner&, const Command&, Reply& r) { r.put<uint8_t>(0, 0); }

void answer_output_points(Scanner& s, const Command&, Reply& r) {
  r.put<uint16_t>(0, static_cast<uint16_t>(std::min<uint32_t>(s.frame.output_points(), 65535u)));
}

void start_hw_manager(Scanner& s, const Command&, Reply&) { s.hwManager = kRunningHidden; }
void show_hw_manager(Scanner& s, const Command&, Reply&) { s.hwManager = kRunningShown; }
void hide_hw_manager(Scanner& s, const Command&, Reply&) {
  if (s.hwManager != kStopped) s.hwManager = kRunningHidden;
}
void answer_hw_manager(Scanner& s, const Command&, Reply& r) { r.put<uint8_t>(0, s.hwManager); }

void answer_settings(Scanner& s, const Command&, Reply& r) {
  r.put<uint8_t>(0, s.last_byte(op(Opcode::Signal), 1));
  r.put<uint8_t>(1, s.last_byte(op(Opcode::Shutter), 1));
  r.put<uint8_t>(2, s.last_byte(op(Opcode::EnableDmxIn), 1));
  r.put<uint32_t>(3, s.pointRate);
  r.put<uint32_t>(7, static_cast<uint32_t>(s.pictures.size()));
  r.put<uint32_t>(11, s.picture_total());
  r.put<uint32_t>(15, s.frame.count);
  r.put<uint32_t>(19, kVersion);
}

// File copy: the header announces the blocks that follow without an opcode.
void begin_file(Scanner& s, const Command& c, Reply&) {
  s.file = FileCopy{};
  if (!c.has(261, 2)) return;
  std::memcpy(s.file.name, c.bytes + 1, sizeof s.file.name - 1);
  s.file.size = c.get<uint32_t>(257);
  s.file.blocksLeft = c.get<uint16_t>(261);
  s.file.complete = s.file.blocksLeft == 0;
}

void take_file_block(Scanner& s, const Command& c) {
  uint32_t room = s.file.size - std::min<uint32_t>(s.file.size, static_cast<uint32_t>(s.file.data.size()));
  uint32_t count = std::min<uint32_t>({c.get<uint16_t>(0), kFileBlockData, room});
  s.file.data.insert(s.file.data.end(), c.bytes + 2, c.bytes + 2 + count);
  s.file.complete = --s.file.blocksLeft == 0;
}

// ---- output switches and the geometry net -----------------------------------

void set_signal(Scanner& s, const Command& c, Reply&) {
  if (c.has(1, 1)) s.outputOn = c.get<uint8_t>(1) != 0;
}
void set_shutter(Scanner& s, const Command& c, Reply&) {
  if (c.has(1, 1)) s.shutterOpen = c.get<uint8_t>(1) != 0;
}
// 0x64 and 0x79 (its "once" twin: enabled from now on, like 0x64) enable ILDA output, 0x65 disables it.
void enable_ilda(Scanner& s, const Command&, Reply&) { s.ildaOutput = true; }
void disable_ilda(Scanner& s, const Command&, Reply&) { s.ildaOutput = false; }

void store_geonet(Scanner& s, const Command& c, Reply&) {
  if (!c.has(0, record::geonet.size)) return;
  std::memcpy(s.geonet.data(), c.bytes, record::geonet.size);
  s.hasGeonet = true;
}

void end_session(Scanner&, const Command&, Reply&) {}

// ---- dispatch ---------------------------------------------------------------

using Handler = void (*)(Scanner&, const Command&, Reply&);

struct Entry {
  Opcode opcode;
  uint32_t replySize;  // the answer area's size; 0 when the opcode has no answer
  Handler handle;
  uint32_t events = 0;  // Events the command causes besides kTaken
};

constexpr uint32_t kPreview = record::preview.size;
constexpr uint32_t kFullPreview = record::fullPreview.size;

constexpr Entry kEntries[] = {
    {Opcode::Picture, 0, store_picture},
    {Opcode::TrackUpload, kPreview, upload_tracks, kNewFrame},
    {Opcode::PointRate, 0, set_point_rate},
    {Opcode::PictureQuery, record::pictureReply.size, answer_picture},
    {Opcode::Palette, 0, store_palette},
    {Opcode::RefreshPreview, kPreview, answer_preview},
    {Opcode::Camera, 36, answer_camera},
    {Opcode::WorldSetShiftSize, 0, set_world},
    {Opcode::WorldGetShiftSize, 27, answer_world},
    {Opcode::VisualTrackUpload, kPreview, upload_tracks, kNewFrame},
    {Opcode::ResetPalette, 0, store_palette},
    {Opcode::Camera2, 36, answer_camera},
    {Opcode::ClearPictures, 0, clear_pictures},
    {Opcode::Version, 4, answer_version},
    {Opcode::SoftwareUpdate, 0, take_firmware},
    {Opcode::CopyFile, 0, begin_file},
    {Opcode::PictureTotal, 4, answer_picture_total},
    {Opcode::SetDmx, 0, set_dmx},
    {Opcode::GetDmx, 1, answer_dmx},
    {Opcode::RasterFrame, kPreview, raster_frame, kNewFrame},
    {Opcode::DirectPoints, kPreview, direct_points, kNewFrame},
    {Opcode::ShowHwManager, 0, show_hw_manager},
    {Opcode::HideHwManager, 0, hide_hw_manager},
    {Opcode::SoftwareCrc, 4, answer_crc},
    {Opcode::Routing, 1, answer_routing},
    {Opcode::InvertX, 1, answer_zero_byte},
    {Opcode::InvertY, 1, answer_zero_byte},
    {Opcode::SwapXY, 1, answer_zero_byte},
    {Opcode::InterpolatedPointCount, 2, answer_output_points},
    {Opcode::StartHwManager, 0, start_hw_manager},
    {Opcode::HwManagerStatus, 1, answer_hw_manager},
    {Opcode::RefreshFullPreview, kFullPreview, answer_full_preview},
    {Opcode::DeviceSettings, 23, answer_settings},
    {Opcode::RefreshVistrel, kFullPreview, answer_full_preview},
    {Opcode::Signal, 0, set_signal, kOutputChanged},
    {Opcode::Shutter, 0, set_shutter, kOutputChanged},
    {Opcode::EnableIldaOutput, 0, enable_ilda, kOutputChanged},
    {Opcode::DisableIldaOutput, 0, disable_ilda, kOutputChanged},
    {Opcode::EnableIldaOutputOnce, 0, enable_ilda, kOutputChanged},
    {Opcode::Geonet, 0, store_geonet},
    {Opcode::EndSession, 0, end_session, kEndSession},
};

const Entry* find_entry(uint8_t opcode) {
  for (const Entry& e : kEntries)
    if (op(e.opcode) == opcode) return &e;
  return nullptr;
}

}  // namespace

uint32_t Frame::output_points() const {
  uint32_t n = 0;
  for (uint32_t i = 0; i < count; ++i) n += 1u + points[i].repeat;
  return n;
}

uint8_t Scanner::last_byte(uint8_t opcode, uint32_t offset) const {
  auto it = lastCommand.find(opcode);
  return it != lastCommand.end() && offset < it->second.size() ? it->second[offset] : 0;
}

// Pictures 0..total-1 (a show) and 1..total (a catalogue) both cover every
// stored picture.
uint32_t Scanner::picture_total() const {
  return pictures.empty() ? 0 : std::min<uint32_t>(pictures.rbegin()->first + 1u, 65535u);
}

uint32_t Scanner::frame_time() const {
  return pointRate ? static_cast<uint32_t>(uint64_t{frame.output_points()} * 1000u / pointRate) : 0;
}

uint32_t Projector::command(uint32_t scanner, const uint8_t* bytes, uint32_t length, uint8_t* reply) {
  Scanner* s = this->scanner(scanner);
  if (!s || !bytes || length == 0) return 0;
  Command c{bytes, length};
  if (s->file.blocksLeft > 0) {
    if (length == kFileBlockSize) {
      take_file_block(*s, c);
      return kTaken;
    }
    s->file = FileCopy{};  // any other command ends an unfinished copy
  }
  if (c.opcode() != op(Opcode::Picture)) s->lastCommand[c.opcode()].assign(bytes, bytes + length);
  const Entry* e = find_entry(c.opcode());
  if (!e) return kTaken;
  Reply r(reply, e->replySize);
  e->handle(*s, c, r);
  if (e->events & kNewFrame) ++s->frameSerial;
  return kTaken | e->events;
}

void Projector::render(uint32_t number) {
  if (Scanner* s = scanner(number)) render_tracks(*s);
}

// Each record is rebuilt in place: a Scanner is too large for a temporary.
void Projector::reset() {
  for (Scanner& s : scanners_) {
    s.~Scanner();
    new (&s) Scanner();
  }
}

}  // namespace kalvor::projector
