// SPDX-License-Identifier: MIT
#include "host/record/duration.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace ostravel::host::record {
namespace {

constexpr std::array<std::pair<std::string_view, double>, 6> kUnits{
    {{"", 1}, {"ms", 1}, {"s", 1e3}, {"m", 60e3}, {"h", 3600e3}, {"d", 86400e3}}};
constexpr double kLongest = 365 * 86400e3;

std::string shortest_text(std::chrono::milliseconds time) {
  const auto count = time.count();
  return count % 1000 == 0 && count > 0 ? fmt::format("{}s", count / 1000) : fmt::format("{}ms", count);
}

}  // namespace

std::optional<std::chrono::milliseconds> parse_duration(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const auto unit = text.substr(static_cast<std::size_t>(end - text.data()));
  if (error != std::errc() || !std::isfinite(number)) {
    return std::nullopt;
  }
  for (const auto& [name, milliseconds] : kUnits) {
    const double time = number * milliseconds;
    if (name == unit && time >= 1 && time <= kLongest) {
      return std::chrono::milliseconds(std::llround(time));
    }
  }
  return std::nullopt;
}

CLI::Option* add_duration(CLI::App& app, const std::string& name, std::chrono::milliseconds& to,
                          const std::string& help) {
  auto* option = app.add_option_function<std::string>(
      name,
      [name, &to](const std::string& text) {
        const auto time = parse_duration(text);
        if (!time) {
          throw CLI::ValidationError(
              name,
              fmt::format("'{}' is no length of time from 1ms to 365d; write it like 500ms, 10s, 5m, 1h",
                          text));
        }
        to = *time;
      },
      help);
  option->type_name("TIME");
  if (to.count() > 0) {
    option->default_str(shortest_text(to));
  }
  return option;
}

}  // namespace ostravel::host::record
