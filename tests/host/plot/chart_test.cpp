// SPDX-License-Identifier: MIT
#include "host/plot/chart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/usererror.h"
#include "tests/host/plot/seriesof.h"

namespace ostravel::host::plot {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(Chart, AllSeriesShareAPanelUnlessStacked) {
  const std::vector<Series> series{series_of("A", {1, 2}), series_of("B", {10, 20})};
  const Chart together(series, {});
  EXPECT_THAT(together.panels(), ElementsAre(ElementsAre(0, 1)));
  EXPECT_EQ(together.values(0, 5).high, 20);
  ChartOptions options;
  options.stacked = true;
  const Chart stacked(series, options);
  EXPECT_THAT(stacked.panels(), ElementsAre(ElementsAre(0), ElementsAre(1)));
  EXPECT_EQ(stacked.values(0, 5).high, 2);
}

TEST(Chart, AGapIsWhereNoSeriesOfThePanelHasValues) {
  const std::vector<Series> series{series_of("A", {1, kGap, kGap, kGap, 2}),
                                   series_of("B", {1, 1, kGap, 1, 2})};
  EXPECT_THAT(Chart(series, {}).gaps(0), ElementsAre(Pair(second(1), second(3))));
  ChartOptions options;
  options.stacked = true;
  const Chart stacked(series, options);
  EXPECT_THAT(stacked.gaps(0), ElementsAre(Pair(second(0), second(4))));
}

TEST(Chart, BeforeTheFirstValueAndAfterTheLastIsNoGap) {
  const std::vector<Series> series{series_of("A", {kGap, 1, 2, kGap})};
  EXPECT_THAT(Chart(series, {}).gaps(0), IsEmpty());
}

TEST(Chart, SummaryIsOfTheTimeShown) {
  const std::vector<Series> series{series_of("A", {100, 2, 5, 3, -100})};
  ChartOptions options;
  options.begin = second(1);
  options.end = second(3);
  const Chart chart(series, options);
  EXPECT_EQ(chart.summary(0).values, 3U);
  EXPECT_EQ(chart.summary(0).last, 3);
  EXPECT_EQ(chart.summary(0).low, 2);
  EXPECT_EQ(chart.summary(0).high, 5);
  EXPECT_EQ(chart.values(0, 5).high, 5);
}

TEST(Chart, NothingToShowIsAnError) {
  const std::vector<Series> series{series_of("A", {kGap, kGap})};
  EXPECT_THROW(Chart(series, {}), UserError);
  ChartOptions options;
  options.begin = second(100);
  options.end = second(200);
  const std::vector<Series> values{series_of("A", {1, 2})};
  EXPECT_THROW(Chart(values, options), UserError);
}

TEST(Chart, LettersGoOnAsNumbers) {
  EXPECT_EQ(letter_of(0), "A");
  EXPECT_EQ(letter_of(25), "Z");
  EXPECT_EQ(letter_of(26), "27");
}

}  // namespace
}  // namespace ostravel::host::plot
