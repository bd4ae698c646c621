// SPDX-License-Identifier: MIT
// tag-names: the names of a project's tags, a line each, for shell completion. Hidden from the help.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_tag_names_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
