// SPDX-License-Identifier: MIT
// How the programs here take their command line: the same --help, --version and exit codes in all of them,
// and one line on stderr for whatever is wrong with it.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "common/exitcodes.h"

namespace ostravel {

// Nothing when the program is to go on, else its exit code (help or the version was asked for, or a line was
// printed). Adds --version to the program, and to the help of it and its subcommands the exit codes that the
// program can end with; a footer that is there stays before them.
//
// With --option-table as the only argument it prints what optiontable.h says.
std::optional<int> parse_command_line(CLI::App& app, const char* program, int argc, const char* const* argv);

// A check for options that take an unsigned number: without it "-1" is taken for the largest there is. Leaves
// the help as it is.
std::string not_negative(const std::string& text);

// Which bit of Programs a name such as "ostravel-host" has; kEveryProgram, and so only the exit codes that
// all have, for another name.
Programs program_bit(std::string_view program);

// "ostravel-host 3.30.0"
std::string version_line(std::string_view program);

}  // namespace ostravel
