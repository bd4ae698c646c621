// SPDX-License-Identifier: MIT
// Gives the terminal back as it was, however the program ends: by itself, by exit() or abort() somewhere in a
// library, or by a fault. Only what cannot be caught (SIGKILL) leaves it as it is.
#pragma once

#include <string>

namespace ostravel::host::watch {

// One at a time. Holds back what is written to standard error while it lives, if that is a terminal too, and
// prints it afterwards: messages would otherwise be drawn over.
class TerminalGuard {
 public:
  // Takes the terminal's modes as those to come back to. farewell is written last: the sequences that leave
  // the alternate screen and show the cursor.
  TerminalGuard(int terminal, const std::string& farewell);
  TerminalGuard(const TerminalGuard&) = delete;
  TerminalGuard& operator=(const TerminalGuard&) = delete;
  // Prints what was held back. The terminal itself must have been given back by whoever took it.
  ~TerminalGuard();
};

}  // namespace ostravel::host::watch
