// SPDX-License-Identifier: MIT
// A failure that the user can mend: what() is one line that says what, where and how.
#pragma once

#include <stdexcept>

namespace ostravel::host {

struct UserError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Exit codes of the tools of this folder.
enum ExitCode : int {
  kExitOk = 0,
  kExitValueFailed = 1,  // a value could not be read, or was not what it had to be
  kExitUsage = 2,        // wrong command line, a file that cannot be used
  kExitNoDriver = 3,     // the driver cannot be loaded or lacks an entry point
  kExitNoPlc = 4,        // no answer from the PLC in time
};

}  // namespace ostravel::host
