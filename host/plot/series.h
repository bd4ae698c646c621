// SPDX-License-Identifier: MIT
// Values of a tag over time.
#pragma once

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "host/record/timestamp.h"

namespace ostravel::host::plot {

using record::Moment;

inline constexpr double kGap = std::numeric_limits<double>::quiet_NaN();

struct Point {
  Moment time;
  double value = kGap;  // what is not finite is a gap

  bool is_gap() const { return !std::isfinite(value); }
};

struct Series {
  std::string name;
  std::vector<Point> points;  // ascending in time
  bool stepped = false;       // holds its value until the next point, as true and false do
};

}  // namespace ostravel::host::plot
