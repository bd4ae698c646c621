// SPDX-License-Identifier: MIT
// browse: the project's tags as a tree with their types, arrays and values.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_browse_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
