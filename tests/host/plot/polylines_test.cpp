// SPDX-License-Identifier: MIT
#include "host/plot/polylines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/host/plot/seriesof.h"

namespace ostravel::host::plot {
namespace {

using testing::ElementsAre;

TEST(Polylines, FewPointsAreKeptAsTheyAre) {
  EXPECT_THAT(polylines(series_of("A", {1, 5, 3}), second(0), second(2), 10),
              ElementsAre(Polyline{{0, 1}, {5, 5}, {10, 3}}));
}

TEST(Polylines, AGapEndsALine) {
  EXPECT_THAT(polylines(series_of("A", {kGap, 1, 2, kGap, kGap, 3, kGap}), second(0), second(6), 6),
              ElementsAre(Polyline{{1, 1}, {2, 2}}, Polyline{{5, 3}}));
}

TEST(Polylines, OfAColumnFirstLowestHighestAndLastRemain) {
  EXPECT_THAT(polylines(series_of("A", {5, 4, 9, 2, 6, 7}), second(0), second(5), 1),
              ElementsAre(Polyline{{0, 5}, {0.4, 9}, {0.6, 2}, {1, 7}}));
}

TEST(Polylines, ManyPointsLoseNoPeak) {
  std::vector<double> values(100'000, 1.0);
  values[31'337] = 1000;
  values[77'777] = -1000;
  const auto lines = polylines(series_of("A", values), second(0), second(99'999), 200);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_LE(lines[0].size(), 800U);
  const auto [low, high] = std::minmax_element(lines[0].begin(), lines[0].end(),
                                               [](const auto& a, const auto& b) { return a.y < b.y; });
  EXPECT_EQ(low->y, -1000);
  EXPECT_EQ(high->y, 1000);
  EXPECT_NEAR(high->x, 31'337.0 / 99'999 * 200, 1e-6);
  EXPECT_TRUE(std::is_sorted(lines[0].begin(), lines[0].end(),
                             [](const auto& a, const auto& b) { return a.x < b.x; }));
}

TEST(Polylines, StepsHoldTheirValue) {
  auto series = series_of("A", {0, 1, 1, 0});
  series.stepped = true;
  EXPECT_THAT(polylines(series, second(0), second(3), 3),
              ElementsAre(Polyline{{0, 0}, {1, 0}, {1, 1}, {2, 1}, {3, 1}, {3, 0}}));
}

TEST(Polylines, WhatIsOutsideIsLeftOut) {
  EXPECT_THAT(polylines(series_of("A", {1, 2, 3, 4, 5}), second(1), second(3), 2),
              ElementsAre(Polyline{{0, 2}, {1, 3}, {2, 4}}));
}

}  // namespace
}  // namespace ostravel::host::plot
