// SPDX-License-Identifier: MIT
#include "host/watch/model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {
namespace {

using nlohmann::json;
using std::chrono::milliseconds;
using testing::IsEmpty;

TEST(Model, TagThatWasNeverReadHasNoValueAgeOrRate) {
  const auto model = model_of({{"A", "INT"}});
  EXPECT_EQ(model.row(0).value(), nullptr);
  EXPECT_EQ(model.row(0).error(), 13);
  EXPECT_EQ(model.row(0).age(at(9)), std::nullopt);
  EXPECT_EQ(model.rate(0, at(9)), std::nullopt);
  EXPECT_THAT(model.trend(0, at(9), 12), IsEmpty());
}

TEST(Model, AgeCountsFromTheLastDelivery) {
  auto model = model_of({{"A", "INT"}});
  deliver(model, 0, 5, 1);
  deliver(model, 0, 5, 3);
  EXPECT_EQ(model.row(0).age(at(3.25)), milliseconds(250));
  EXPECT_EQ(model.row(0).age(at(2)), milliseconds(0)) << "never negative";
}

TEST(Model, OnlyAnotherValueIsAChange) {
  auto model = model_of({{"A", "INT"}});
  for (int i = 0; i < 10; ++i) {
    deliver(model, 0, i / 5, i);
  }
  EXPECT_EQ(model.rate(0, at(9)), 0.1) << "0 to 1, once in ten seconds";
}

TEST(Model, FailedTagKeepsItsValueAndAges) {
  auto model = model_of({{"A", "INT"}});
  deliver(model, 0, 5, 0);
  model.take({0, 2, 5, {}}, at(4));
  EXPECT_EQ(model.row(0).value(), 5);
  EXPECT_FALSE(model.row(0).is_good());
  EXPECT_EQ(model.row(0).error(), 2);
  EXPECT_EQ(model.row(0).status(), 5);
  EXPECT_EQ(model.row(0).age(at(4)), milliseconds(4000));
  EXPECT_EQ(model.trend(0, at(5), 60).back(), std::nullopt);
}

TEST(Model, TroubleOfADeviceIsThatOfItsTagsAlone) {
  Model model({{"north/A", "INT", 0}, {"south/A", "INT", 1}}, {online("north"), online("south")}, kStart);
  deliver(model, 0, 1);
  deliver(model, 1, 1);
  model.take_trouble(1, 2, 5);
  EXPECT_TRUE(model.row(0).is_good());
  EXPECT_EQ(model.row(1).error(), 2);
}

TEST(Model, NumbersAndBooleansHaveATrend) {
  auto model = model_of({{"N", "INT"}, {"B", "BOOL"}, {"T", "STRING"}, {"L", "INT"}});
  deliver(model, 0, 7);
  deliver(model, 1, true);
  deliver(model, 2, "x");
  deliver(model, 3, json{1, 2});
  EXPECT_EQ(model.trend(0, at(0), 60).back(), 7);
  EXPECT_EQ(model.trend(1, at(0), 60).back(), 1);
  EXPECT_THAT(model.trend(2, at(0), 60), IsEmpty());
  EXPECT_THAT(model.trend(3, at(0), 60), IsEmpty());
}

TEST(Model, PauseIsAGapInTheTrend) {
  auto model = model_of({{"A", "INT"}});
  deliver(model, 0, 7, 0);
  model.take_pause();
  deliver(model, 0, 8, 3);
  EXPECT_EQ(model.trend(0, at(3), 60)[58], std::nullopt);
}

TEST(Model, VersionGrowsWithWhateverIsTaken) {
  auto model = model_of({{"A", "INT"}});
  const auto before = model.version();
  deliver(model, 0, 1);
  const auto delivered = model.version();
  model.take_state(0, online());
  EXPECT_LT(before, delivered);
  EXPECT_LT(delivered, model.version());
}

TEST(Model, KnowsTheWidestNameInCells) {
  const auto model = model_of({{"A", "INT"}, {"日本語", "STRING"}, {"ABCD", "INT"}});
  EXPECT_EQ(model.widest_label(), 6U);
  EXPECT_EQ(model.widest_type(), 6U);
}

}  // namespace
}  // namespace ostravel::host::watch
