// SPDX-License-Identifier: MIT
// Spans of time as people write them: 500ms, 2s, 1.5s, 3min.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace ostravel::plc {

inline constexpr std::chrono::milliseconds kLongestTimeSpan{24LL * 3600 * 1000};

// A number, which may have a fraction, and its unit without a blank between them. Nothing for anything else,
// and beyond kLongestTimeSpan. Fractions of a millisecond are cut off.
std::optional<std::chrono::milliseconds> parse_time_span(std::string_view text);

}  // namespace ostravel::plc
