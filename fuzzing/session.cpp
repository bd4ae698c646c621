// SPDX-License-Identifier: MIT
// Whole sessions of a runtime, online and offline, with an honest library: see support/session.h.
#include "fuzzing/support/session.h"

#include <cstdio>

#include "fuzzing/support/entry.h"

// What the driver prints goes nowhere.
int LLVMFuzzerInitialize(int*, char***) {
  if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
  fuzz::expect_working_sessions();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  fuzz::Library& library = fuzz::Library::installed();
  library.begin(nullptr);
  fuzz::Session session(input, library);
  session.run();
  return 0;
}
