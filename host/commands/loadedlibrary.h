// SPDX-License-Identifier: MIT
// The communication library that the driver has found: its file and version.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace ostravel::host {

struct LoadedLibrary {
  std::string file;     // empty when none is in this process
  std::string version;  // "7.3"; empty when it does not tell
};

// Calls a function of the library, so that the driver loads it. Find gives the driver's function of that
// name, null when it has none.
LoadedLibrary find_loaded_library(const std::function<void*(const char*)>& find);

// The file of the communication library among the lines of /proc/PID/maps; empty when there is none.
std::string library_in_maps(const std::string& maps);

}  // namespace ostravel::host
