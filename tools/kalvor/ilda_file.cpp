// The tool's own walk through ILDA files: names and colours in, the ILDA
// standard's last-point bit and names out.
#include "ilda_file.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "output_file.h"

namespace cli {

const Rgb kIldaPalette[64] = {
    {255, 0, 0},     {255, 16, 0},    {255, 32, 0},    {255, 48, 0},    {255, 64, 0},    {255, 80, 0},
    {255, 96, 0},    {255, 112, 0},   {255, 128, 0},   {255, 144, 0},   {255, 160, 0},   {255, 176, 0},
    {255, 192, 0},   {255, 208, 0},   {255, 224, 0},   {255, 240, 0},   {255, 255, 0},   {224, 255, 0},
    {192, 255, 0},   {160, 255, 0},   {128, 255, 0},   {96, 255, 0},    {64, 255, 0},    {32, 255, 0},
    {0, 255, 0},     {0, 255, 36},    {0, 255, 73},    {0, 255, 109},   {0, 255, 146},   {0, 255, 182},
    {0, 255, 219},   {0, 255, 255},   {0, 227, 255},   {0, 198, 255},   {0, 170, 255},   {0, 142, 255},
    {0, 113, 255},   {0, 85, 255},    {0, 56, 255},    {0, 28, 255},    {0, 0, 255},     {32, 0, 255},
    {64, 0, 255},    {96, 0, 255},    {128, 0, 255},   {160, 0, 255},   {192, 0, 255},   {224, 0, 255},
    {255, 0, 255},   {255, 32, 255},  {255, 64, 255},  {255, 96, 255},  {255, 128, 255}, {255, 160, 255},
    {255, 192, 255}, {255, 224, 255}, {255, 255, 255}, {255, 224, 224}, {255, 192, 192}, {255, 160, 160},
    {255, 128, 128}, {255, 96, 96},   {255, 64, 64},   {255, 32, 32}};

namespace {

constexpr size_t kHeader = 32;
constexpr size_t kMaxKept = 8191;  // points the library keeps of an ILDA frame

uint32_t be16(const uint8_t* p) { return uint32_t{p[0]} << 8 | p[1]; }
uint32_t be32(const uint8_t* p) { return be16(p) << 16 | be16(p + 2); }

std::string frame_name(const uint8_t* header) {
  std::string name(reinterpret_cast<const char*>(header + 8), 8);
  name = name.substr(0, name.find('\0'));
  name.erase(name.find_last_not_of(' ') + 1);
  for (char& c : name)  // a name is shown on a terminal: no control bytes
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
  return name;
}

std::vector<uint8_t> read_all(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

bool has_ilda_signature(const std::string& path) {
  char head[4] = {};
  std::ifstream in(path, std::ios::binary);
  return in.read(head, 4) && std::memcmp(head, "ILDA", 4) == 0;
}

IldaScan scan_ilda(const std::string& path) {
  std::vector<uint8_t> data = read_all(path);
  IldaScan scan;
  std::vector<Rgb> palette(kIldaPalette, kIldaPalette + 64);
  std::vector<Rgb> nextColours;  // from a format-3 section, for the next indexed frame
  size_t at = 0, size = data.size();
  while (at + 8 <= size) {
    const uint8_t* h = &data[at];
    uint8_t code = h[7];
    if (code == 3 || code > 5) {  // a length (format 3: after four more bytes), then the data
      size_t extra = code == 3 ? 8 : 4;
      if (at + 8 + extra > size) break;
      uint64_t length = code == 3 ? 3ull * be32(h + 12) : be32(h + 8);
      if (code == 3) {
        ++scan.trueColourTables;
        nextColours.clear();
        for (uint64_t i = 0; i < length / 3 && at + 16 + 3 * i + 3 <= size; ++i) {
          const uint8_t* c = h + 16 + 3 * i;
          nextColours.push_back({c[0], c[1], c[2]});
        }
      }
      if (length > size - at - 8 - extra) break;  // the data runs past the end of the file
      at += 8 + extra + length;
      continue;
    }
    if (at + kHeader > size) break;
    uint32_t n = be16(h + 24);
    const uint8_t* records = h + kHeader;
    size_t available = size - at - kHeader;
    if (code == 2) {
      scan.paletteSizes.push_back(n);
      if (palette.size() < n) palette.resize(n, Rgb{255, 255, 255});
      for (size_t i = 0; i < n && 3 * i + 3 <= available; ++i)
        palette[i] = {records[3 * i], records[3 * i + 1], records[3 * i + 2]};
      at += kHeader + 3 * n;
      continue;
    }
    static constexpr size_t kSize[] = {8, 6, 0, 0, 10, 8};
    size_t record = kSize[code];
    IldaFrame frame;
    frame.name = frame_name(h);
    frame.indexed = code <= 1;
    if (frame.indexed) {
      size_t colourAt = record - 1;  // the colour index is each record's last byte
      size_t count = std::min<size_t>({n, kMaxKept, available / record});
      for (size_t i = 0; i < count; ++i) {
        uint8_t index = records[record * i + colourAt];
        if (i < nextColours.size()) {
          frame.colours.push_back(nextColours[i]);
        } else if (index < palette.size()) {
          frame.colours.push_back(palette[index]);
        } else {
          frame.colours.push_back(palette[index & 63]);
          ++scan.beyondPalette;
        }
      }
      nextColours.clear();
    }
    scan.frames.push_back(std::move(frame));
    at += kHeader + uint64_t{record} * n;
  }
  return scan;
}

void finish_ilda(const std::string& from, OutputFile& out, const std::vector<std::string>& names) {
  std::ifstream in(from, std::ios::binary);
  std::vector<uint8_t> section;
  for (size_t frame = 0;; ++frame) {
    section.resize(kHeader);
    if (!in.read(reinterpret_cast<char*>(section.data()), kHeader)) break;
    uint32_t n = be16(&section[24]);
    section.resize(kHeader + 8 * size_t{n});
    in.read(reinterpret_cast<char*>(section.data() + kHeader), static_cast<std::streamsize>(8 * size_t{n}));
    if (n) section[kHeader + 8 * (n - 1) + 4] |= 0x80;  // the last point of the frame
    if (!names.empty()) {
      const std::string& name = names[std::min(frame, names.size() - 1)];
      std::memset(&section[8], ' ', 8);
      std::memcpy(&section[8], name.data(), std::min<size_t>(name.size(), 8));
    }
    out.write(section.data(), section.size());
  }
}

}  // namespace cli
