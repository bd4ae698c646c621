// SPDX-License-Identifier: MIT
#include "host/commands/loadedlibrary.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string_view>

namespace ostravel::host {
namespace {

// The library tells its version through two pointers. Its own header is not at hand, so each gets ample room.
using GetVersion = void (*)(std::int32_t* major, std::int32_t* minor);
using Room = std::array<std::int32_t, 64>;

}  // namespace

std::string library_in_maps(const std::string& maps) {
  std::istringstream lines(maps);
  for (std::string line; std::getline(lines, line);) {
    const auto path = line.find('/');
    if (path == std::string::npos) {
      continue;
    }
    auto file = line.substr(path);
    const auto name = std::string_view(file).substr(file.rfind('/') + 1);
    if (name.starts_with("libAGLink") || name.starts_with("S71500_SYMBOLICLIB")) {
      return file;
    }
  }
  return {};
}

LoadedLibrary find_loaded_library(const std::function<void*(const char*)>& find) {
  LoadedLibrary library;
  Room major{};
  Room minor{};
  if (const auto version = reinterpret_cast<GetVersion>(find("AGL_GetVersion"))) {
    version(major.data(), minor.data());
  }
  std::ostringstream maps;
  maps << std::ifstream("/proc/self/maps").rdbuf();
  library.file = library_in_maps(maps.str());
  if (!library.file.empty() && (major[0] != 0 || minor[0] != 0)) {
    library.version = fmt::format("{}.{}", major[0], minor[0]);
  }
  return library;
}

}  // namespace ostravel::host
