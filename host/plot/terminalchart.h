// SPDX-License-Identifier: MIT
// A chart as lines of text for a terminal.
#pragma once

#include <string>
#include <vector>

#include "host/plot/chart.h"

namespace ostravel::host::plot {

struct TerminalOptions {
  int width = 80;        // of the lines, in characters
  int height = 16;       // of all panels together, in lines
  bool unicode = true;   // Braille patterns and line drawing; else ASCII
  bool colours = false;  // beside the letters, which always tell the series apart
};

// Title, legend, panels with their axis, and below them the axis of time. No line is wider than asked for, as
// long as there are at least 30 columns.
std::vector<std::string> draw(const Chart& chart, const TerminalOptions& options);

// Whether the locale's characters are those of Unicode.
bool locale_is_unicode();

}  // namespace ostravel::host::plot
