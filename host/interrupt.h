// SPDX-License-Identifier: MIT
// Ctrl+C and termination as a request to end at the next good moment.
#pragma once

#include <chrono>

namespace ostravel::host {

// From now on SIGINT and SIGTERM only set interrupted().
void heed_interrupts();
bool interrupted();

// Returns early once interrupted.
void sleep_unless_interrupted(std::chrono::milliseconds time);

}  // namespace ostravel::host
