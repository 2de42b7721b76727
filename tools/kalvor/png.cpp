// PNG output, drawn with Cairo: the same image as the SVG output. Builds
// without Cairo (the Windows cross-build) say that PNG is not available.
#include "svg.h"

#if defined(KALVOR_TOOL_PNG)
#include <cairo.h>

#include <cstdint>
#include <memory>
#include <string>

#include "output_file.h"
#endif

namespace cli {

#if defined(KALVOR_TOOL_PNG)
namespace {

void set_colour(cairo_t* cr, Rgb c) { cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0); }

// Cairo hands the PNG over in chunks; a failure must not be thrown through
// Cairo's C frames, so it is kept and thrown once Cairo has returned.
struct Sink {
  OutputFile& file;
  std::string failure;
};
cairo_status_t write_chunk(void* closure, const unsigned char* data, unsigned int length) {
  Sink& sink = *static_cast<Sink*>(closure);
  try {
    sink.file.write(data, length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const Failure& failure) {
    sink.failure = failure.what();
    return CAIRO_STATUS_WRITE_ERROR;
  }
}

// Draws a picture number centred on x, from y down, in seven-segment digits
// of 5 by 10 pixels: labels need no font, so the image is the same wherever
// it is drawn.
void draw_number(cairo_t* cr, size_t number, double x, double y) {
  // Segments top, upper right, lower right, bottom, lower left, upper left,
  // middle, as lines in a box 1 wide and 2 high; each digit's bits pick them.
  static const double kSegments[7][4] = {{0, 0, 1, 0}, {1, 0, 1, 1}, {1, 1, 1, 2}, {0, 2, 1, 2},
                                         {0, 1, 0, 2}, {0, 0, 0, 1}, {0, 1, 1, 1}};
  static const uint8_t kDigits[10] = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
  constexpr double kUnit = 5, kStep = 8;
  std::string text = std::to_string(number);
  double left = x - (text.size() * kStep - (kStep - kUnit)) / 2;
  for (char digit : text) {
    for (int s = 0; s < 7; ++s) {
      if (!(kDigits[digit - '0'] >> s & 1)) continue;
      const double* l = kSegments[s];
      cairo_move_to(cr, left + l[0] * kUnit, y + l[1] * kUnit);
      cairo_line_to(cr, left + l[2] * kUnit, y + l[3] * kUnit);
    }
    left += kStep;
  }
  set_colour(cr, {0xc0, 0xc0, 0xc0});
  cairo_set_line_width(cr, 1.2);
  cairo_stroke(cr);
}

}  // namespace

void write_png(const Show& show, const std::vector<size_t>& pictures, const std::string& path,
               const RenderOptions& options) {
  Sheet sheet(pictures.size(), options);
  std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, sheet.width, sheet.height), cairo_surface_destroy);
  std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()), cairo_destroy);
  cairo_t* cr = context.get();
  if (cairo_status(cr) != CAIRO_STATUS_SUCCESS)
    throw Failure("cannot draw '" + path + "': " + cairo_status_to_string(cairo_status(cr)));
  set_colour(cr, {0x20, 0x20, 0x20});
  cairo_paint(cr);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  double scale = sheet.scale(), centre = Sheet::kRange / 2;
  for (size_t k = 0; k < pictures.size(); ++k) {
    double left = sheet.left(k), top = sheet.top(k);
    cairo_rectangle(cr, left + 0.5, top + 0.5, sheet.size - 1, sheet.size - 1);
    set_colour(cr, {0, 0, 0});
    cairo_fill_preserve(cr);
    set_colour(cr, {0x40, 0x40, 0x40});
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
    auto at = [&](const Point& p, double& x, double& y) {
      x = left + (p.x + centre) * scale;
      y = top + (p.y + centre) * scale;
    };
    each_segment(show.pictures[pictures[k] - 1], options.showBlanked, [&](const Point& from, const Point& to, bool drawn) {
      double x1, y1, x2, y2;
      at(from, x1, y1);
      at(to, x2, y2);
      cairo_move_to(cr, x1, y1);
      cairo_line_to(cr, x2, y2);
      if (drawn) {
        set_colour(cr, to.rgb);
        cairo_set_line_width(cr, 1.5);
        cairo_set_dash(cr, nullptr, 0, 0);
      } else {
        static const double dashes[] = {1, 3};
        set_colour(cr, {0x80, 0x80, 0x80});
        cairo_set_line_width(cr, 1);
        cairo_set_dash(cr, dashes, 2, 0);
      }
      cairo_stroke(cr);
    });
    cairo_set_dash(cr, nullptr, 0, 0);
    if (sheet.label) draw_number(cr, pictures[k], left + sheet.size / 2.0, top + sheet.size + 4);
  }
  OutputFile file(path);
  Sink sink{file, {}};
  cairo_status_t status = cairo_surface_write_to_png_stream(surface.get(), write_chunk, &sink);
  if (!sink.failure.empty()) throw Failure(sink.failure);
  if (status != CAIRO_STATUS_SUCCESS)
    throw Failure("cannot write '" + path + "': " + cairo_status_to_string(status));
  file.commit();
}

#else

void write_png(const Show&, const std::vector<size_t>&, const std::string& path, const RenderOptions&) {
  throw Failure("cannot write '" + path + "': PNG is not available in this build; write an SVG image instead");
}

#endif

}  // namespace cli
