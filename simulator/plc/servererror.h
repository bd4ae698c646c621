// SPDX-License-Identifier: MIT
// Why the simulated PLC cannot serve.
#pragma once

#include <stdexcept>

namespace ostravel::plc {

// The port cannot be used; what() is one line that says why and what to do.
struct ServerError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace ostravel::plc
