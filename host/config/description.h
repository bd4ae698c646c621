// SPDX-License-Identifier: MIT
// A description of several devices in TOML:
//
//   [defaults]                  what is not given below; any of these may be left out
//   library = "libAGLink40_x64.so"
//   driver = "libostravel.so"
//   project = "line.project"
//
//   [[device]]
//   name = "press"              of letters, digits, '_', '-' and '.'; required and unique
//   project = "press.project"
//   address = "192.168.0.11"
//   station = 1                 0 to 255; each device that is not offline needs one of its own
//   offline = false
//
// Files are looked for from the folder of the description. Driver and library are the same for all devices,
// as all are in one process.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/config/deviceconfig.h"

namespace ostravel::host {

// Throws UserError with one line "file:line:column: what and how to mend it".
std::vector<DeviceConfig> parse_description(std::string_view text, const std::string& file);

}  // namespace ostravel::host
