// SPDX-License-Identifier: MIT
// An axis of numbers: from one round number to another, with ticks at 1, 2 or 5 times a power of ten.
#pragma once

#include <string>
#include <vector>

namespace ostravel::host::plot {

struct ValueAxis {
  double low = 0;   // the first tick
  double high = 1;  // the last one
  std::vector<double> ticks;
  std::vector<std::string> labels;  // of each tick, all with the same decimals
};

// Covers both values with at least 2 and at most the given number of ticks (3 or more). A range that is empty
// is widened.
ValueAxis value_axis(double low, double high, int at_most);

// A value as a legend has it: six digits at most, none of them an idle zero.
std::string value_text(double value);

}  // namespace ostravel::host::plot
