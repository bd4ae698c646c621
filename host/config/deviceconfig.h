// SPDX-License-Identifier: MIT
// The devices that a command works with, as the command line or a description file names them.
#pragma once

#include <string>
#include <vector>

namespace ostravel::host {

struct CommonOptions;

struct DeviceConfig {
  std::string name;     // unique; empty for the one device of the plain options
  std::string project;  // file
  std::string address = "127.0.0.1";
  int station = 1;
  bool offline = false;
  std::string driver;   // the same for all devices, as they share one process; empty: the default
  std::string library;  // likewise
};

// At least one device; their addresses are checked. Throws UserError.
std::vector<DeviceConfig> load_devices(const CommonOptions& options);

}  // namespace ostravel::host
