// SPDX-License-Identifier: MIT
// One device of the driver, opened and closed through its entry points. Its connection threads do not run by
// themselves: a target decides when.
#pragma once

#include "driver/driver.h"

namespace fuzz {

class Device {
 public:
  // project is a file's name.
  Device(char* project, DWORD position, BYTE simulated);
  // Closes it and takes away what a close leaves behind on purpose.
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  DWORD* handle() const { return handle_; }
  GData& data() const { return *device_of(handle_); }

 private:
  DWORD* handle_ = nullptr;
};

// The state that devices share becomes that of a fresh program.
void reset_shared_state();

// Threads that the driver has started and that have not run yet. Running them here leaves nothing to chance.
// May end as fuzz::run says.
void run_connection_threads();
// Whether a thread can be started at all.
void let_threads_start(bool start);

}  // namespace fuzz
