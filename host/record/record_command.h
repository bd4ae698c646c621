// SPDX-License-Identifier: MIT
// record: tags to a CSV file, at an interval.
#pragma once

#include "host/commands/command.h"

namespace ostravel::host {

void add_record_command(CLI::App& app, const CommonOptions& common, CommandRunner& run);

}  // namespace ostravel::host
