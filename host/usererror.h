// SPDX-License-Identifier: MIT
// A failure that the user can mend: what() is one line that says what, where and how.
#pragma once

#include <stdexcept>

#include "common/exitcodes.h"

namespace ostravel::host {

struct UserError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

using ostravel::ExitCode;
using enum ostravel::ExitCode;

}  // namespace ostravel::host
