// Picture files seen as an ordered list of pictures, read and written through
// kalvor's exports with the virtual scanner's picture memory in between.
#pragma once

#include <array>
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

// A point as the scanner stores it.
struct Point {
  int16_t x, y, z;
  uint8_t status, repeat;
  Rgb rgb;
  bool blanked() const { return (status & 0x40) != 0; }
  uint8_t colour_index() const { return status & 0x3F; }
};

struct Picture {
  std::vector<Point> points;
  // True when the colours come from the palette: every point is white, as
  // readers of indexed sources store them, and some colour index is not 0.
  bool indexed = false;
};

// The pictures of a file in file order (picture 1 is the first), and the
// palette that indexed colours refer to.
struct Show {
  const char* format = "";
  std::vector<Picture> pictures;
  std::array<Rgb, 64> palette{};
  int paletteEntriesFromFile = 0;
  // The colour a point is drawn in: its palette entry in an indexed picture,
  // otherwise its own colour.
  Rgb colour(const Picture& picture, const Point& point) const;
};

// Readable: .ild .cat .lds .pic .las .flx; writable: .ild .cat .lds .pic.
// Letter case does not matter. Throws Failure for a missing file, an unknown
// extension or a file that holds no picture.
Show read_show(const std::string& path);

// Writes pictures first..last (counted from 1, inclusive) of the show.
void write_show(const Show& show, const std::string& path, size_t first, size_t last);

// Stores a picture in the scanner's memory under number, its colours as
// drawn (indexed colours resolved through the show's palette).
void send_picture(uint32_t scanner, const Show& show, const Picture& picture, uint16_t number);

// Text listing the extensions that can be read, or written.
std::string readable_extensions();
std::string writable_extensions();

}  // namespace cli
