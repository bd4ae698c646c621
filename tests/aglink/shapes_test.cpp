// SPDX-License-Identifier: MIT
// Calls of all shapes reach the library whole: when it is loaded, when the call itself loads it, and when
// several threads make that first call at once.
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <ostream>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "aglink/AGLink40.h"
#include "tests/aglink/shapecalls.h"
#include "tests/aglink/world.h"

namespace {

enum class When { Loaded, FirstCall, FirstCallsTogether };

void PrintTo(When when, std::ostream* out) {
  const char* const names[] = {"loaded", "first call", "first calls together"};
  *out << names[static_cast<int>(when)];
}

void callFromSeveralThreads(const ShapeCall& shape) {
  constexpr std::size_t kThreads = 8;
  std::atomic<std::size_t> ready = 0;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      ++ready;
      while (ready < kThreads) std::this_thread::yield();
      shape.make();
    });
  }
  for (std::thread& thread : threads) thread.join();
}

class ShapeTest : public LibraryTest, public testing::WithParamInterface<std::tuple<ShapeCall, When>> {};

std::string caseName(const testing::TestParamInfo<std::tuple<ShapeCall, When>>& info) {
  const char* const endings[] = {"Loaded", "FirstCall", "FirstCallsTogether"};
  return std::get<ShapeCall>(info.param).name +
         std::string(endings[static_cast<int>(std::get<When>(info.param))]);
}

INSTANTIATE_TEST_SUITE_P(Forwarding, ShapeTest,
                         testing::Combine(testing::ValuesIn(shapeCalls()),
                                          testing::Values(When::Loaded, When::FirstCall,
                                                          When::FirstCallsTogether)),
                         caseName);

}  // namespace

TEST_P(ShapeTest, ReachesTheLibraryWhole) {
  const auto& [shape, when] = GetParam();
  if (when == When::FirstCallsTogether) {
    constexpr int kRounds = 20;
    for (int round = 0; round < kRounds; ++round) {
      linesPrintedBy([&] { callFromSeveralThreads(shape); });
      EXPECT_GE(unloadAll(kLibraryName), 1);
    }
    return;
  }
  linesPrintedBy([&] {
    if (when == When::Loaded) {
      ASSERT_EQ(LoadDll(), 1);
    }
    shape.make();
  });
  EXPECT_EQ(unloadAll(kLibraryName), 1);  // the call did reach the library, and loaded it once at most
}
