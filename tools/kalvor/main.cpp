// kalvor: converts, inspects and draws laser picture files. A host program of
// the library: every file is read and written by kalvor's exports, with the
// virtual scanner as the projector that holds the pictures in between.
//
// Exit status: 0 on success, 1 when a file is missing, unreadable, of an
// unknown kind or holds no picture, 2 for a wrong command line.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <iostream>
#include <numeric>

#include "kalvor/kalvor.h"
#include "pictures.h"
#include "play.h"
#include "svg.h"
#include "transport.h"

namespace {

using namespace cli;

// The pictures first..last (counted from 1); 0 for last means the last one.
struct Range {
  size_t first = 1, last = 0;

  std::vector<size_t> of(const Show& show, const std::string& file) const {
    size_t end = last ? last : show.pictures.size();
    if (first < 1 || end > show.pictures.size() || first > end)
      throw Failure("'" + file + "' holds pictures 1 to " + std::to_string(show.pictures.size()) + "; " +
                        std::to_string(first) + " to " + std::to_string(end) + " is out of range",
                    2);
    std::vector<size_t> numbers(end - first + 1);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
  }
};

struct Counts {
  size_t points = 0, drawn = 0, blanked = 0;
  void add(const Picture& p) {
    for (const Point& point : p.points) ++(point.blanked() ? blanked : drawn);
    points += p.points.size();
  }
};

void print_counts(const char* label, const Counts& c, const char* colours) {
  std::printf("%-8s %8zu %8zu %8zu  %s\n", label, c.points, c.drawn, c.blanked, colours);
}

void info(const std::string& file) {
  Show show = read_show(file);
  size_t n = show.pictures.size();
  std::printf("%s: %s, %zu picture%s\n", file.c_str(), show.format, n, n == 1 ? "" : "s");
  if (show.paletteEntriesFromFile)
    std::printf("palette: %d entries from the file\n", show.paletteEntriesFromFile);
  else
    std::printf("palette: none in the file (indexed colours use the ILDA standard palette)\n");
  std::printf("%-8s %8s %8s %8s  %s\n", "picture", "points", "drawn", "blanked", "colours");
  Counts all;
  for (size_t i = 0; i < n; ++i) {
    Counts one;
    one.add(show.pictures[i]);
    all.add(show.pictures[i]);
    print_counts(std::to_string(i + 1).c_str(), one, show.pictures[i].indexed ? "indexed" : "true colour");
  }
  if (n > 1) print_counts("all", all, "");
}

void convert(const std::string& in, const std::string& out, const Range& range) {
  Show show = read_show(in);
  std::vector<size_t> numbers = range.of(show, in);
  write_show(show, out, numbers.front(), numbers.back());
  std::printf("%s: %zu picture%s written\n", out.c_str(), numbers.size(), numbers.size() == 1 ? "" : "s");
}

void render(const std::string& file, const std::string& out, size_t picture, const RenderOptions& options) {
  Show show = read_show(file);
  Range range;
  if (picture) range = {picture, picture};
  write_svg(show, range.of(show, file), file, out, options);
  std::printf("%s: drawn\n", out.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"kalvor: converts, inspects and draws laser picture files (" + readable_extensions() + ")."};
  app.require_subcommand(1);
  app.footer("Pictures are counted from 1 in file order, whatever the format.");

  std::string file, in, out;
  CLI::App* info_cmd = app.add_subcommand("info", "Shows a file's format, its pictures with their point counts "
                                                  "(drawn and blanked) and its palette.");
  info_cmd->add_option("FILE", file, "The picture file")->required();

  Range range;
  CLI::App* convert_cmd = app.add_subcommand(
      "convert", "Converts a picture file into another format, chosen by OUT's extension (" + writable_extensions() +
                     ").");
  convert_cmd->add_option("IN", in, "The file to read (" + readable_extensions() + ")")->required();
  convert_cmd->add_option("OUT", out, "The file to write (" + writable_extensions() + ")")->required();
  convert_cmd->add_option("--first", range.first, "First picture to write (default 1)")->check(CLI::PositiveNumber);
  convert_cmd->add_option("--last", range.last, "Last picture to write (default the last one)")
      ->check(CLI::PositiveNumber);

  size_t picture = 0;
  RenderOptions options;
  CLI::App* render_cmd = app.add_subcommand(
      "render", "Draws one picture, or a contact sheet of all of them, as an SVG image; Y points up.");
  render_cmd->add_option("FILE", file, "The picture file")->required();
  render_cmd->add_option("-o,--output", out, "The SVG file to write")->required();
  render_cmd->add_option("--picture", picture, "Draw only this picture (counted from 1)")->check(CLI::PositiveNumber);
  render_cmd->add_flag("--show-blanked", options.showBlanked, "Draw blanked moves as dotted grey lines");
  render_cmd->add_option("--size", options.size, "Edge of one picture in pixels (default 600, 200 on a sheet)")
      ->check(CLI::Range(16, 8192));

  PlayOptions play_options;
  CLI::App* play_cmd = add_play(app, play_options);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : 2;
  }

  if (*play_cmd) return play(play_options);  // play chooses its own transport

  std::string tried;
  if (!load_virtual_scanner(tried)) {
    std::fprintf(stderr, "kalvor: the virtual scanner (LASER.DLL) was not found; looked at %s\n", tried.c_str());
    return 1;
  }
  DisplayInit();
  int status = 0;
  try {
    if (*info_cmd) info(file);
    if (*convert_cmd) convert(in, out, range);
    if (*render_cmd) render(file, out, picture, options);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "kalvor: %s\n", failure.what());
    status = failure.status;
  }
  DisplayExit();
  return status;
}
