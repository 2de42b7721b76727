// info, convert and render.
#include "commands.h"
#include "engine.h"

#include <cctype>
#include <cstdio>
#include <numeric>

#include "svg.h"

namespace cli {
namespace {

// The pictures first..last (counted from 1); 0 for last means the last one.
struct Range {
  size_t first = 1, last = 0;

  std::vector<size_t> of(const Show& show, const std::string& file) const {
    size_t end = last ? last : show.pictures.size();
    if (end > show.pictures.size() || first > end)
      throw Failure("'" + file + "' holds pictures 1 to " + std::to_string(show.pictures.size()) + "; " +
                        std::to_string(first) + " to " + std::to_string(end) + " is out of range",
                    2);
    std::vector<size_t> numbers(end - first + 1);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
  }
};

// Picture numbers are 16-bit in every format.
const CLI::Range kPictureNumber(size_t{1}, size_t{65535});

struct Counts {
  size_t points = 0, drawn = 0, blanked = 0, shown = 0;
  void add(const Picture& p) {
    for (const Point& point : p.points) {
      ++(point.blanked() ? blanked : drawn);
      shown += 1u + (point.repeat & 15);  // a point is output 1 + repeat times
    }
    points += p.points.size();
  }
};

void print_counts(const std::string& label, const Counts& c, const char* colours, const std::string& name) {
  std::printf("%-8s %8zu %8zu %8zu  %-11s %s\n", label.c_str(), c.points, c.drawn, c.blanked, colours, name.c_str());
}

struct PlayRates {
  double points = 30000, frames = 25;
};

void info(const std::string& file, const PlayRates& rates) {
  Show show = read_show(file);
  report_warnings(show);
  size_t n = show.pictures.size();
  std::printf("%s: %s, %zu picture%s\n", file.c_str(), show.format, n, n == 1 ? "" : "s");
  if (!show.palette.empty()) std::printf("%s\n", show.palette.c_str());
  std::printf("%-8s %8s %8s %8s  %-11s %s\n", "picture", "points", "drawn", "blanked", "colours", "name");
  Counts all;
  for (size_t i = 0; i < n; ++i) {
    Counts one;
    one.add(show.pictures[i]);
    all.add(show.pictures[i]);
    print_counts(std::to_string(i + 1), one, show.pictures[i].indexed ? "indexed" : "true colour",
                 show.pictures[i].name);
  }
  if (n > 1) print_counts("all", all, "", "");
  std::printf("blanked: points the beam reaches with the laser off (the blank bit); drawn black points count as "
              "drawn\n");
  std::printf("play time: %.3f s at %s points per second (every picture once), %.3f s at %g frames per second\n",
              static_cast<double>(all.shown) / rates.points, with_commas(static_cast<uint64_t>(rates.points)).c_str(),
              static_cast<double>(n) / rates.frames, rates.frames);
}

void convert(const std::string& in, const std::string& out, const Range& range) {
  Show show = read_show(in);
  report_warnings(show);
  std::vector<size_t> numbers = range.of(show, in);
  write_show(show, out, numbers.front(), numbers.back());
  if (out != "-")
    std::printf("%s: %zu picture%s written\n", out.c_str(), numbers.size(), numbers.size() == 1 ? "" : "s");
}

bool is_png(const std::string& path) {
  std::string ext = path.size() >= 4 ? path.substr(path.size() - 4) : "";
  for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (ext == ".png") return true;
  if (ext == ".svg" || path == "-") return false;
  throw Failure("cannot write '" + path + "': render writes .svg or .png images (or - for SVG on standard output)", 2);
}

void render(const std::string& file, const std::string& out, size_t picture, const RenderOptions& options,
            const Transform& transform) {
  bool png = is_png(out);
  Show show = read_show(file);
  report_warnings(show);
  Range range;
  if (picture) range = {picture, picture};
  std::vector<size_t> numbers = range.of(show, file);
  if (transform.any()) transform_pictures(show, numbers, transform);
  if (png)
    write_png(show, numbers, out, options);
  else
    write_svg(show, numbers, file, out, options);
  if (out != "-") std::printf("%s: drawn\n", out.c_str());
}

}  // namespace

ToolOptions& tool_options() {
  static ToolOptions options;
  return options;
}

void report_warnings(const Show& show) {
  for (const std::string& warning : show.warnings) std::fprintf(stderr, "warning: %s\n", warning.c_str());
  if (tool_options().strict && !show.warnings.empty())
    throw Failure("stopped: --strict makes warnings errors");
}

Action add_info(CLI::App& app) {
  static std::string file;
  static PlayRates rates;
  CLI::App* cmd = app.add_subcommand(
      "info", "Shows a file's format and palette, its pictures with their point counts (drawn and blanked), "
              "colours and names, and its play time.");
  cmd->add_option("FILE", file, "The picture file (- reads an ILDA file from standard input)")->required();
  cmd->add_option("--point-rate", rates.points, "Points per second for the play time (default 30000)")
      ->check(CLI::Range(1.0, 1e7));
  cmd->add_option("--frame-rate", rates.frames, "Pictures per second for the play time (default 25)")
      ->check(CLI::Range(0.01, 1000.0));
  return [] { info(file, rates); };
}

Action add_convert(CLI::App& app) {
  static std::string in, out;
  static Range range;
  CLI::App* cmd = app.add_subcommand(
      "convert", "Converts a picture file into another format, chosen by OUT's extension (" + writable_extensions() +
                     ").");
  cmd->add_option("IN", in, "The file to read (" + readable_extensions() + "; - reads ILDA from standard input)")
      ->required();
  cmd->add_option("OUT", out, "The file to write (" + writable_extensions() + "; - writes ILDA to standard output)")
      ->required();
  cmd->add_option("--first", range.first, "First picture to write (default 1)")->check(kPictureNumber);
  cmd->add_option("--last", range.last, "Last picture to write (default the last one)")->check(kPictureNumber);
  return [] { convert(in, out, range); };
}

Action add_render(CLI::App& app) {
  static std::string file, out;
  static size_t picture = 0;
  static RenderOptions options;
  static Transform transform;
  CLI::App* cmd = app.add_subcommand(
      "render", "Draws one picture, or a contact sheet of all of them, as an SVG or PNG image; Y points up.");
  cmd->add_option("FILE", file, "The picture file (- reads an ILDA file from standard input)")->required();
  cmd->add_option("-o,--output", out, "The image to write: .svg or .png (- writes SVG to standard output)")
      ->required();
  cmd->add_option("--picture", picture, "Draw only this picture (counted from 1)")->check(kPictureNumber);
  cmd->add_flag("--show-blanked", options.showBlanked, "Draw blanked moves as dotted grey lines");
  cmd->add_option("--size", options.size, "Edge of one picture in pixels (default 600, 200 on a sheet)")
      ->check(CLI::Range(16, 8192));
  cmd->add_option("--rotate", transform.rotate,
                  "Draw through the projector, turned by DEG degrees (positive: clockwise as drawn)");
  cmd->add_option("--scale", transform.scale, "Draw through the projector, scaled by F");
  return [] { render(file, out, picture, options, transform); };
}

}  // namespace cli
