// SPDX-License-Identifier: MIT
#include "symbolic/published.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <type_traits>

#include "symbolic/symbolsloader.h"

namespace {

static_assert(!std::is_copy_constructible_v<Published<bool>>);
static_assert(!std::is_copy_assignable_v<Published<bool>>);
// The loader's state is a single byte.
static_assert(sizeof(Published<SymbolsLoader::loader_status_>) == 1);

TEST(Published, StartsWithTheTypesZeroOrTheValueGiven) {
  EXPECT_EQ(Published<int>(), 0);
  EXPECT_FALSE(Published<bool>());
  EXPECT_EQ(Published<int>(7), 7);
}

TEST(Published, GivesBackWhatWasAssignedLast) {
  Published<int> value = 1;
  value = 2;
  value = 3;
  const int read = value;
  EXPECT_EQ(read, 3);
}

TEST(Published, ShowsWhatWasWrittenBeforeIt) {
  for (int round = 0; round < 200; ++round) {
    std::string text;
    Published<bool> ready = false;
    std::thread writer([&] {
      text = "written before the flag, and long enough to live on the heap";
      ready = true;
    });
    while (!ready) std::this_thread::yield();
    EXPECT_EQ(text.size(), 60U);
    writer.join();
  }
}

}  // namespace
