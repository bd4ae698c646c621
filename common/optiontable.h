// SPDX-License-Identifier: MIT
// A program's commands and options as data, for what is made from them: manual pages and shell completion.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace ostravel {

// JSON, ended by a line feed:
//
//   program = {name, version, exit_codes: [{code, meaning}], command members}
//   command = {name, help, footer, options: [option], commands: [command]}
//   option  = {names: ["-h", "--help"], positional, value, default, choices, help, required, repeatable}
//
// names is empty for a positional argument. value is the placeholder in the help, such as FILE, and empty for
// a flag; choices are the words that an option can only have. What is hidden from the help is left out.
std::string option_table(const CLI::App& app, std::string_view program);

}  // namespace ostravel
