// SPDX-License-Identifier: MIT
// What commands say in the same words.
#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/config/devices.h"

namespace ostravel::host {

// "2/5 no data"
std::string status_text(const TagState& state);

// Columns of a row of data about a tag, and its cells: tag, type, value, error, status, meaning. The value is
// null unless this poll delivered it.
const std::vector<std::string>& tag_columns();
std::vector<nlohmann::json> tag_cells(const TagPoller& poller, std::size_t i);

// Says on stderr which device does not answer, after what is on standard output; returns kExitNoPlc. A time
// of 0 is not mentioned.
int no_plc(const Devices& devices, const TagPoller& poller, std::chrono::milliseconds waited);

}  // namespace ostravel::host
