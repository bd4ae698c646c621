// SPDX-License-Identifier: MIT
// A chart as an SVG file: no script, no outside font or style, and the series told apart by dashes and
// letters as well as by colours that colour-blind people can tell apart.
#pragma once

#include <string>

#include "host/plot/chart.h"

namespace ostravel::host::plot {

struct SvgOptions {
  int width = 960;
  int panel_height = 300;  // of the area with the lines
};

// Always well-formed, whatever is in names and titles.
std::string svg(const Chart& chart, const SvgOptions& options = {});

// Text as XML has it; what XML cannot hold becomes U+FFFD.
std::string xml_text(std::string_view text);

}  // namespace ostravel::host::plot
