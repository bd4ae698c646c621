// SPDX-License-Identifier: MIT
#include "host/check/progress.h"

#include <gtest/gtest.h>

#include "tests/host/scratch.h"

namespace ostravel::host::check {
namespace {

using namespace std::chrono_literals;

// A progress whose time stands still unless it is moved.
struct Shown {
  Scratch scratch;
  std::FILE* file = std::fopen(scratch.path("out").c_str(), "w");
  Progress::Clock::time_point now{};
  Progress progress;

  explicit Shown(bool terminal) : progress(file, terminal, [this] { return now; }) {}
  ~Shown() { std::fclose(file); }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;

  std::string after(Progress::Clock::duration time, std::size_t done) {
    now += time;
    progress.show("checked " + std::to_string(done) + " of 100");
    return scratch.read("out");
  }
};

TEST(Progress, SaysNothingInTheFirstSecond) {
  Shown shown(false);
  EXPECT_EQ(shown.after(999ms, 1), "");
  EXPECT_EQ(shown.after(1ms, 2), "ostravel-host: checked 2 of 100\n");
}

TEST(Progress, IsALineEveryFiveSecondsWhereNobodyCanRewriteIt) {
  Shown shown(false);
  shown.after(1s, 10);
  EXPECT_EQ(shown.after(4999ms, 20), "ostravel-host: checked 10 of 100\n");
  EXPECT_EQ(shown.after(1ms, 30), "ostravel-host: checked 10 of 100\nostravel-host: checked 30 of 100\n");
}

TEST(Progress, IsRewrittenOnATerminalAndGoneInTheEnd) {
  Shown shown(true);
  shown.after(1s, 10);
  EXPECT_EQ(shown.after(200ms, 20),
            "\rostravel-host: checked 10 of 100\033[K\rostravel-host: checked 20 of 100\033[K");
  shown.progress.clear();
  EXPECT_TRUE(shown.scratch.read("out").ends_with("\033[K\r\033[K"));
}

}  // namespace
}  // namespace ostravel::host::check
