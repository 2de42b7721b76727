// Reading the transport configuration file.
#include "transport_config.h"

#include <cctype>
#include <fstream>

namespace kalvor::transport {
namespace {

std::string trim(const std::string& s) {
  size_t b = 0, e = s.size();
  while (b < e && std::isspace(static_cast<unsigned char>(s[b]))) ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(s[e - 1]))) --e;
  return s.substr(b, e - b);
}

bool same_name(const std::string& a, const char* b) {
  size_t i = 0;
  for (; i < a.size() && b[i]; ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return i == a.size() && !b[i];
}

// A decimal number (at most 6 digits) in lo..hi.
bool read_number(const std::string& s, long lo, long hi, long* out) {
  if (s.empty() || s.size() > 6) return false;
  long v = 0;
  for (char c : s) {
    if (c < '0' || c > '9') return false;
    v = v * 10 + (c - '0');
  }
  if (v < lo || v > hi) return false;
  *out = v;
  return true;
}

}  // namespace

std::string config_message(const std::string& path, int line, const std::string& problem) {
  return path + ":" + std::to_string(line) + ": " + problem;
}

std::string config_path(const char* environmentValue, const std::string& module) {
  if (environmentValue && *environmentValue) return environmentValue;
  size_t slash = module.find_last_of("/\\");
  std::string folder = slash == std::string::npos ? std::string() : module.substr(0, slash + 1);
  return folder + "kalvor-transport.ini";
}

Config read_config(const std::string& path, bool mustExist, void (*report)(const char*)) {
  Config config;
  config.path = path;
  auto problem = [&](int line, const std::string& text) {
    if (report) report(config_message(path, line, text).c_str());
  };
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    if (mustExist) problem(0, "cannot be read; no scanner has an output");
    return config;
  }
  std::string raw;
  int line = 0;
  long section = -1;  // -1: before any section, 0: a section that is no scanner
  while (std::getline(in, raw)) {
    ++line;
    if (line == 1 && raw.size() >= 3 && raw.compare(0, 3, "\xEF\xBB\xBF") == 0) raw.erase(0, 3);
    std::string text = trim(raw);
    if (text.empty() || text[0] == ';' || text[0] == '#') continue;
    if (text[0] == '[') {
      long n = 0;
      bool ok = text.back() == ']' && read_number(trim(text.substr(1, text.size() - 2)), 1, kConfigScanners, &n);
      section = ok ? n : 0;
      if (!ok) problem(line, "section " + text + " is not a scanner number 1 to 20; its keys are ignored");
      continue;
    }
    size_t eq = text.find('=');
    if (eq == std::string::npos) {
      problem(line, "'" + text + "' is not a KEY=VALUE line");
      continue;
    }
    std::string key = trim(text.substr(0, eq)), value = trim(text.substr(eq + 1));
    size_t comment = value.find(" ;");
    if (comment != std::string::npos) value = trim(value.substr(0, comment));
    if (section == 0) continue;  // already reported
    if (section < 0) {
      problem(line, "key " + key + " comes before any [scanner] section");
      continue;
    }
    if (!same_name(key, "Output")) {
      problem(line, "unknown key " + key + " (the only key is Output)");
      continue;
    }
    OutputEntry& entry = config.outputs[static_cast<size_t>(section)];
    if (entry.line) problem(line, "scanner " + std::to_string(section) + " already has an Output on line " +
                                      std::to_string(entry.line) + "; this one replaces it");
    entry = OutputEntry{value, line};
  }
  return config;
}

bool parse_idn_output(const std::string& value, IdnTarget* target, std::string* problem) {
  if (value.compare(0, 4, "idn:") != 0) {
    *problem = "Output '" + value + "' is not of the form idn:HOST[:PORT][/SERVICE]";
    return false;
  }
  std::string rest = value.substr(4);
  long service = 0, port = kIdnPort;
  // The service after the first '/', then the port after the first ':'.
  const struct {
    char mark;
    long lo, hi;
    const char* name;
    long* out;
  } parts[] = {{'/', 0, 255, "service", &service}, {':', 1, 65535, "port", &port}};
  for (const auto& part : parts) {
    size_t at = rest.find(part.mark);
    if (at == std::string::npos) continue;
    std::string number = rest.substr(at + 1);
    if (!read_number(number, part.lo, part.hi, part.out)) {
      *problem = std::string(part.name) + " '" + number + "' is not a number " + std::to_string(part.lo) + " to " +
                 std::to_string(part.hi);
      return false;
    }
    rest.erase(at);
  }
  if (rest.empty()) {
    *problem = "Output '" + value + "' names no host";
    return false;
  }
  *target = IdnTarget{rest, static_cast<uint16_t>(port), static_cast<uint8_t>(service)};
  return true;
}

}  // namespace kalvor::transport
