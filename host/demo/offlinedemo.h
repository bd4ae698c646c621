// SPDX-License-Identifier: MIT
// The demo without a PLC and without the communication library: the driver simulates the variables itself.
#pragma once

#include "host/demo/onlinedemo.h"
#include "host/demo/screen.h"

namespace ostravel::host {

void run_offline_demo(const DemoOptions& options, Screen& screen, Ledger& ledger);

}  // namespace ostravel::host
