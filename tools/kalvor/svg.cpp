// SVG output. Each picture is drawn in its own square of 65,536 units: the
// point (x, y) lies at (x + 32768, y + 32768). The scanner's y grows
// downwards (readers mirror ILDA's upward y), so this puts ILDA's top at the
// top of the image.
#include "svg.h"

#include <cmath>
#include <cstdio>
#include <fstream>

namespace cli {
namespace {

constexpr int kRange = 65536;
constexpr int kGap = 8;
constexpr int kLabel = 18;

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

void line(std::ostream& out, const char* kind, const Point& from, const Point& to, const std::string& colour) {
  out << "<line class=\"" << kind << "\" x1=\"" << from.x + kRange / 2 << "\" y1=\"" << from.y + kRange / 2
      << "\" x2=\"" << to.x + kRange / 2 << "\" y2=\"" << to.y + kRange / 2 << "\"";
  if (!colour.empty()) out << " stroke=\"" << colour << "\"";
  out << "/>\n";
}

// The segment arriving at each point follows that point's flags; the one
// arriving at the first point comes from the last, as the picture repeats.
void draw_picture(std::ostream& out, const Show& show, const Picture& picture, const RenderOptions& options) {
  const std::vector<Point>& points = picture.points;
  for (size_t i = 0; i < points.size(); ++i) {
    const Point& from = points[i == 0 ? points.size() - 1 : i - 1];
    const Point& to = points[i];
    if (!to.blanked())
      line(out, "drawn", from, to, hex(show.colour(picture, to)));
    else if (options.showBlanked)
      line(out, "blanked", from, to, "");
  }
}

}  // namespace

void write_svg(const Show& show, const std::vector<size_t>& pictures, const std::string& title,
               const std::string& path, const RenderOptions& options) {
  bool sheet = pictures.size() > 1;
  int size = options.size > 0 ? options.size : (sheet ? 200 : 600);
  int columns = sheet ? static_cast<int>(std::ceil(std::sqrt(static_cast<double>(pictures.size())))) : 1;
  int rows = static_cast<int>((pictures.size() + columns - 1) / columns);
  int label = sheet ? kLabel : 0;
  int width = columns * (size + kGap) + kGap, height = rows * (size + label + kGap) + kGap;

  std::ofstream out(path, std::ios::binary);
  if (!out) throw Failure("cannot write '" + path + "'");
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\"" << height
      << "\" viewBox=\"0 0 " << width << " " << height << "\">\n"
      << "<title>" << escape(title) << "</title>\n"
      << "<style>\n"
      << "line { stroke-width: 1.5px; stroke-linecap: round; vector-effect: non-scaling-stroke; }\n"
      << "line.blanked { stroke: #808080; stroke-width: 1px; stroke-dasharray: 1 3; }\n"
      << "rect.field { fill: #000000; stroke: #404040; vector-effect: non-scaling-stroke; }\n"
      << "text { fill: #c0c0c0; font: 12px sans-serif; text-anchor: middle; }\n"
      << "</style>\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"#202020\"/>\n";
  double scale = static_cast<double>(size) / kRange;
  for (size_t k = 0; k < pictures.size(); ++k) {
    int left = kGap + static_cast<int>(k % columns) * (size + kGap);
    int top = kGap + static_cast<int>(k / columns) * (size + label + kGap);
    out << "<g id=\"picture-" << pictures[k] << "\" transform=\"translate(" << left << " " << top << ") scale("
        << scale << ")\">\n"
        << "<rect class=\"field\" width=\"" << kRange << "\" height=\"" << kRange << "\"/>\n";
    draw_picture(out, show, show.pictures[pictures[k] - 1], options);
    out << "</g>\n";
    if (sheet)
      out << "<text x=\"" << left + size / 2 << "\" y=\"" << top + size + label - 4 << "\">" << pictures[k]
          << "</text>\n";
  }
  out << "</svg>\n";
  if (!out.flush()) throw Failure("cannot write '" + path + "'");
}

}  // namespace cli
