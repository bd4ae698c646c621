// SPDX-License-Identifier: MIT
// What commands say in the same words.
#pragma once

#include <chrono>
#include <string>

#include "host/config/devices.h"

namespace ostravel::host {

// "2/5 no data"
std::string status_text(const TagState& state);

// Says on stderr which device does not answer, after what is on standard output; returns kExitNoPlc. A time
// of 0 is not mentioned.
int no_plc(const Devices& devices, const TagPoller& poller, std::chrono::milliseconds waited);

}  // namespace ostravel::host
