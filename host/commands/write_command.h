// SPDX-License-Identifier: MIT
// write: tags get values, which are read back.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_write_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
