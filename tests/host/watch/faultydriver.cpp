// SPDX-License-Identifier: MIT
// The fake driver, but FAULT="KIND" in the environment lets a call of the output filter go wrong, once some
// calls have gone well: abort, segv, exit, throw, print (a line on standard error) or hang.
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#define KORVALE_DRV_OutputFilterEx inner_output_filter
#include "tests/host/fakedriver.cpp"
#undef KORVALE_DRV_OutputFilterEx

namespace {

constexpr int kGoodCalls = 3;

void go_wrong(const std::string& kind) {
  if (kind == "abort") {
    std::abort();
  } else if (kind == "segv") {
    std::raise(SIGSEGV);
  } else if (kind == "exit") {
    std::exit(42);
  } else if (kind == "throw") {
    throw std::out_of_range("an index of the driver");
  } else if (kind == "print") {
    std::fputs("a warning of the driver\n", stderr);
  } else if (kind == "hang") {
    std::this_thread::sleep_for(std::chrono::hours(1));
  }
}

}  // namespace

EXPORTED FRAME_DATA KORVALE_DRV_OutputFilterEx(GUI_REQUEST* requests, int count) {
  static int calls = 0;
  const char* kind = std::getenv("FAULT");
  if (kind != nullptr && ++calls == kGoodCalls) {
    go_wrong(kind);
  }
  return inner_output_filter(requests, count);
}
