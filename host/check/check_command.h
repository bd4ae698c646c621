// SPDX-License-Identifier: MIT
// check: whether each tag of a project fits the PLC, and if not, why.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_check_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
