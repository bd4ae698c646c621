// SPDX-License-Identifier: MIT
// Time for which threads were ready to run and the machine let others run instead, as the kernel counts it.
// On a machine with too much to do it explains delays that are nobody's fault, and limits are for what
// remains.
#pragma once

#include <sys/types.h>
#include <chrono>
#include <map>

namespace ostravel::plant {

// Of the calling thread so far; cheap. 0 where the kernel does not tell.
std::chrono::nanoseconds withheld_from_this_thread();

// Of all threads of some processes so far. Threads that end are remembered with what was last seen of them.
class Withheld {
 public:
  void look_at(pid_t process);
  std::chrono::nanoseconds total() const;

 private:
  std::map<pid_t, std::chrono::nanoseconds> threads_;
};

}  // namespace ostravel::plant
