// Reading and writing picture files through kalvor. Every reader sends the
// file's pictures into the virtual scanner's picture memory; the tool then
// reads them back with the picture query. Every writer reads pictures from
// that memory, so writing means uploading the chosen pictures under the
// numbers the writer saves, then calling it.
#include "pictures.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "ilda_file.h"
#include "kalvor/kalvor.h"
#include "output_file.h"
#include "pictures/read_report.h"
#include "transport.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using kalvor::pictures::ReadReport;

constexpr uint32_t kScanner = 1;
constexpr size_t kMaxPoints = 8192;

// Colour buffer 0 gives the colours of catalogue records and older picture
// files that hold colour indices; the standard palette is what they mean.
void prime_palette() {
  for (uint8_t i = 0; i < 64; ++i) {
    const Rgb& c = kIldaPalette[i];
    displaysetcolorbufferrgb(kScanner, 0, i, c.r, c.g, c.b);
    displaysetcolorbuffer(kScanner, 0, i, c.r, c.g, c.b, 0, 0, 0);
  }
}

// ---- the formats -------------------------------------------------------------

void read_ild(const char* path, ReadReport* r) {
  clearpicmem(kScanner);
  kalvor::pictures::import_ilda(kScanner, path, 1, r);
}
void read_cat(const char* path, ReadReport* r) { kalvor::pictures::load_catalogue_file(kScanner, path, r); }
void read_lds(const char* path, ReadReport* r) { kalvor::pictures::load_show_file(kScanner, path, r); }
void read_pic(const char* path, ReadReport* r) {
  clearpicmem(kScanner);
  kalvor::pictures::load_picture_file(kScanner, path, 1, r);
}
void read_las(const char* path, ReadReport* r) {
  clearpicmem(kScanner);
  kalvor::pictures::import_las(kScanner, path, 1, r);
}
void read_flx(const char* path, ReadReport* r) {
  clearpicmem(kScanner);
  kalvor::pictures::import_flx(kScanner, path, 1, r);
}

void write_ild(const char* path, uint16_t count) { displayexportilda(kScanner, path, 1, count); }
void write_cat(const char* path, uint16_t) { saveCAT(kScanner, path); }
void write_lds(const char* path, uint16_t) { saveLDS(kScanner, path); }
void write_pic(const char* path, uint16_t) { displaysavepic(kScanner, path, 1); }

struct Format {
  const char* extension;
  const char* name;
  uint16_t firstNumber;  // the number of the file's first picture in the scanner
  void (*read)(const char* path, ReadReport* report);
  void (*write)(const char* path, uint16_t count);  // null: not writable
  size_t maxPictures;
  bool indexed;  // points carry colour indices to resolve through the standard palette
};

// ILDA files and catalogues number their pictures from 1, shows from 0; the
// tool loads LAS, FLX and picture files from 1 too.
constexpr Format kFormats[] = {
    {".ild", "ILDA file", 1, read_ild, write_ild, 65535, false},
    {".cat", "catalogue", 1, read_cat, write_cat, 65534, false},
    {".lds", "show", 0, read_lds, write_lds, 65535, false},
    {".pic", "picture file", 1, read_pic, write_pic, 1, false},
    {".las", "LAS file", 1, read_las, nullptr, 0, true},
    {".flx", "FLX file", 1, read_flx, nullptr, 0, false},
};
const Format& kIlda = kFormats[0];

std::string extension_of(const std::string& path) {
  std::string ext = fs::path(path).extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  return ext;
}

const Format& format_of(const std::string& path, bool writing) {
  if (path == "-") return kIlda;
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
  return picture;
}

// Sends a picture to the scanner in the colours it is drawn in.
void upload(uint32_t scanner, const Picture& picture, uint16_t number) {
  size_t count = std::min(picture.points.size(), kMaxPoints);
  for (size_t i = 0; i < count; ++i) {
    const Point& p = picture.points[i];
    DisplaySetPicPoint(scanner, static_cast<uint16_t>(i), static_cast<uint16_t>(p.x), static_cast<uint16_t>(p.y),
                       static_cast<uint16_t>(p.z), p.status, p.repeat, p.rgb.r, p.rgb.g, p.rgb.b);
  }
  displaysetpic(scanner, number, static_cast<uint16_t>(count));
}

std::string list_extensions(bool writable) {
  std::string out;
  for (const Format& f : kFormats)
    if (!writable || f.write) {
      // Two appends, not "sep" + std::string(...): GCC 12 at -O3 reports a
      // false overlap (-Wrestrict) inside the library's string insert.
      if (!out.empty()) out += ' ';
      out += f.extension;
    }
  return out;
}

std::string plural(uint64_t n, const std::string& one, const std::string& many) {
  return with_commas(n) + " " + (n == 1 ? one : many);
}

// One warning per kind of change the reader made, with counts; picture
// numbers as the tool counts them (from 1 in file order).
void add_warnings(Show& show, const std::string& file, const ReadReport& r, const Format& f, size_t applied) {
  bool ilda = &f == &kIlda;
  std::string what = ilda ? "frame" : "picture", in = "'" + file + "'";
  auto picture = [&](uint32_t n) { return what + " " + std::to_string(n - f.firstNumber + 1); };
  uint64_t keeps = ilda ? 8191 : 8192;
  if (r.cut)
    show.warnings.push_back(in + " ends inside " + picture(r.cut_picture) + ": " + with_commas(r.cut_missing) +
                            " of " + with_commas(r.cut_announced) + " points missing, padded as blanked points");
  if (r.header_cut) show.warnings.push_back(in + " ends inside a header; what follows it is lost");
  if (r.clamped_pictures == 1)
    show.warnings.push_back(in + ": " + picture(r.clamped_first) + " has " + with_commas(keeps + r.dropped_points) +
                            " points, more than a picture keeps (" + with_commas(keeps) + "): " +
                            plural(r.dropped_points, "point", "points") + " dropped");
  if (r.clamped_pictures > 1)
    show.warnings.push_back(in + ": " + plural(r.clamped_pictures, what, what + "s") + " (the first is " +
                            picture(r.clamped_first) + ") have more points than a picture keeps (" +
                            with_commas(keeps) + "): " + plural(r.dropped_points, "point", "points") + " dropped");
  if (r.skipped > applied)
    show.warnings.push_back(in + ": " +
                            (ilda ? plural(r.skipped - applied, "section", "sections") + " of an unknown format"
                                  : plural(r.skipped, "record", "records") + " of an unknown type or with too many points") +
                            " skipped");
}

// Gives the pictures of an ILDA file their names and the colours of their
// indexed frames, which the tool reads from the file itself.
void apply_ilda(Show& show, const std::string& file, const IldaScan& scan) {
  for (size_t i = 0; i < show.pictures.size() && i < scan.frames.size(); ++i) {
    Picture& picture = show.pictures[i];
    const IldaFrame& frame = scan.frames[i];
    picture.name = frame.name;
    picture.indexed = frame.indexed;
    for (size_t k = 0; k < picture.points.size() && k < frame.colours.size(); ++k)
      picture.points[k].rgb = frame.colours[k];
  }
  if (scan.paletteSizes.empty()) {
    show.palette = "palette: none in the file (indexed colours use the ILDA standard palette)";
  } else {
    std::string sizes;
    for (size_t n : scan.paletteSizes) sizes += (sizes.empty() ? "" : ", ") + with_commas(n);
    show.palette = scan.paletteSizes.size() == 1
                       ? "palette: " + sizes + " entries from the file"
                       : "palettes: " + std::to_string(scan.paletteSizes.size()) + " in the file (" + sizes +
                             " entries), each for the frames after it";
  }
  if (scan.trueColourTables)
    show.palette += "; " + plural(scan.trueColourTables, "true-colour table", "true-colour tables") +
                    " (format 3) colouring the frame after it";
  if (scan.beyondPalette)
    show.warnings.push_back("'" + file + "': " + plural(scan.beyondPalette, "point uses", "points use") +
                            " a colour index the palette does not have; drawn with the colour of index mod 64");
}

// Copies standard input into a scratch file, which the readers can open.
struct StandardInput {
  std::string path = scratch_path("-", ".ild");
  StandardInput() {
    binary(stdin);
    std::ofstream out(path, std::ios::binary);
    if (std::cin.peek() != std::char_traits<char>::eof()) out << std::cin.rdbuf();
    if (!out.flush()) throw Failure("cannot keep standard input in '" + path + "': " + reason(errno));
  }
  ~StandardInput() { std::remove(path.c_str()); }
};

void check_readable(const std::string& path, const std::string& shown, const Format& format) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored))
    throw Failure("cannot read '" + shown + "': it is a folder, not a picture file");
  if (!fs::exists(path, ignored)) throw Failure("cannot read '" + shown + "': no such file");
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Failure("cannot read '" + shown + "': " + reason(errno));
  if (fs::file_size(path, ignored) == 0) throw Failure("'" + shown + "' is empty: it holds no picture");
  // ILDA files are the one format with a signature.
  bool ilda = has_ilda_signature(path);
  if (ilda && &format != &kIlda)
    throw Failure("'" + shown + "' holds ILDA data (it starts with \"ILDA\"), but its extension says " +
                  format.name + "; name it .ild to read it");
  if (!ilda && &format == &kIlda)
    throw Failure("'" + shown + "' is not an ILDA file: it does not start with \"ILDA\"");
}

}  // namespace

std::string with_commas(uint64_t n) {
  std::string digits = std::to_string(n), out;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i && (digits.size() - i) % 3 == 0) out += ',';
    out += digits[i];
  }
  return out;
}

void send_picture(uint32_t scanner, const Show&, const Picture& picture, uint16_t number) {
  upload(scanner, picture, number);
}

std::string readable_extensions() { return list_extensions(false); }
std::string writable_extensions() { return list_extensions(true); }

Show read_show(const std::string& file) {
  const Format& format = format_of(file, false);
  std::unique_ptr<StandardInput> input;
  if (file == "-") input = std::make_unique<StandardInput>();
  std::string path = input ? input->path : file;
  std::string shown = input ? "standard input" : file;
  check_readable(path, shown, format);
  prime_palette();
  ReadReport report;
  format.read(path.c_str(), &report);
  Show show;
  show.format = format.name;
  // The scanner's picture total covers every stored picture; a trailing empty
  // picture (such as the one an ILDA file's closing header makes) is no picture.
  uint32_t total = GetMaxPic(kScanner);
  for (uint32_t n = format.firstNumber; n < total; ++n) show.pictures.push_back(read_back(static_cast<uint16_t>(n)));
  if (show.pictures.empty()) throw Failure("'" + shown + "' holds no picture");
  size_t applied = 0;
  if (&format == &kIlda) {
    IldaScan scan = scan_ilda(path);
    apply_ilda(show, shown, scan);
    applied = scan.trueColourTables;
  }
  if (format.indexed) {
    show.palette = "palette: none in the file (colour indices use the ILDA standard palette)";
    for (Picture& picture : show.pictures) {
      picture.indexed = true;
      for (Point& p : picture.points) p.rgb = kIldaPalette[p.colour_index()];
    }
  }
  add_warnings(show, shown, report, format, applied);
  return show;
}

namespace {
// Removes a scratch file when the write is over, whatever its outcome.
struct Scratch {
  std::string path;
  ~Scratch() { std::remove(path.c_str()); }
};

// The frame names of ILDA output: the source's names where it has them,
// otherwise the output's name and the frame number.
std::vector<std::string> frame_names(const Show& show, const std::string& path, size_t first, size_t count) {
  std::string stem = path == "-" ? "frame" : fs::path(path).stem().string();
  size_t digits = std::max<size_t>(3, std::to_string(count).size());
  stem = stem.substr(0, 8 - std::min<size_t>(digits, 8));
  std::vector<std::string> names;
  for (size_t i = 0; i < count; ++i) {
    const std::string& own = show.pictures[first - 1 + i].name;
    std::string number = std::to_string(i + 1);
    names.push_back(!own.empty() ? own : stem + std::string(digits - std::min(digits, number.size()), '0') + number);
  }
  return names;
}
}  // namespace

void write_show(const Show& show, const std::string& path, size_t first, size_t last) {
  const Format& format = format_of(path, true);
  size_t count = last - first + 1;
  if (count > format.maxPictures)
    throw Failure(format.maxPictures == 1 ? "a picture file holds one picture: choose it with --first N --last N"
                                          : "too many pictures for a " + std::string(format.name),
                  2);
  OutputFile out(path);
  clearpicmem(kScanner);
  for (size_t i = 0; i < count; ++i)
    upload(kScanner, show.pictures[first - 1 + i], static_cast<uint16_t>(format.firstNumber + i));
  // The library's writer makes a file of its own, which becomes the output.
  Scratch scratch{scratch_path(path, format.extension)};
  errno = 0;
  format.write(scratch.path.c_str(), static_cast<uint16_t>(count));
  int error = errno;
  std::error_code ignored;
  if (!fs::is_regular_file(scratch.path, ignored)) throw Failure("cannot write '" + path + "': " + reason(error));
  if (&format == &kIlda)
    finish_ilda(scratch.path, out, frame_names(show, path, first, count));
  else
    out.copy_from(scratch.path);
  out.commit();
}

}  // namespace cli
