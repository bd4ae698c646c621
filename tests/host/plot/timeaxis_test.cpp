// SPDX-License-Identifier: MIT
#include "host/plot/timeaxis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/plot/seriesof.h"

namespace ostravel::host::plot {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::vector<std::string> labels(double seconds, int at_most, std::chrono::minutes offset = 0min) {
  std::vector<std::string> found;
  for (const auto& tick : time_axis(second(0), second(seconds), at_most, offset).ticks) {
    found.push_back(tick.label);
  }
  return found;
}

TEST(TimeAxis, TicksAreRoundTimes) {
  EXPECT_THAT(labels(0.5, 3), ElementsAre("13:14:15.000", "13:14:15.200", "13:14:15.400"));
  EXPECT_THAT(labels(20, 5), ElementsAre("13:14:15", "13:14:20", "13:14:25", "13:14:30", "13:14:35"));
  EXPECT_THAT(labels(600, 3), ElementsAre("13:15", "13:20"));
  EXPECT_THAT(labels(6 * 3600, 4), ElementsAre("14:00", "16:00", "18:00"));
  EXPECT_THAT(labels(2 * 86400, 5), ElementsAre("03-06 00:00", "03-06 12:00", "03-07 00:00", "03-07 12:00"));
  EXPECT_THAT(labels(20 * 86400, 4), ElementsAre("03-07", "03-14", "03-21"));
  EXPECT_THAT(labels(120.0 * 86400, 5), ElementsAre("04-01", "05-01", "06-01", "07-01"));
  EXPECT_THAT(labels(800.0 * 86400, 4), ElementsAre("2025-01-01", "2026-01-01"));
}

TEST(TimeAxis, TicksAreRoundOnTheClockOfTheZone) {
  EXPECT_THAT(labels(6 * 3600, 3, 90min), ElementsAre("15:00", "18:00"));
  EXPECT_EQ(time_axis(second(0), second(1), 3, 90min).zone, "UTC+01:30");
  EXPECT_EQ(time_axis(second(0), second(1), 3, -5h).zone, "UTC-05:00");
  EXPECT_EQ(time_axis(second(0), second(1), 3, 0min).zone, "UTC");
}

TEST(TimeAxis, TicksLieWithinAndAreNeverTooMany) {
  for (double seconds = 0.001; seconds < 1e10; seconds *= 3) {
    for (const int most : {1, 2, 5, 10}) {
      const auto axis = time_axis(second(0), second(seconds), most, 60min);
      EXPECT_LE(axis.ticks.size(), static_cast<std::size_t>(most)) << seconds;
      for (const auto& tick : axis.ticks) {
        EXPECT_GE(tick.time, axis.begin);
        EXPECT_LE(tick.time, axis.end);
        EXPECT_LE(tick.label.size(), static_cast<std::size_t>(kWidestTimeLabel));
      }
    }
  }
}

TEST(TimeAxis, EmptySpanIsWidened) {
  const auto axis = time_axis(second(0), second(0), 3, 0min);
  EXPECT_EQ(axis.end - axis.begin, 1s);
}

}  // namespace
}  // namespace ostravel::host::plot
