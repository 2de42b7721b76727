// The one file of the tool that talks to the operating system: its loader,
// environment, terminal, process and standard streams.
#include "transport.h"

#include <cstdlib>
#include <filesystem>
#include <vector>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <windows.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif

namespace cli {
namespace {

namespace fs = std::filesystem;

fs::path executable_folder() {
#if defined(_WIN32)
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  return fs::path(path).parent_path();
#else
  std::error_code ignored;
  return fs::read_symlink("/proc/self/exe", ignored).parent_path();
#endif
}

// True when the library at path loads and takes commands. The module stays
// loaded for the life of the process.
bool load(const fs::path& path) {
#if defined(_WIN32)
  HMODULE module = LoadLibraryA(path.string().c_str());
  return module && GetProcAddress(module, "NetScanCommand");
#else
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  return module && dlsym(module, "NetScanCommand");
#endif
}

}  // namespace

bool load_transport(const std::string& name, std::string& tried) {
  std::vector<fs::path> candidates;
  const char* chosen = std::getenv("KALVOR_VIRTUAL_SCANNER");
  if (chosen && name == "virtual") {
    candidates.emplace_back(chosen);
  } else {
    fs::path here = executable_folder();
    candidates = {here / KALVOR_TRANSPORTS_FROM_BUILD / name / "LASER.DLL",
                  here / KALVOR_TRANSPORTS_FROM_INSTALL / name / "LASER.DLL"};
  }
  for (const fs::path& path : candidates) {
    if (fs::exists(path) && load(path)) return true;
    tried += (tried.empty() ? "" : ", ") + path.lexically_normal().string();
  }
  return false;
}

void set_environment(const char* name, const std::string& value) {
#if defined(_WIN32)
  _putenv_s(name, value.c_str());
#else
  setenv(name, value.c_str(), 1);
#endif
}

bool stdout_is_terminal() {
#if defined(_WIN32)
  return _isatty(_fileno(stdout));
#else
  return isatty(STDOUT_FILENO);
#endif
}

unsigned long process_id() {
#if defined(_WIN32)
  return static_cast<unsigned long>(_getpid());
#else
  return static_cast<unsigned long>(getpid());
#endif
}

std::FILE* binary(std::FILE* stream) {
#if defined(_WIN32)
  _setmode(_fileno(stream), _O_BINARY);  // no line-end translation of pictures
#endif
  return stream;
}

}  // namespace cli
