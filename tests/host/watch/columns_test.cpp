// SPDX-License-Identifier: MIT
#include "host/watch/columns.h"

#include <gtest/gtest.h>

namespace ostravel::host::watch {
namespace {

std::size_t taken(const Columns& columns) {
  std::size_t cells = 0;
  for (const auto width : {columns.tag, columns.type, columns.value, columns.quality, columns.age,
                           columns.rate, columns.trend}) {
    cells += width == 0 ? 0 : width + (cells == 0 ? 0 : Columns::kGap);
  }
  return cells;
}

TEST(Columns, AllFitOnEightyCells) {
  const auto columns = columns_for(80, 30, 6);
  EXPECT_GT(columns.trend, 0U);
  EXPECT_GT(columns.rate, 0U);
  EXPECT_GE(columns.tag, 16U);
  EXPECT_GE(columns.value, 10U);
  EXPECT_EQ(taken(columns), 80U);
}

TEST(Columns, NarrowScreensGiveUpTheLessNeeded) {
  EXPECT_EQ(columns_for(60, 30, 6).trend, 0U);
  EXPECT_GT(columns_for(60, 30, 6).quality, 0U);
  EXPECT_EQ(columns_for(48, 30, 6).type, 0U);
  EXPECT_EQ(columns_for(30, 30, 6).quality, 0U);
  EXPECT_GT(columns_for(30, 30, 6).value, 0U);
}

TEST(Columns, NeverTakeMoreThanThereIs) {
  for (std::size_t screen = 0; screen < 400; ++screen) {
    for (const std::size_t label : {0U, 5U, 40U, 300U}) {
      EXPECT_LE(taken(columns_for(screen, label, 8)), screen) << screen << " cells, names of " << label;
    }
  }
}

TEST(Columns, TrendSplitsTheMinuteEvenly) {
  for (std::size_t screen = 80; screen < 300; ++screen) {
    EXPECT_EQ(60 % columns_for(screen, 20, 6).trend, 0U) << screen;
  }
  EXPECT_EQ(columns_for(200, 20, 6).trend, 60U);
}

TEST(Columns, NamesGetNoMoreThanTheyNeed) {
  EXPECT_EQ(columns_for(200, 20, 6).tag, 20U);
  EXPECT_LT(columns_for(80, 300, 6).tag, 40U);
}

}  // namespace
}  // namespace ostravel::host::watch
