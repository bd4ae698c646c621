// SPDX-License-Identifier: MIT
#include "host/plot/ticks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ostravel::host::plot {
namespace {

constexpr double kLargestPlain = 1e7;
constexpr int kMostDecimals = 6;

double next_nice(double step) {
  const double power = std::pow(10.0, std::floor(std::log10(step) + 1e-9));
  const double head = step / power;
  return (head < 1.5 ? 2 : head < 3.5 ? 5 : 10) * power;
}

std::string tick_label(double value, double step) {
  const double largest = std::max(std::abs(value), step);
  const int decimals = static_cast<int>(std::max(0.0, -std::floor(std::log10(step) + 1e-9)));
  if (largest >= kLargestPlain || decimals > kMostDecimals) {
    // As many digits as it takes to tell two ticks apart.
    const int digits = static_cast<int>(std::ceil(std::log10(largest / step))) + 1;
    return fmt::format("{:.{}g}", value, std::clamp(digits, 1, 17));
  }
  return fmt::format("{:.{}f}", value == 0 ? 0.0 : value, decimals);
}

}  // namespace

ValueAxis value_axis(double low, double high, int at_most) {
  if (!(high > low)) {
    const double room = low == 0 ? 1 : std::abs(low) * 0.1;
    low -= room;
    high += room;
  }
  // Limits of doubles themselves would overflow on the way; nothing is lost by staying away from them.
  constexpr double kLimit = 1e300;
  low = std::clamp(low, -kLimit, kLimit);
  high = std::clamp(high, -kLimit, kLimit);
  // Where doubles have no more digits to tell ticks apart, there is nothing to see either.
  const double finest = std::max({std::abs(low) * 1e-13, std::abs(high) * 1e-13, 1e-290});
  double step = std::pow(10.0, std::floor(std::log10(std::max(high - low, finest) / 10)));
  const auto ticks_with = [&](double width) { return std::ceil(high / width) - std::floor(low / width) + 1; };
  while (ticks_with(step) > std::max(at_most, 3)) {
    step = next_nice(step);
  }
  ValueAxis axis;
  const double first = std::floor(low / step);
  const auto count = static_cast<int>(ticks_with(step));
  for (int i = 0; i < count; ++i) {
    axis.ticks.push_back((first + i) * step);
    axis.labels.push_back(tick_label(axis.ticks.back(), step));
  }
  axis.low = axis.ticks.front();
  axis.high = axis.ticks.back();
  return axis;
}

std::string value_text(double value) {
  return std::isfinite(value) ? fmt::format("{:.6g}", value) : "-";
}

}  // namespace ostravel::host::plot
