// SPDX-License-Identifier: MIT
#include "tools/progress.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace ostravel::tags {
namespace {

using namespace std::chrono_literals;

// What is written while rows go by, this long for each look at the clock.
std::string written(bool terminal, std::chrono::milliseconds between_looks, int looks) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* out = open_memstream(&text, &size);
  RowProgress::Clock::time_point now;
  {
    RowProgress progress("a.csv", out, terminal, [&now] { return now; });
    for (int look = 0; look < looks; ++look) {
      now += between_looks;
      for (std::size_t row = 0; row < RowProgress::kRowsBetweenLooks; ++row) {
        progress.step();
      }
    }
  }
  std::fclose(out);
  std::string result(text, size);
  std::free(text);
  return result;
}

TEST(RowProgress, IsSilentInTheFirstSecond) {
  EXPECT_EQ(written(true, 10ms, 99), "");
}

TEST(RowProgress, RewritesItsLineOnATerminalAndLeavesNothing) {
  EXPECT_EQ(
      written(true, 600ms, 3),
      "\r\x1B[Kostravel-tags: a.csv: 2048 rows read\r\x1B[Kostravel-tags: a.csv: 3072 rows read\r\x1B[K");
}

TEST(RowProgress, WritesALineNowAndThenElsewhere) {
  EXPECT_EQ(written(false, 1s, 9), "ostravel-tags: a.csv: 5120 rows read\n");
}

}  // namespace
}  // namespace ostravel::tags
