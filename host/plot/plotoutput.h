// SPDX-License-Identifier: MIT
// Where a chart goes: a terminal, an SVG file, or its values as rows.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "host/format.h"
#include "host/plot/chart.h"
#include "host/plot/plotoptions.h"
#include "host/plot/terminalchart.h"

namespace ostravel::host::plot {

// Throws UserError for a time that is none.
ChartOptions chart_options(const PlotOptions& options, const std::vector<Series>& series);

// What fits the terminal that the stream leads to; 80 columns and 24 lines when it leads to none. Colours
// only on a terminal and unless NO_COLOR is set.
TerminalOptions terminal_options(std::FILE* out, const PlotOptions& options, std::size_t series);

// The chart of the series wherever the options want it; with JSON or CSV the points, as rows of time, tag and
// value. Throws UserError.
void put_out(std::FILE* out, const std::vector<Series>& series, const PlotOptions& options, Format format);

}  // namespace ostravel::host::plot
