// SPDX-License-Identifier: MIT
// status: what a status code means, where it comes from and what helps.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_status_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
