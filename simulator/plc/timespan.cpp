// SPDX-License-Identifier: MIT
#include "simulator/plc/timespan.h"

#include <array>
#include <charconv>
#include <utility>

namespace ostravel::plc {

std::optional<std::chrono::milliseconds> parse_time_span(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, double>, 3> kUnits{{{"ms", 1}, {"s", 1e3}, {"min", 6e4}}};
  double number = 0;
  const char* const end = text.data() + text.size();
  // Without an exponent, which would let "1e9s" pass for a span of time.
  const auto [rest, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (error != std::errc() || text.starts_with('-')) return std::nullopt;
  const std::string_view unit(rest, static_cast<std::size_t>(end - rest));
  for (const auto& [name, milliseconds] : kUnits) {
    const double total = number * milliseconds;
    if (unit != name || !(total <= static_cast<double>(kLongestTimeSpan.count()))) continue;
    return std::chrono::milliseconds(static_cast<std::int64_t>(total));
  }
  return std::nullopt;
}

}  // namespace ostravel::plc
