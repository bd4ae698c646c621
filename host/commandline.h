// SPDX-License-Identifier: MIT
// How the tools here take their command line: one line on stderr for whatever is wrong with it.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>

namespace ostravel::host {

// Nothing when the tool is to go on, else its exit code (help was asked for, or a line was printed).
std::optional<int> parse_command_line(CLI::App& app, const char* tool, int argc, const char* const* argv);

}  // namespace ostravel::host
