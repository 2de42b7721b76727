// Picture files seen as an ordered list of pictures, read and written through
// kalvor's readers and writers with the virtual scanner's picture memory in
// between.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace cli {

// A failure that ends the command with a message and an exit status.
struct Failure : std::runtime_error {
  int status;
  Failure(const std::string& message, int exit_status = 1) : std::runtime_error(message), status(exit_status) {}
};

struct Rgb {
  uint8_t r, g, b;
  bool operator==(const Rgb&) const = default;
};

// A point as the scanner stores it; rgb is the colour it is drawn in, also
// for points whose file gave a colour index.
struct Point {
  int16_t x, y, z;
  uint8_t status, repeat;
  Rgb rgb;
  bool blanked() const { return (status & 0x40) != 0; }
  uint8_t colour_index() const { return status & 0x3F; }
};

struct Picture {
  std::vector<Point> points;
  std::string name;      // the frame name an ILDA file gives it, or empty
  bool indexed = false;  // its colours came from a palette
};

// The pictures of a file in file order (picture 1 is the first), what the
// file says about palettes, and what reading it had to change.
struct Show {
  const char* format = "";
  std::vector<Picture> pictures;
  std::string palette;                // a line about the file's palettes, when it can have one
  std::vector<std::string> warnings;  // one per kind of change, with counts
};

// Readable: .ild .cat .lds .pic .las .flx, and "-" (standard input, ILDA);
// writable: .ild .cat .lds .pic, and "-" (standard output, ILDA). Letter case
// does not matter. Throws Failure for a file that is missing, a folder,
// unreadable, of an unknown kind, of a kind its extension does not name, or
// that holds no picture.
Show read_show(const std::string& path);

// Writes pictures first..last (counted from 1, inclusive) of the show.
void write_show(const Show& show, const std::string& path, size_t first, size_t last);

// Stores a picture in the scanner's memory under number, its colours as
// drawn (indexed colours resolved through the show's palette).
void send_picture(uint32_t scanner, const Show& show, const Picture& picture, uint16_t number);

// Text listing the extensions that can be read, or written.
std::string readable_extensions();
std::string writable_extensions();

// A count with thousands separated by commas: 1,191.
std::string with_commas(uint64_t n);

}  // namespace cli
