// Reading and writing picture files through kalvor. Every reader sends the
// file's pictures into the virtual scanner's picture memory; the tool then
// reads them back with the picture query. Every writer reads pictures from
// that memory, so writing means uploading the chosen pictures under the
// numbers the writer saves, then calling it.
#include "pictures.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "kalvor/kalvor.h"

namespace cli {
namespace {

constexpr uint32_t kScanner = 1;
constexpr size_t kMaxPoints = 8192;

// The ILDA standard palette: what indexed colours mean when a file brings no
// palette of its own.
constexpr Rgb kIldaPalette[64] = {
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

// Colour buffer 0 holds the palette. Its sixth channel is set to this marker
// beforehand: an ILDA palette section writes the channels (r, g, b, 0, 0, 0),
// so the entries a file sets are those whose marker is gone.
constexpr uint8_t kUntouched = 1;

void prime_palette() {
  for (uint8_t i = 0; i < 64; ++i) {
    const Rgb& c = kIldaPalette[i];
    displaysetcolorbufferrgb(kScanner, 0, i, c.r, c.g, c.b);
    displaysetcolorbuffer(kScanner, 0, i, c.r, c.g, c.b, 0, 0, kUntouched);
  }
}

void read_palette(Show& show) {
  for (uint8_t i = 0; i < 64; ++i) {
    uint8_t c[6] = {};
    displaygetcolorbuffer(kScanner, 0, i, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
    if (c[5] != kUntouched) ++show.paletteEntriesFromFile;
    Rgb& p = show.palette[i];
    displaygetcolorbufferrgb(kScanner, 0, i, &p.r, &p.g, &p.b);
  }
}

// ---- the formats -------------------------------------------------------------

void read_ild(const char* path) {
  clearpicmem(kScanner);
  displayimportilda(kScanner, path, 1);
}
void read_cat(const char* path) { loadCAT(kScanner, path); }
void read_lds(const char* path) { loadLDS(kScanner, path); }
void read_pic(const char* path) {
  clearpicmem(kScanner);
  displayloadpic(kScanner, path, 1);
}
void read_las(const char* path) {
  clearpicmem(kScanner);
  displayimportlas(kScanner, path, 1);
}
void read_flx(const char* path) {
  clearpicmem(kScanner);
  displayimportflx(kScanner, path, 1);
}

void write_ild(const char* path, uint16_t count) { displayexportilda(kScanner, path, 1, count); }
void write_cat(const char* path, uint16_t) { saveCAT(kScanner, path); }
void write_lds(const char* path, uint16_t) { saveLDS(kScanner, path); }
void write_pic(const char* path, uint16_t) { displaysavepic(kScanner, path, 1); }

struct Format {
  const char* extension;
  const char* name;
  uint16_t firstNumber;  // the number of the file's first picture in the scanner
  void (*read)(const char* path);
  void (*write)(const char* path, uint16_t count);  // null: not writable
  size_t maxPictures;
};

// ILDA files and catalogues number their pictures from 1, shows from 0; the
// tool loads LAS, FLX and picture files from 1 too.
constexpr Format kFormats[] = {
    {".ild", "ILDA file", 1, read_ild, write_ild, 65535},
    {".cat", "catalogue", 1, read_cat, write_cat, 65534},
    {".lds", "show", 0, read_lds, write_lds, 65535},
    {".pic", "picture file", 1, read_pic, write_pic, 1},
    {".las", "LAS file", 1, read_las, nullptr, 0},
    {".flx", "FLX file", 1, read_flx, nullptr, 0},
};

std::string extension_of(const std::string& path) {
  std::string ext = std::filesystem::path(path).extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  return ext;
}

const Format& format_of(const std::string& path, bool writing) {
  std::string ext = extension_of(path);
  for (const Format& f : kFormats)
    if (ext == f.extension) {
      if (writing && !f.write)
        throw Failure("cannot write " + std::string(f.name) + "s ('" + path + "'); writable: " + writable_extensions());
      return f;
    }
  throw Failure("'" + path + "': unknown extension '" + ext + "'; " + (writing ? "writable: " : "readable: ") +
                (writing ? writable_extensions() : readable_extensions()));
}

bool is_indexed(const std::vector<Point>& points) {
  bool white = std::all_of(points.begin(), points.end(), [](const Point& p) { return p.rgb == Rgb{255, 255, 255}; });
  return white && std::any_of(points.begin(), points.end(), [](const Point& p) { return p.colour_index() != 0; });
}

Picture read_back(uint16_t number) {
  Picture picture;
  picture.points.resize(displaygetpic(kScanner, number));
  for (size_t i = 0; i < picture.points.size(); ++i) {
    Point& p = picture.points[i];
    uint16_t x, y, z;
    DisplayGetPicPoint(kScanner, static_cast<uint16_t>(i), &x, &y, &z, &p.status, &p.repeat, &p.rgb.r, &p.rgb.g,
                       &p.rgb.b);
    p.x = static_cast<int16_t>(x);
    p.y = static_cast<int16_t>(y);
    p.z = static_cast<int16_t>(z);
  }
  picture.indexed = is_indexed(picture.points);
  return picture;
}

// Sends a picture to the scanner; with resolve, indexed colours are written
// out as the palette colours they stand for.
void upload(uint32_t scanner, const Show& show, const Picture& picture, uint16_t number, bool resolve) {
  size_t count = std::min(picture.points.size(), kMaxPoints);
  for (size_t i = 0; i < count; ++i) {
    const Point& p = picture.points[i];
    Rgb c = resolve ? show.colour(picture, p) : p.rgb;
    DisplaySetPicPoint(scanner, static_cast<uint16_t>(i), static_cast<uint16_t>(p.x), static_cast<uint16_t>(p.y),
                       static_cast<uint16_t>(p.z), p.status, p.repeat, c.r, c.g, c.b);
  }
  displaysetpic(scanner, number, static_cast<uint16_t>(count));
}

std::string list_extensions(bool writable) {
  std::string out;
  for (const Format& f : kFormats)
    if (!writable || f.write) out += (out.empty() ? "" : " ") + std::string(f.extension);
  return out;
}

}  // namespace

Rgb Show::colour(const Picture& picture, const Point& point) const {
  return picture.indexed ? palette[point.colour_index()] : point.rgb;
}

void send_picture(uint32_t scanner, const Show& show, const Picture& picture, uint16_t number) {
  upload(scanner, show, picture, number, true);
}

std::string readable_extensions() { return list_extensions(false); }
std::string writable_extensions() { return list_extensions(true); }

Show read_show(const std::string& path) {
  const Format& format = format_of(path, false);
  if (!std::filesystem::is_regular_file(path) || !std::ifstream(path, std::ios::binary))
    throw Failure("cannot open '" + path + "': no such file");
  prime_palette();
  format.read(path.c_str());
  Show show;
  show.format = format.name;
  // The scanner's picture total covers every stored picture; a trailing empty
  // picture (such as the one an ILDA file's closing header makes) is no picture.
  uint32_t total = GetMaxPic(kScanner);
  for (uint32_t n = format.firstNumber; n < total; ++n) show.pictures.push_back(read_back(static_cast<uint16_t>(n)));
  if (show.pictures.empty()) throw Failure("'" + path + "' holds no picture");
  read_palette(show);
  return show;
}

void write_show(const Show& show, const std::string& path, size_t first, size_t last) {
  const Format& format = format_of(path, true);
  size_t count = last - first + 1;
  if (count > format.maxPictures)
    throw Failure(format.maxPictures == 1 ? "a picture file holds one picture: choose it with --first N --last N"
                                          : "too many pictures for a " + std::string(format.name),
                  2);
  bool ilda = format.write == write_ild;  // ILDA output holds colours, not palette indices
  clearpicmem(kScanner);
  for (size_t i = 0; i < count; ++i)
    upload(kScanner, show, show.pictures[first - 1 + i], static_cast<uint16_t>(format.firstNumber + i), ilda);
  std::error_code ignored;
  std::filesystem::remove(path, ignored);  // so that a file left over is not taken for the result
  format.write(path.c_str(), static_cast<uint16_t>(count));
  if (!std::filesystem::exists(path)) throw Failure("cannot write '" + path + "'");
}

}  // namespace cli
