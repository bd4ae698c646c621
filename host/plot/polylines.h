// SPDX-License-Identifier: MIT
// What of a series is drawn when it has more points than there are columns: of each column the first, the
// lowest, the highest and the last one, so that no peak is lost.
#pragma once

#include <vector>

#include "host/plot/series.h"

namespace ostravel::host::plot {

struct Vertex {
  double x = 0;  // in columns, from 0 to their number
  double y = 0;  // the value
  bool operator==(const Vertex&) const = default;
};
using Polyline = std::vector<Vertex>;

// The series between begin and end, which are the edges of the first and last of that many columns. A gap in
// the series ends a line; a line may be a single vertex. A stepped series becomes horizontal and vertical
// lines.
std::vector<Polyline> polylines(const Series& series, Moment begin, Moment end, int columns);

}  // namespace ostravel::host::plot
