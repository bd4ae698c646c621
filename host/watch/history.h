// SPDX-License-Identifier: MIT
// What a number did in the last minute, one value a second, and how often a value changed of late. Seconds
// are counted by the caller from whatever moment it likes; they never go back.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "host/watch/cells.h"

namespace ostravel::host::watch {

using Second = std::int64_t;

class History {
 public:
  static constexpr Second kSeconds = 60;

  History() { values_.fill(kNothing); }

  // The last value of a second stands. Seconds between two values have the former one.
  void add(Second second, double value);
  // There is no value from here on, until the next add.
  void interrupt() { interrupted_ = true; }

  // The last minute in that many columns, the newest at the end: the mean of each column's seconds, nothing
  // where there was no value. columns is at most kSeconds.
  std::vector<std::optional<double>> columns(Second now, std::size_t columns) const;

 private:
  static constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
  double& at(Second second) { return values_[static_cast<std::size_t>(second % kSeconds)]; }
  std::optional<double> value_of(Second second, Second now) const;

  std::array<double, kSeconds> values_;
  std::optional<Second> last_;  // second of the newest value
  bool interrupted_ = false;
};

// A character for each column, from the lowest to the highest value; blanks where there is none.
std::string sparkline(const std::vector<std::optional<double>>& columns, Charset charset);

// Counts changes over the last ten seconds.
class ChangeRate {
 public:
  static constexpr Second kSeconds = 10;

  void add(Second second);
  // A second; watched is for how many seconds there was anything to count, at least 1.
  double per_second(Second now, Second watched) const;

 private:
  std::array<std::uint32_t, kSeconds> counts_{};
  std::array<Second, kSeconds> seconds_{};  // to which each count belongs
};

}  // namespace ostravel::host::watch
