// SPDX-License-Identifier: MIT
// An axis of time: ticks at round seconds, minutes, hours or days of a zone's clock.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "host/plot/series.h"

namespace ostravel::host::plot {

struct TimeTick {
  Moment time;
  std::string label;
};

struct TimeAxis {
  Moment begin;
  Moment end;  // later than begin
  std::vector<TimeTick> ticks;
  std::string zone;  // "UTC+01:00"
};

// East of Greenwich, where this process runs, at a moment.
std::chrono::minutes local_offset(Moment moment);

// Covers just the two moments; a span that is empty is widened to a second. At most the given number of
// ticks is made; none when no round time lies within.
TimeAxis time_axis(Moment begin, Moment end, int at_most, std::chrono::minutes offset);

inline constexpr int kWidestTimeLabel = 12;

}  // namespace ostravel::host::plot
