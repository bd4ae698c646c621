// SPDX-License-Identifier: MIT
#include "host/watch/history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace ostravel::host::watch {
namespace {

using testing::DoubleEq;
using testing::Each;
using testing::ElementsAre;
using testing::Optional;
using Columns = std::vector<std::optional<double>>;

TEST(History, IsEmptyBeforeTheFirstValue) {
  EXPECT_THAT(History().columns(5, 4), Each(std::nullopt));
}

TEST(History, NewestSecondIsTheLastColumn) {
  History history;
  history.add(100, 1);
  history.add(101, 2);
  const auto columns = history.columns(101, 60);
  ASSERT_EQ(columns.size(), 60U);
  EXPECT_EQ(columns[57], std::nullopt);
  EXPECT_EQ(columns[58], 1);
  EXPECT_EQ(columns[59], 2);
}

TEST(History, LastValueOfASecondStands) {
  History history;
  history.add(7, 1);
  history.add(7, 5);
  EXPECT_EQ(history.columns(7, 60).back(), 5);
}

TEST(History, ValueStaysUntilTheNextOne) {
  History history;
  history.add(0, 3);
  history.add(4, 9);
  const auto columns = history.columns(5, 60);
  EXPECT_EQ(columns[54], 3);
  EXPECT_EQ(columns[57], 3);
  EXPECT_EQ(columns[58], 9);
  EXPECT_EQ(columns[59], 9) << "second 5 has no value of its own";
}

TEST(History, InterruptionIsAGap) {
  History history;
  history.add(0, 3);
  history.interrupt();
  EXPECT_EQ(history.columns(2, 60)[57], 3);
  EXPECT_EQ(history.columns(2, 60)[59], std::nullopt);
  history.add(3, 4);
  const auto columns = history.columns(3, 60);
  EXPECT_EQ(columns[56], 3);
  EXPECT_EQ(columns[57], std::nullopt);
  EXPECT_EQ(columns[58], std::nullopt);
  EXPECT_EQ(columns[59], 4);
}

TEST(History, ForgetsWhatIsOlderThanAMinute) {
  History history;
  for (Second i = 0; i < 200; ++i) {
    history.add(i, static_cast<double>(i));
  }
  const auto columns = history.columns(199, 60);
  EXPECT_EQ(columns.front(), 140);
  EXPECT_EQ(columns.back(), 199);
  EXPECT_THAT(history.columns(400, 60), Each(199)) << "no other value came, and nothing interrupted it";
}

TEST(History, LongSilenceLeavesNoOldValuesBehind) {
  History history;
  for (Second i = 0; i < 60; ++i) {
    history.add(i, 1);
  }
  history.interrupt();
  history.add(1000, 2);
  const auto columns = history.columns(1000, 60);
  EXPECT_EQ(columns.back(), 2);
  EXPECT_THAT(Columns(columns.begin(), columns.end() - 1), Each(std::nullopt));
}

TEST(History, ColumnOfSeveralSecondsIsTheirMean) {
  History history;
  for (Second i = 0; i < 60; ++i) {
    history.add(i, static_cast<double>(i % 10));
  }
  EXPECT_THAT(history.columns(59, 6), Each(Optional(DoubleEq(4.5))));
}

TEST(History, HugeNumbersAndInfinityDoNoHarm) {
  History history;
  const double most = std::numeric_limits<double>::max();
  history.add(0, most);
  history.add(1, -most);
  history.add(2, std::numeric_limits<double>::infinity());
  EXPECT_EQ(sparkline(history.columns(2, 60), Charset::Ascii).substr(57), "#_ ");
  EXPECT_THAT(history.columns(2, 1), ElementsAre(Optional(DoubleEq(0))));
}

TEST(Sparkline, GoesFromTheLowestToTheHighestValue) {
  EXPECT_EQ(sparkline({0, 1, 2, 3, 4, 5, 6, 7}, Charset::Utf8), "▁▂▃▄▅▆▇█");
  EXPECT_EQ(sparkline({7, std::nullopt, 0}, Charset::Utf8), "█ ▁");
  EXPECT_EQ(sparkline({0, 7}, Charset::Ascii), "_#");
}

TEST(Sparkline, ConstantValueIsALineAtTheBottom) {
  EXPECT_EQ(sparkline({5, 5, 5}, Charset::Utf8), "▁▁▁");
}

TEST(ChangeRate, CountsOverTenSeconds) {
  ChangeRate rate;
  for (Second i = 0; i < 20; ++i) {
    rate.add(i);
    rate.add(i);
  }
  EXPECT_DOUBLE_EQ(rate.per_second(19, 20), 2.0);
  EXPECT_DOUBLE_EQ(rate.per_second(24, 25), 1.0) << "five seconds without a change";
  EXPECT_DOUBLE_EQ(rate.per_second(40, 41), 0.0);
}

TEST(ChangeRate, FirstSecondsAreNotDividedByTen) {
  ChangeRate rate;
  rate.add(100);
  rate.add(101);
  EXPECT_DOUBLE_EQ(rate.per_second(101, 2), 1.0);
  EXPECT_DOUBLE_EQ(rate.per_second(101, 0), 2.0);
}

}  // namespace
}  // namespace ostravel::host::watch
