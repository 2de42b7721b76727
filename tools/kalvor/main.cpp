// kalvor: converts, inspects and draws laser picture files. A host program of
// the library: every file is read and written by kalvor's readers and
// writers, with the virtual scanner as the projector that holds the pictures
// in between.
//
// Exit status: 0 on success, 1 when a file is missing, unreadable, of an
// unknown kind, not writable, holds no picture, or (with --strict) needed a
// warning; 2 for a wrong command line.
#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <map>

#include "commands.h"
#include "devices.h"
#include "kalvor/kalvor.h"
#include "play.h"
#include "transport.h"

using namespace cli;

namespace {

// The first word that is not an option names the command; an unknown one is
// said so, with the commands there are.
int check_command(const CLI::App& app, int argc, char** argv) {
  std::string names;
  std::vector<std::string> known;
  for (const CLI::App* sub : app.get_subcommands({})) {
    names += (names.empty() ? "" : ", ") + sub->get_name();
    known.push_back(sub->get_name());
  }
  for (int i = 1; i < argc; ++i) {
    std::string word = argv[i];
    if (word == "--help" || word == "-h" || word == "--version") return -1;
    if (word.empty() || word[0] == '-') continue;
    if (std::find(known.begin(), known.end(), word) != known.end()) return -1;
    std::fprintf(stderr, "kalvor: unknown command '%s'; the commands are %s (kalvor --help tells more)\n",
                 word.c_str(), names.c_str());
    return 2;
  }
  std::fprintf(stderr, "kalvor: a command is needed: %s (kalvor --help tells more)\n", names.c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"kalvor: converts, inspects and draws laser picture files."};
  app.require_subcommand(1);
  app.fallthrough();
  app.set_version_flag("--version", "kalvor " KALVOR_VERSION);
  app.add_flag("--strict", tool_options().strict, "Treat warnings about changed or lost data as errors (exit 1)");
  app.footer("Pictures are counted from 1 in file order, whatever the format.");

  std::map<CLI::App*, Action> actions;
  for (auto add : {add_info, add_convert, add_render}) {
    Action action = add(app);
    actions[app.get_subcommands({}).back()] = action;
  }

  // Commands that talk to the network or choose a transport of their own,
  // rather than work on files with the virtual scanner.
  DevicesOptions devices;
  CLI::App* devices_cmd = add_devices_command(app, devices);
  PlayOptions play_options;
  CLI::App* play_cmd = add_play(app, play_options);

  if (int status = check_command(app, argc, argv); status >= 0) return status;
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : 2;
  }
  if (*devices_cmd) return run_devices(devices);
  if (*play_cmd) return play(play_options);  // play chooses its own transport

#if defined(SIGXFSZ)
  // A file-size limit then fails the write with a reason, instead of ending
  // the tool before it can say so or clean up.
  std::signal(SIGXFSZ, SIG_IGN);
#endif
  std::string tried;
  if (!load_virtual_scanner(tried)) {
    std::fprintf(stderr, "kalvor: the virtual scanner (LASER.DLL) was not found; looked at %s\n", tried.c_str());
    return 1;
  }
  DisplayInit();
  int status = 0;
  try {
    for (CLI::App* sub : app.get_subcommands()) actions[sub]();
  } catch (const Failure& failure) {
    std::fprintf(stderr, "kalvor: %s\n", failure.what());
    status = failure.status;
  }
  DisplayExit();
  return status;
}
