// SPDX-License-Identifier: MIT
#include "host/watch/planner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

// The parts that are due at a moment.
std::vector<std::size_t> all_at(Planner& planner, double second) {
  std::vector<std::size_t> parts;
  while (const auto part = planner.next(at(second))) {
    parts.push_back(*part);
  }
  return parts;
}

TEST(Planner, RoundAsksForEachPartOnce) {
  Planner planner(3, milliseconds(500));
  EXPECT_THAT(all_at(planner, 0), ElementsAre(0, 1, 2));
  EXPECT_THAT(all_at(planner, 0.4), IsEmpty());
  EXPECT_EQ(planner.rounds(), 1U);
  EXPECT_EQ(planner.due(), at(0.5));
  EXPECT_THAT(all_at(planner, 0.5), ElementsAre(0, 1, 2));
  EXPECT_EQ(planner.rounds(), 2U);
}

TEST(Planner, VisiblePartsComeFirst) {
  Planner planner(4, milliseconds(500));
  planner.set_visible({2, 3});
  EXPECT_THAT(all_at(planner, 0), ElementsAre(2, 3, 0, 1));
}

TEST(Planner, PartThatComesIntoSightIsPolledAtOnce) {
  Planner planner(10, milliseconds(500));
  planner.set_visible({0});
  EXPECT_EQ(planner.next(at(0)), 0U);
  EXPECT_EQ(planner.next(at(0)), 1U);
  planner.set_visible({0, 7});
  EXPECT_EQ(planner.next(at(0.1)), 7U);
  EXPECT_EQ(planner.next(at(0.1)), 2U);
}

TEST(Planner, PartThatWasJustPolledIsNotPolledAgainForComingIntoSight) {
  Planner planner(4, milliseconds(500));
  all_at(planner, 0);
  planner.set_visible({3});
  EXPECT_THAT(all_at(planner, 0.1), IsEmpty());
}

TEST(Planner, PartPolledBeforeTheLastIntervalIs) {
  Planner planner(100, milliseconds(500));
  EXPECT_EQ(planner.next(at(0)), 0U);
  EXPECT_EQ(planner.next(at(0.6)), 1U);
  planner.set_visible({0});
  EXPECT_EQ(planner.next(at(0.7)), 0U);
}

TEST(Planner, InALongRoundVisiblePartsComeInBetween) {
  Planner planner(100, milliseconds(500));
  planner.set_visible({0});
  std::vector<std::size_t> parts;
  for (int i = 0; i < 12; ++i) {
    parts.push_back(planner.next(at(i * 0.1)).value());
  }
  EXPECT_THAT(parts, ElementsAre(0, 1, 2, 3, 4, 0, 5, 6, 7, 8, 0, 9));
  EXPECT_EQ(planner.rounds(), 0U);
}

TEST(Planner, EndlessScrollingStillEndsTheRound) {
  Planner planner(10, milliseconds(500));
  int asked = 0;
  for (std::size_t i = 0; planner.rounds() == 0 && i < 100; ++i) {
    planner.set_visible({i % 10});
    asked += planner.next(at(0.01)) ? 1 : 0;
  }
  EXPECT_LE(asked, 20);
  EXPECT_EQ(planner.rounds(), 1U);
}

TEST(Planner, RoundTimeIsFromItsFirstPartToItsEnd) {
  Planner planner(2, milliseconds(500));
  planner.next(at(1));
  planner.next(at(1.2));
  EXPECT_EQ(planner.next(at(1.3)), std::nullopt);
  EXPECT_EQ(planner.round_time(), milliseconds(300));
}

TEST(Planner, MissedIntervalsAreNotMadeUpFor) {
  Planner planner(1, milliseconds(500));
  all_at(planner, 0);
  EXPECT_THAT(all_at(planner, 60), ElementsAre(0));
  EXPECT_THAT(all_at(planner, 60.4), IsEmpty());
}

TEST(Planner, ShorterIntervalTakesEffectAtOnce) {
  Planner planner(1, milliseconds(60'000));
  all_at(planner, 0);
  planner.set_interval(milliseconds(100));
  EXPECT_THAT(all_at(planner, 0.1), ElementsAre(0));
}

TEST(Planner, NoPartsAreNothingToDo) {
  Planner planner(0, milliseconds(500));
  EXPECT_EQ(planner.next(at(0)), std::nullopt);
}

}  // namespace
}  // namespace ostravel::host::watch
