// SPDX-License-Identifier: MIT
// plot: recorded or live values as a chart in the terminal or in an SVG file.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_plot_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
