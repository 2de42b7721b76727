// kalvor play: shows picture files as animations through a transport.
#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

struct PlayOptions {
  std::vector<std::string> files;
  double fps = 30;
  bool loop = false;
  uint32_t scanner = 1;
  std::string output = "virtual";
  double rotateSpeed = 0;  // degrees a second
  double scale = 1;
};

// Adds the play command and its options to the tool.
CLI::App* add_play(CLI::App& app, PlayOptions& options);

// Runs the whole command, from loading the transport to DisplayExit; returns
// the exit status (130 when stopped by Ctrl-C).
int play(const PlayOptions& options);

}  // namespace cli
