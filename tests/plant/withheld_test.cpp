// SPDX-License-Identifier: MIT
#include "tests/plant/withheld.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>

namespace ostravel::plant {
namespace {

using std::chrono::milliseconds;

// Two busy threads on one processor have to share it.
TEST(Withheld, IsTheTimeForWhichAnotherThreadRuns) {
  if (!std::ifstream("/proc/self/schedstat")) GTEST_SKIP() << "this kernel does not count it";
  cpu_set_t before;
  ASSERT_EQ(sched_getaffinity(0, sizeof before, &before), 0);
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(sched_getcpu(), &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  const auto own = withheld_from_this_thread();
  Withheld withheld;
  withheld.look_at(getpid());
  const auto all = withheld.total();
  std::atomic<bool> done = false;
  std::thread other([&done] {
    while (!done) {
    }
  });
  const auto until = std::chrono::steady_clock::now() + milliseconds(300);
  while (std::chrono::steady_clock::now() < until) {
  }
  withheld.look_at(getpid());
  done = true;
  other.join();
  sched_setaffinity(0, sizeof before, &before);
  EXPECT_GT(withheld_from_this_thread() - own, milliseconds(50));
  EXPECT_GT(withheld.total() - all, milliseconds(150));
}

TEST(Withheld, IsNoneWhileNothingIsToBeDone) {
  const auto before = withheld_from_this_thread();
  std::this_thread::sleep_for(milliseconds(50));
  EXPECT_GE(withheld_from_this_thread(), before);
  Withheld withheld;
  withheld.look_at(-1);  // no such process
  EXPECT_EQ(withheld.total(), std::chrono::nanoseconds(0));
}

}  // namespace
}  // namespace ostravel::plant
