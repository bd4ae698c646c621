// SPDX-License-Identifier: MIT
// The commands of ostravel-tags, each in a file of its own. add_NAME_command adds a subcommand, which stores
// in run what is to be done when it was given; that returns an exit code and may throw UserError.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace ostravel::tags {

using CommandRunner = std::function<int()>;

void add_pack_command(CLI::App& app, CommandRunner& run);
void add_dump_command(CLI::App& app, CommandRunner& run);
void add_merge_command(CLI::App& app, CommandRunner& run);
void add_check_command(CLI::App& app, CommandRunner& run);
void add_diff_command(CLI::App& app, CommandRunner& run);

}  // namespace ostravel::tags
