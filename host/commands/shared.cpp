// SPDX-License-Identifier: MIT
#include "host/commands/shared.h"

#include <fmt/format.h>

#include "host/usererror.h"

namespace ostravel::host {

std::string status_text(const TagState& state) {
  return fmt::format("{}/{} {}", state.error, state.status, to_text_of_error(state.error));
}

int no_plc(const Devices& devices, const TagPoller& poller, std::chrono::milliseconds waited) {
  std::fflush(devices.output().stream());
  const auto time = waited.count() > 0 ? fmt::format(" in {} ms", waited.count()) : "";
  fmt::print(stderr, "ostravel-host: {}; check the address and that the PLC runs\n", poller.trouble(time));
  return kExitNoPlc;
}

}  // namespace ostravel::host
