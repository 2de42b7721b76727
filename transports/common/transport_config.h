// The transport configuration file: which output each scanner goes to. An
// INI file with a section per scanner, [1] to [20], and an Output key:
//
//   [1]
//   Output=idn:192.168.1.50          ; port 7255, the projector's default service
//   [2]
//   Output=idn:laser-2.local:7255/3  ; service 3
//
// The file is the one named by KALVOR_TRANSPORT_CONFIG, otherwise
// kalvor-transport.ini in the folder of the transport module. Every transport
// that streams frames somewhere reads it through these functions.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kalvor::transport {

inline constexpr uint32_t kConfigScanners = 20;
inline constexpr uint16_t kIdnPort = 7255;

// One scanner's Output value and the line it came from (0: none).
struct OutputEntry {
  std::string value;
  int line = 0;
};

struct Config {
  std::string path;
  std::array<OutputEntry, kConfigScanners + 1> outputs;  // index 0 unused
};

// An IDN target: idn:HOST[:PORT][/SERVICE].
struct IdnTarget {
  std::string host;
  uint16_t port = kIdnPort;
  uint8_t service = 0;  // 0: the projector's default service
};

// The configuration file's path: KALVOR_TRANSPORT_CONFIG when set, otherwise
// kalvor-transport.ini beside `module` (the transport's own path).
std::string config_path(const char* environmentValue, const std::string& module);

// Reads the file. Each bad entry is reported once through `report` as
// "FILE:LINE: problem" and leaves its scanner without an output. A missing
// file is reported only when `mustExist` (the user named it).
Config read_config(const std::string& path, bool mustExist, void (*report)(const char*));

// Reads an Output value of the idn kind; on failure `problem` says why.
bool parse_idn_output(const std::string& value, IdnTarget* target, std::string* problem);

// "FILE:LINE: problem", the form of every configuration message.
std::string config_message(const std::string& path, int line, const std::string& problem);

}  // namespace kalvor::transport
