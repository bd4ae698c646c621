// SPDX-License-Identifier: MIT
// Moments as recordings write them: ISO 8601 with milliseconds, always in UTC, so that no hour is missing or
// comes twice where clocks are put forward and back.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace ostravel::host::record {

using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

Moment now();

// "2024-03-05T13:14:15.500Z"
std::string iso_text(Moment moment);

// Takes what iso_text writes, also with fewer or more decimals, a space in place of the T, and an offset such
// as +01:00; without Z or offset it is UTC.
std::optional<Moment> parse_iso(std::string_view text);

}  // namespace ostravel::host::record
