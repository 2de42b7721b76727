// `kalvor devices`: finds IDN projectors on the network.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace cli {

struct DevicesOptions {
  std::string host;  // empty: broadcast on every IPv4 interface
  int timeoutMs = 1000;
};

// Adds the subcommand to the tool.
CLI::App* add_devices_command(CLI::App& app, DevicesOptions& options);
// Lists every responder within the timeout; 0 when any answered, 1 otherwise.
int run_devices(const DevicesOptions& options);

}  // namespace cli
