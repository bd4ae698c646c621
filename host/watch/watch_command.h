// SPDX-License-Identifier: MIT
// watch: tags as they change, on a terminal as a live table, else as lines.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_watch_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
