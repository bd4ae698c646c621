// SPDX-License-Identifier: MIT
#include "host/config/deviceconfig.h"

#include "host/commands/command.h"
#include "host/config/description.h"
#include "host/files.h"
#include "host/session.h"
#include "host/usererror.h"

namespace ostravel::host {

std::vector<DeviceConfig> load_devices(const CommonOptions& options) {
  if (!options.config.empty()) {
    auto devices = parse_description(read_file(options.config), options.config);
    for (auto& device : devices) {
      device.offline = device.offline || options.offline;
      device.driver = options.driver.empty() ? device.driver : options.driver;
      device.library = options.library.empty() ? device.library : options.library;
    }
    return devices;
  }
  if (options.project.empty()) {
    throw UserError("--project FILE is required; make one with ostravel-tags pack");
  }
  parse_address(options.address);
  return {{"", options.project, options.address, options.station, options.offline, options.driver,
           options.library}};
}

}  // namespace ostravel::host
