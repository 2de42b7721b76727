// SVG output. Each picture is drawn in its own square of 65,536 units, scaled
// to its size in pixels: the point (x, y) lies at (x + 32768, y + 32768).
#include "svg.h"

#include <cstdio>
#include <sstream>

#include "output_file.h"

namespace cli {
namespace {

std::string hex(Rgb c) {
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", c.r, c.g, c.b);
  return text;
}

std::string escape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '&': out += "&amp;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

void line(std::ostream& out, const Point& from, const Point& to, bool drawn) {
  constexpr int c = Sheet::kRange / 2;
  out << "<line class=\"" << (drawn ? "drawn" : "blanked") << "\" x1=\"" << from.x + c << "\" y1=\"" << from.y + c
      << "\" x2=\"" << to.x + c << "\" y2=\"" << to.y + c << "\"";
  if (drawn) out << " stroke=\"" << hex(to.rgb) << "\"";
  out << "/>\n";
}

}  // namespace

void write_svg(const Show& show, const std::vector<size_t>& pictures, const std::string& title,
               const std::string& path, const RenderOptions& options) {
  Sheet sheet(pictures.size(), options);
  // Widths inside a picture's group are in its units: 1 pixel is 1 / scale.
  double pixel = 1 / sheet.scale();
  OutputFile file(path);
  std::ostringstream out;
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << sheet.width << "\" height=\"" << sheet.height
      << "\" viewBox=\"0 0 " << sheet.width << " " << sheet.height << "\">\n"
      << "<title>" << escape(title) << "</title>\n"
      << "<style>\n"
      << "line { stroke-width: " << 1.5 * pixel << "px; stroke-linecap: round; }\n"
      << "line.blanked { stroke: #808080; stroke-width: " << pixel << "px; stroke-dasharray: " << pixel << "px "
      << 3 * pixel << "px; }\n"
      << "rect.field { fill: #000000; stroke: #404040; stroke-width: " << pixel << "px; }\n"
      << "text { fill: #c0c0c0; font: 12px sans-serif; text-anchor: middle; }\n"
      << "</style>\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"#202020\"/>\n";
  for (size_t k = 0; k < pictures.size(); ++k) {
    int left = sheet.left(k), top = sheet.top(k);
    out << "<g id=\"picture-" << pictures[k] << "\" transform=\"translate(" << left << " " << top << ") scale("
        << sheet.scale() << ")\">\n"
        << "<rect class=\"field\" width=\"" << Sheet::kRange << "\" height=\"" << Sheet::kRange << "\"/>\n";
    each_segment(show.pictures[pictures[k] - 1], options.showBlanked,
                 [&](const Point& from, const Point& to, bool drawn) { line(out, from, to, drawn); });
    out << "</g>\n";
    if (sheet.label)
      out << "<text x=\"" << left + sheet.size / 2 << "\" y=\"" << top + sheet.size + sheet.label - 4 << "\">"
          << pictures[k] << "</text>\n";
    file.write(out.str());
    out.str("");
  }
  out << "</svg>\n";
  file.write(out.str());
  file.commit();
}

}  // namespace cli
