// SPDX-License-Identifier: MIT
// How long the driver's entry points take, and how much of that the communication library does. What remains
// is the driver's own: if it ever waits for anything but the library, that shows here.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "host/driverlibrary.h"

namespace ostravel::plant {

struct EntryPointTimes {
  std::uint64_t calls = 0;
  std::chrono::nanoseconds longest{0};             // of all calls
  std::chrono::nanoseconds library_in_longest{0};  // what of it was the library's
  std::chrono::nanoseconds longest_own{
      0};               // longest without the library's part and what the machine withheld
  std::string slowest;  // the entry point with that remainder
};

// Puts a clock around every entry point with which a device is served. One driver a process; the library is
// that which the process has loaded, from its first use on.
void time_entry_points(host::DriverLibrary& driver);
const EntryPointTimes& entry_point_times();

}  // namespace ostravel::plant
