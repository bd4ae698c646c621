// SPDX-License-Identifier: MIT
// The command line of all programs, under the name that the tools here call it.
#pragma once

#include "common/commandline.h"

namespace ostravel::host {

using ostravel::not_negative;
using ostravel::parse_command_line;

}  // namespace ostravel::host
