// SPDX-License-Identifier: MIT
#include "host/watch/history.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace ostravel::host::watch {
namespace {

constexpr std::array<std::string_view, 8> kBlocks{"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr std::array<std::string_view, 8> kAsciiBlocks{"_", ".", "-", "~", "=", "+", "*", "#"};

}  // namespace

void History::add(Second second, double value) {
  if (last_) {
    const auto from = std::max(*last_ + 1, second - kSeconds + 1);
    const double between = interrupted_ ? kNothing : at(*last_);
    for (Second i = from; i < second; ++i) {
      at(i) = between;
    }
  }
  at(second) = value;
  last_ = second;
  interrupted_ = false;
}

std::optional<double> History::value_of(Second second, Second now) const {
  if (!last_ || second < 0 || second <= now - kSeconds || second <= *last_ - kSeconds) {
    return std::nullopt;
  }
  if (second > *last_ && interrupted_) {
    return std::nullopt;
  }
  const double value = values_[static_cast<std::size_t>(std::min(second, *last_) % kSeconds)];
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::vector<std::optional<double>> History::columns(Second now, std::size_t columns) const {
  std::vector<std::optional<double>> means(std::min<std::size_t>(columns, kSeconds));
  const auto count = static_cast<Second>(means.size());
  for (Second column = 0; column < count; ++column) {
    double sum = 0;
    int values = 0;
    for (auto i = column * kSeconds / count; i < (column + 1) * kSeconds / count; ++i) {
      if (const auto value = value_of(now - kSeconds + 1 + i, now)) {
        // Running mean, since a sum of large numbers could overflow.
        ++values;
        sum += *value / values - sum / values;
      }
    }
    if (values > 0) {
      means[static_cast<std::size_t>(column)] = sum;
    }
  }
  return means;
}

std::string sparkline(const std::vector<std::optional<double>>& columns, Charset charset) {
  std::optional<double> low;
  std::optional<double> high;
  for (const auto& value : columns) {
    if (value) {
      low = std::min(low.value_or(*value), *value);
      high = std::max(high.value_or(*value), *value);
    }
  }
  const auto& blocks = charset == Charset::Utf8 ? kBlocks : kAsciiBlocks;
  std::string line;
  for (const auto& value : columns) {
    if (!value) {
      line += ' ';
      continue;
    }
    // Halved, since the distance of two numbers can be more than a number can be.
    const double span = *high / 2 - *low / 2;
    const double part = span > 0 ? (*value / 2 - *low / 2) / span : 0;
    const auto level = static_cast<std::size_t>(std::lround(part * static_cast<double>(blocks.size() - 1)));
    line += blocks[std::min(level, blocks.size() - 1)];
  }
  return line;
}

void ChangeRate::add(Second second) {
  const auto slot = static_cast<std::size_t>(second % kSeconds);
  if (seconds_[slot] != second) {
    seconds_[slot] = second;
    counts_[slot] = 0;
  }
  ++counts_[slot];
}

double ChangeRate::per_second(Second now, Second watched) const {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < counts_.size(); ++i) {
    if (seconds_[i] > now - kSeconds && seconds_[i] <= now) {
      sum += counts_[i];
    }
  }
  return static_cast<double>(sum) / static_cast<double>(std::clamp<Second>(watched, 1, kSeconds));
}

}  // namespace ostravel::host::watch
