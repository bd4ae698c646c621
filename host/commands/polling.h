// SPDX-License-Identifier: MIT
// The wait of a command for its tags, with what is to be said meanwhile.
#pragma once

#include <chrono>

#include "host/config/devices.h"

namespace ostravel::host {

// TagPoller::poll_all, which says on stderr how far it has come once it takes longer than a second.
bool poll_all(TagPoller& poller, std::chrono::milliseconds timeout);

}  // namespace ostravel::host
