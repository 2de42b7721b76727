// The projector engine: what a scanner does with the commands it receives.
// For each scanner 1 to 20 it keeps the picture memory, the palette, the
// geometry net, the point rate, the output switches and the tracks of the last
// track upload, and it renders the frame of points the scanner draws. Every
// scanner-side transport (the virtual scanner, IDN output, the live preview)
// is a thin front end over one Projector; the engine knows none of them.
//
// The engine takes no lock: a front end serialises its calls (one mutex
// around command() and every read of a scanner's state).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "state/layout.h"

namespace kalvor::projector {

inline constexpr uint32_t kScanners = 20;
inline constexpr uint32_t kMaxFramePoints = preview::maxPoints;  // 16,000
inline constexpr uint32_t kDefaultPointRate = 30000;             // until a 0x02 command sets one
inline constexpr uint32_t kMaxUpload = 3 + 32 * track::size;     // the largest track upload

// A point of the rendered frame, in coordinate units (not held to 16 bits).
struct FramePoint {
  int32_t x, y, z;
  uint8_t channels[6];  // colour channels c0..c5
  uint8_t status;       // the picture point's status byte; bit 6 blanks the beam
  uint8_t repeat;       // the point is output 1 + repeat times
  bool blanked() const { return (status & 0x40) != 0; }
};
// The renderer writes channels, status and repeat as one little-endian word.
static_assert(offsetof(FramePoint, status) == offsetof(FramePoint, channels) + 6 &&
              offsetof(FramePoint, repeat) == offsetof(FramePoint, channels) + 7);

// The frame a scanner draws, at most 16,000 points.
struct Frame {
  uint32_t count = 0;
  std::array<FramePoint, kMaxFramePoints> points;
  // Points output for the frame, each point 1 + repeat times.
  uint32_t output_points() const;
};

// What a command did, for a front end that streams frames.
enum Event : uint32_t {
  kTaken = 1u << 0,       // the command was for a scanner 1..20 and not empty
  kNewFrame = 1u << 1,    // a new frame to show: track upload, direct points, raster frame
  kOutputChanged = 1u << 2,  // the output switch, the shutter or the ILDA output changed
  kEndSession = 1u << 3,  // the end-session byte 0xFF
};

struct World {
  int32_t shiftX = 0, shiftY = 0;
  double sizeX = 1.0, sizeY = 1.0;
};

// A file copied to the scanner with 0x2A and the blocks that follow it.
struct FileCopy {
  char name[256] = {};
  uint32_t size = 0;
  uint32_t blocksLeft = 0;
  bool complete = false;
  std::vector<uint8_t> data;
};

enum HwManager : uint8_t { kStopped = 0, kRunningHidden = 1, kRunningShown = 2 };

// The box that holds every point of a picture, worked out when it arrives, so
// that a frame can tell at once that a track's points all stay in its clip box.
struct Bounds {
  int16_t lo[3], hi[3];
};

// Everything one scanner keeps.
struct Scanner {
  // Picture memory: number -> the points as 11-byte picture records, never empty.
  std::map<uint16_t, std::vector<uint8_t>> pictures;
  std::map<uint16_t, Bounds> bounds;  // of each stored picture
  // The last track upload (0x01, 0x16), as received: at most kMaxUpload bytes.
  std::array<uint8_t, kMaxUpload> upload{};
  uint32_t uploadLength = 0;
  // The palette last received (0x05, 0x1B): 64 six-byte channel entries.
  uint8_t palette[6 * colour_buffer::entries] = {};
  uint8_t paletteOpcode = 0;
  // The geometry net last received (0x29), as the command's bytes; unset until one comes.
  std::array<uint8_t, record::geonet.size> geonet{};
  bool hasGeonet = false;
  uint32_t pointRate = kDefaultPointRate;
  // Output: lit only while the switch is on, the shutter open and ILDA output enabled.
  bool outputOn = true;     // 0x24: signal 0 switches off, any other on
  bool shutterOpen = true;  // 0x28: 0 closes, any other value opens
  bool ildaOutput = true;   // 0x64 and 0x79 enable, 0x65 disables
  bool lit() const { return outputOn && shutterOpen && ildaOutput; }

  Frame frame;  // the frame being shown
  uint32_t frameSerial = 0;  // counts new frames

  std::map<uint8_t, std::vector<uint8_t>> lastCommand;  // opcode -> last command (not pictures)
  std::map<uint16_t, uint8_t> dmx;                      // wire channel -> level
  std::map<uint16_t, World> worlds;
  uint32_t firmwareCrc = 0;
  uint8_t hwManager = kStopped;
  FileCopy file;

  uint8_t last_byte(uint8_t opcode, uint32_t offset) const;
  // 1 + the highest picture number holding points.
  uint32_t picture_total() const;
  // Milliseconds the frame takes at the point rate.
  uint32_t frame_time() const;
};

class Projector {
 public:
  // Takes one command as NetScanCommand receives it and writes its answer into
  // reply (never more than the opcode's answer area holds). Returns Events.
  uint32_t command(uint32_t scanner, const uint8_t* bytes, uint32_t length, uint8_t* reply);
  // The scanner's state; null outside 1..20.
  Scanner* scanner(uint32_t number) { return number >= 1 && number <= kScanners ? &scanners_[number] : nullptr; }
  // Renders the scanner's frame from its last track upload and current state.
  void render(uint32_t number);
  // Forgets everything, as a projector switched off and on again.
  void reset();

 private:
  std::array<Scanner, kScanners + 1> scanners_;  // index 0 is never used
};

// Renders the tracks of a track upload into the scanner's frame.
void render_tracks(Scanner& s);

}  // namespace kalvor::projector
