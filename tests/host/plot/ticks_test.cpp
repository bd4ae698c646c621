// SPDX-License-Identifier: MIT
#include "host/plot/ticks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace ostravel::host::plot {
namespace {

using testing::ElementsAre;

TEST(ValueAxis, TicksAreRound) {
  EXPECT_THAT(value_axis(0, 100, 6).labels, ElementsAre("0", "20", "40", "60", "80", "100"));
  EXPECT_THAT(value_axis(4.006, 6.197, 6).labels, ElementsAre("4.0", "4.5", "5.0", "5.5", "6.0", "6.5"));
  EXPECT_THAT(value_axis(-30, 25, 5).labels, ElementsAre("-40", "-20", "0", "20", "40"));
  EXPECT_THAT(value_axis(0, 0.0003, 4).labels, ElementsAre("0.0000", "0.0001", "0.0002", "0.0003"));
}

TEST(ValueAxis, EmptyRangeIsWidened) {
  EXPECT_THAT(value_axis(5, 5, 3).labels, ElementsAre("4.5", "5.0", "5.5"));
  EXPECT_THAT(value_axis(0, 0, 3).labels, ElementsAre("-1", "0", "1"));
}

TEST(ValueAxis, LargeNumbersAreShort) {
  EXPECT_THAT(value_axis(0, 2e9, 3).labels, ElementsAre("0", "1e+09", "2e+09"));
}

TEST(ValueAxis, CoversAnyRangeWithFewTicks) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> exponent(-300, 300);
  for (int i = 0; i < 2000; ++i) {
    const double low = std::pow(10, exponent(random)) * (i % 2 == 0 ? 1 : -1);
    const double high = low + std::abs(low) * std::pow(10, exponent(random) / 30);
    const int most = 3 + i % 10;
    const auto axis = value_axis(low, high, most);
    ASSERT_LE(axis.low, low) << low << " to " << high;
    ASSERT_GE(axis.high, std::min(high, 1e300) - std::abs(high) * 1e-9) << low << " to " << high;
    ASSERT_LE(axis.ticks.size(), static_cast<std::size_t>(most));
    ASSERT_GE(axis.ticks.size(), 2U);
    ASSERT_EQ(axis.labels.size(), axis.ticks.size());
  }
}

TEST(ValueAxis, LimitsOfDoublesAreNoTrouble) {
  const auto most = std::numeric_limits<double>::max();
  EXPECT_GE(value_axis(-most, most, 5).ticks.size(), 2U);
  EXPECT_GE(value_axis(1e15, std::nextafter(1e15, 2e15), 5).ticks.size(), 2U);
  EXPECT_GE(value_axis(0, std::numeric_limits<double>::denorm_min(), 5).ticks.size(), 2U);
}

TEST(ValueText, HasSixDigits) {
  EXPECT_EQ(value_text(5), "5");
  EXPECT_EQ(value_text(99.7261475), "99.7261");
  EXPECT_EQ(value_text(std::nan("")), "-");
}

}  // namespace
}  // namespace ostravel::host::plot
