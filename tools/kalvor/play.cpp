// kalvor play: every picture of the files, in turn, is one frame on track 0
// of one scanner, sent through the transport the user chose: the virtual
// scanner, the live preview, or IDN output.
#include "play.h"

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "kalvor/kalvor.h"
#include "pictures.h"
#include "transport.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

volatile std::sig_atomic_t g_interrupted = 0;

void on_interrupt(int) { g_interrupted = 1; }

// Where the frames go: a transport's name and the settings it reads from the
// environment, set before it is loaded.
struct Output {
  std::string transport;
  std::string previewListen;  // preview:PORT or preview:ADDRESS:PORT
  std::string idnTarget;      // idn:HOST[:PORT][/SERVICE], as given
};

Output parse_output(const std::string& text) {
  Output out;
  if (text == "virtual" || text == "preview") {
    out.transport = text;
  } else if (text.rfind("preview:", 0) == 0 && text.size() > 8) {
    out.transport = "preview";
    out.previewListen = text.substr(8);
  } else if (text.rfind("idn:", 0) == 0 && text.size() > 4 && text[4] != ':' && text[4] != '/') {
    out.transport = "idn";
    out.idnTarget = text;
  } else {
    throw Failure("--output '" + text + "': expected virtual, preview[:PORT] or idn:HOST[:PORT][/SERVICE]", 2);
  }
  return out;
}

// The transport configuration that tells the IDN transport where the played
// scanner's frames go; removed when play ends.
struct TransportConfig {
  fs::path path;
  ~TransportConfig() {
    std::error_code ignored;
    if (!path.empty()) fs::remove(path, ignored);
  }
  void write(uint32_t scanner, const std::string& target) {
    path = fs::temp_directory_path() / ("kalvor-play-" + std::to_string(process_id()) + ".ini");
    std::ofstream file(path);
    file << "[" << scanner << "]\nOutput=" << target << "\n";
    if (!file.flush()) throw Failure("cannot write the transport configuration '" + path.string() + "'");
    set_environment("KALVOR_TRANSPORT_CONFIG", path.string());
  }
};

// All pictures of all files, in order, stored in the scanner as 1..N.
uint32_t load_pictures(const PlayOptions& options) {
  std::vector<Show> shows;
  size_t total = 0;
  for (const std::string& file : options.files) {
    shows.push_back(read_show(file));
    total += shows.back().pictures.size();
  }
  if (total > 65535) throw Failure("too many pictures to play: " + std::to_string(total) + " (at most 65535)");
  clearpicmem(options.scanner);
  uint16_t number = 1;
  for (const Show& show : shows)
    for (const Picture& picture : show.pictures) send_picture(options.scanner, show, picture, number++);
  return static_cast<uint32_t>(total);
}

void progress(uint32_t shown, uint32_t total, double elapsed, double fps) {
  std::printf("\rframe %u of %u  %6.1f s  %5.1f fps ", shown, total, elapsed, fps);
  std::fflush(stdout);
}

// Shows the pictures one a frame; returns false when Ctrl-C stopped it.
bool run(const PlayOptions& options, uint32_t total) {
  const uint32_t n = options.scanner;
  const bool terminal = stdout_is_terminal();
  const auto period = std::chrono::duration<double>(1.0 / options.fps);
  displaybeginsession(n);
  displayinittrack(n);
  displaysize(n, 0, options.scale, options.scale);
  displayoutput(n, 1);
  Clock::time_point start = Clock::now(), next = start;
  uint64_t frames = 0;
  double shown = -1;  // when the progress line was last written
  do {
    for (uint32_t picture = 1; picture <= total && !g_interrupted; ++picture) {
      double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
      displayangz(n, 0, 0, std::fmod(options.rotateSpeed * elapsed, 360.0));
      displayframe(n, 0, static_cast<uint16_t>(picture));
      displayupdate(n);
      ++frames;
      if (terminal && (elapsed - shown >= 0.1 || picture == total)) {  // ten lines a second are enough
        progress(picture, total, elapsed, elapsed > 0 ? frames / elapsed : 0);
        shown = elapsed;
      }
      next += std::chrono::duration_cast<Clock::duration>(period);
      std::this_thread::sleep_until(next);
    }
  } while (options.loop && !g_interrupted);
  if (terminal) std::printf("\n");
  return !g_interrupted;
}

}  // namespace

CLI::App* add_play(CLI::App& app, PlayOptions& o) {
  CLI::App* cmd = app.add_subcommand(
      "play", "Plays picture files as an animation, one picture a frame, through a transport: the virtual scanner, "
              "the live browser preview (prints the address to open) or IDN output.");
  cmd->add_option("FILE", o.files, "Picture files, played one after another")->required();
  cmd->add_option("--fps", o.fps, "Frames a second (default 30)")->check(CLI::Range(0.1, 1000.0));
  cmd->add_flag("--loop", o.loop, "Start again after the last picture, until Ctrl-C");
  cmd->add_option("--scanner", o.scanner, "The scanner to play on (default 1)")->check(CLI::Range(1, 20));
  cmd->add_option("--output", o.output,
                  "virtual (default), preview[:[ADDRESS:]PORT] or idn:HOST[:PORT][/SERVICE]");
  cmd->add_option("--rotate-speed", o.rotateSpeed, "Turns the picture, degrees a second (default 0)")
      ->check(CLI::Range(-36000.0, 36000.0));
  cmd->add_option("--scale", o.scale, "Size factor of the picture (default 1)")->check(CLI::Range(0.0, 100.0));
  return cmd;
}

int play(const PlayOptions& options) {
  Output output;
  TransportConfig config;
  uint32_t total = 0;
  try {
    output = parse_output(options.output);
    if (!output.previewListen.empty()) set_environment("KALVOR_PREVIEW_LISTEN", output.previewListen);
    if (!output.idnTarget.empty()) config.write(options.scanner, output.idnTarget);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "kalvor: %s\n", failure.what());
    return failure.status;
  }
  std::string tried;
  if (!load_transport(output.transport, tried)) {
    std::fprintf(stderr, "kalvor: the %s transport (LASER.DLL) is not in this build or installation; looked at %s\n",
                 output.transport.c_str(), tried.c_str());
    return 1;
  }
  std::signal(SIGINT, on_interrupt);
  std::signal(SIGTERM, on_interrupt);
  DisplayInit();
  bool finished = true;
  int status = 0;
  try {
    total = load_pictures(options);
    std::printf("playing %u picture%s at %g fps on scanner %u through %s\n", total, total == 1 ? "" : "s",
                options.fps, options.scanner, options.output.c_str());
    std::fflush(stdout);
    finished = run(options, total);
    // The beam goes dark before the session ends, however play stops.
    displayoutput(options.scanner, 0);
    displayendsession(options.scanner);
  } catch (const Failure& failure) {
    std::fprintf(stderr, "kalvor: %s\n", failure.what());
    status = failure.status;
  }
  DisplayExit();
  return finished ? status : 130;
}

}  // namespace cli
