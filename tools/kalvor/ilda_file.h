// What the tool reads from an ILDA file by itself, beside the library's
// reader: frame names, and the colours of indexed frames. The library's
// points keep a colour index of 6 bits and its colour buffer 64 entries, so
// the tool resolves each indexed point through the palette in force where the
// frame stands, with the file's full 8-bit index, and keeps the result as
// true colour.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pictures.h"

namespace cli {

struct IldaFrame {
  std::string name;        // the header's frame name, trailing spaces removed
  bool indexed = false;    // formats 0 and 1
  std::vector<Rgb> colours;  // indexed frames: the colour of each record read
};

struct IldaScan {
  std::vector<IldaFrame> frames;          // every frame section, in file order
  std::vector<size_t> paletteSizes;       // entries of each palette section
  size_t trueColourTables = 0;            // format-3 sections (colours of the next frame)
  uint64_t beyondPalette = 0;             // indexed points whose index the palette lacks
};

// Reads the sections of the ILDA file at path the way the library's reader
// walks them. A palette section (format 2) applies to the frames after it;
// a format-3 section gives the colours of the points of the next indexed
// frame, one RGB triple per point.
IldaScan scan_ilda(const std::string& path);

// Copies the ILDA file the library wrote (`from`) to `out` as the ILDA
// standard has it: the last-point bit set on the last record of each frame,
// and each frame named `names[i]` (the closing header keeps the last name).
class OutputFile;
void finish_ilda(const std::string& from, OutputFile& out, const std::vector<std::string>& names);

// The ILDA standard palette: what colour indices mean where a file brings no
// palette of its own.
extern const Rgb kIldaPalette[64];

// True when the file at path starts with the ILDA signature.
bool has_ilda_signature(const std::string& path);

}  // namespace cli
