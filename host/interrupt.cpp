// SPDX-License-Identifier: MIT
#include "host/interrupt.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <thread>

namespace ostravel::host {
namespace {

using Clock = std::chrono::steady_clock;

std::atomic<bool> asked_to_end{false};
static_assert(std::atomic<bool>::is_always_lock_free);
constexpr std::chrono::milliseconds kLongestNap{50};

void interrupt(int) {
  asked_to_end = true;
}

}  // namespace

void heed_interrupts() {
  std::signal(SIGINT, interrupt);
  std::signal(SIGTERM, interrupt);
}

bool interrupted() {
  return asked_to_end;
}

void sleep_unless_interrupted(std::chrono::milliseconds time) {
  for (const auto until = Clock::now() + time; !asked_to_end && Clock::now() < until;) {
    std::this_thread::sleep_for(std::min<Clock::duration>(kLongestNap, until - Clock::now()));
  }
}

}  // namespace ostravel::host
