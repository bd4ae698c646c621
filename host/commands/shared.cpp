// SPDX-License-Identifier: MIT
#include "host/commands/shared.h"

#include <fmt/format.h>

#include "host/usererror.h"

namespace ostravel::host {

std::string status_text(const TagState& state) {
  return fmt::format("{}/{} {}", state.error, state.status, to_text_of_error(state.error));
}

const std::vector<std::string>& tag_columns() {
  static const std::vector<std::string> columns{"tag", "type", "value", "error", "status", "meaning"};
  return columns;
}

std::vector<nlohmann::json> tag_cells(const TagPoller& poller, std::size_t i) {
  const auto& tag = poller.tag(i);
  const auto& state = poller.state(i);
  return {tag.label,
          tag.selection.tag.type->name,
          state.error == 0 ? state.value : nlohmann::json(),
          state.error,
          state.status,
          to_text_of_error(state.error)};
}

int no_plc(const Devices& devices, const TagPoller& poller, std::chrono::milliseconds waited) {
  std::fflush(devices.output().stream());
  const auto time = waited.count() > 0 ? fmt::format(" in {} ms", waited.count()) : "";
  fmt::print(stderr, "ostravel-host: {}; check the address and that the PLC runs\n", poller.trouble(time));
  return kExitNoPlc;
}

}  // namespace ostravel::host
