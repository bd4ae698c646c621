// SPDX-License-Identifier: MIT
// describe: what the driver says of itself.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_describe_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
