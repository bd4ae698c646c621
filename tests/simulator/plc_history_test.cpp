// SPDX-License-Identifier: MIT
#include "simulator/plc/history.h"

#include <gtest/gtest.h>

#include <random>

namespace ostravel::plc {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(History, HoldsNothingAtFirst) {
  const History history;
  EXPECT_EQ(history.size(), 0U);
  EXPECT_FALSE(history.image(0, 0, 0));
}

TEST(History, TellsWhatEachCycleHeld) {
  History history;
  history.keep(0, Bytes{1, 2, 3});
  history.keep(1, Bytes{1, 9, 3});
  history.keep(2, Bytes{7, 9, 3});
  EXPECT_EQ(history.image(0, 0, 3), (Bytes{1, 2, 3}));
  EXPECT_EQ(history.image(1, 0, 3), (Bytes{1, 9, 3}));
  EXPECT_EQ(history.image(2, 0, 3), (Bytes{7, 9, 3}));
  EXPECT_EQ(history.image(0, 1, 1), Bytes{2});
  EXPECT_FALSE(history.image(3, 0, 1));
}

TEST(History, RefusesRangesOutsideTheMemory) {
  History history;
  history.keep(0, Bytes{1, 2, 3});
  EXPECT_EQ(history.image(0, 3, 0), Bytes{});
  EXPECT_FALSE(history.image(0, 3, 1));
  EXPECT_FALSE(history.image(0, 4, 0));
  EXPECT_FALSE(history.image(0, 1, 0xFFFFFFFFFFFFFFFF));
}

TEST(History, ForgetsTheOldestCycle) {
  History history(3);
  for (std::uint8_t cycle = 0; cycle < 5; ++cycle) history.keep(cycle, Bytes{cycle});
  EXPECT_EQ(history.size(), 3U);
  EXPECT_FALSE(history.image(1, 0, 1));
  EXPECT_EQ(history.image(2, 0, 1), Bytes{2});
  EXPECT_EQ(history.image(4, 0, 1), Bytes{4});
}

TEST(History, KeepsAThousandCyclesByDefault) {
  History history;
  for (unsigned cycle = 0; cycle < 1500; ++cycle)
    history.keep(cycle, Bytes{static_cast<std::uint8_t>(cycle)});
  EXPECT_EQ(history.size(), 1000U);
  EXPECT_EQ(history.image(500, 0, 1), Bytes{static_cast<std::uint8_t>(500)});
  EXPECT_FALSE(history.image(499, 0, 1));
}

TEST(History, ForgetsRatherThanOutgrowItsRoom) {
  History history(1000, 10'000);
  for (std::uint8_t cycle = 0; cycle < 10; ++cycle) history.keep(cycle, Bytes(3000, cycle));
  EXPECT_EQ(history.size(), 3U);  // the last image and two differences of a good 3,000 bytes each
  EXPECT_EQ(history.image(7, 0, 3000), Bytes(3000, 7));
}

TEST(History, RestoresAnyRangeOfAnyCycle) {
  std::mt19937 random(3);  // the same story every time
  constexpr std::size_t kSize = 500;
  History history(50);
  std::vector<Bytes> truth;
  Bytes memory(kSize);
  for (std::uint64_t cycle = 0; cycle < 200; ++cycle) {
    for (auto changes = random() % 40; changes > 0; --changes) {
      const std::size_t start = random() % kSize;
      for (std::size_t i = start; i < std::min(kSize, start + random() % 20); ++i) {
        memory[i] = static_cast<std::uint8_t>(random());
      }
    }
    history.keep(cycle, memory);
    truth.push_back(memory);
  }
  for (std::uint64_t cycle = 150; cycle < 200; ++cycle) {
    for (int i = 0; i < 20; ++i) {
      const auto from = static_cast<std::ptrdiff_t>(random() % kSize);
      const auto to =
          from + static_cast<std::ptrdiff_t>(random() % (kSize - static_cast<std::size_t>(from) + 1));
      const Bytes expected(truth[cycle].begin() + from, truth[cycle].begin() + to);
      ASSERT_EQ(history.image(cycle, static_cast<std::uint64_t>(from), expected.size()), expected);
    }
  }
}

}  // namespace
}  // namespace ostravel::plc
