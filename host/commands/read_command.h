// SPDX-License-Identifier: MIT
// read: the values of tags, once.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_read_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
