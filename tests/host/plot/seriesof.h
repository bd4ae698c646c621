// SPDX-License-Identifier: MIT
// Series for tests: a value a second from a fixed moment on.
#pragma once

#include <string>
#include <vector>

#include "host/plot/series.h"

namespace ostravel::host::plot {

// 2024-03-05T13:14:15Z and so many seconds later.
inline Moment second(double number) {
  return Moment(std::chrono::milliseconds(1'709'644'455'000 + static_cast<long>(number * 1000)));
}

inline Series series_of(const std::string& name, const std::vector<double>& values) {
  Series series{name, {}, false};
  for (std::size_t i = 0; i < values.size(); ++i) {
    series.points.push_back({second(static_cast<double>(i)), values[i]});
  }
  return series;
}

}  // namespace ostravel::host::plot
