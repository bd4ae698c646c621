// SPDX-License-Identifier: MIT
#include "host/config/deviceconfig.h"

#include "host/commands/command.h"
#include "host/session.h"
#include "host/usererror.h"

namespace ostravel::host {

std::vector<DeviceConfig> load_devices(const CommonOptions& options) {
  if (options.project.empty()) {
    throw UserError("--project FILE is required; make one with ostravel-tags pack");
  }
  parse_address(options.address);
  return {{"", options.project, options.address, options.station, options.offline, options.driver,
           options.library}};
}

}  // namespace ostravel::host
