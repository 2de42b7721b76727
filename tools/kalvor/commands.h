// The tool's subcommands. Each add_... function registers one subcommand
// with its options and returns the action that runs it once the command
// line is parsed and the virtual scanner is up.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>

#include "pictures.h"

namespace cli {

using Action = std::function<void()>;

Action add_info(CLI::App& app);
Action add_convert(CLI::App& app);
Action add_render(CLI::App& app);

// Options of the whole tool.
struct ToolOptions {
  bool strict = false;  // warnings end the command with status 1
};
ToolOptions& tool_options();

// Prints a file's warnings to standard error; with --strict they end the
// command (status 1) before anything is written.
void report_warnings(const Show& show);

}  // namespace cli
