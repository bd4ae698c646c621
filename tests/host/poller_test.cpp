// SPDX-License-Identifier: MIT
#include "host/poller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/tagscsv.h"
#include "tests/host/fakeworld.h"

namespace ostravel::host {
namespace {

using nlohmann::json;
using testing::ElementsAre;

Project project_of(const std::string& rows) {
  return project_from_csv("name,type,count,first,elements,device,id\n" + rows, "t");
}

// As many INT tags, all with a value.
Project many(FakeWorld& world, int count) {
  std::string rows;
  for (int i = 0; i < count; ++i) {
    rows += "T" + std::to_string(i) + ",INT,1,,1,1,1\n";
    world.fake().words[static_cast<std::uint32_t>(i)] = {static_cast<WORD>(i)};
  }
  return project_of(rows);
}

std::vector<Selection> all(const Project& project) {
  std::vector<Selection> selections;
  for (std::uint32_t row = 0; row < project.tags.size(); ++row) {
    selections.push_back(select_row(project, row));
  }
  return selections;
}

std::vector<std::uint32_t> rows_of_last_batch(FakeWorld& world) {
  std::vector<std::uint32_t> rows;
  for (const auto& request : world.fake().requests) {
    rows.push_back(request.byDriverData[0]);
  }
  return rows;
}

TEST(Poller, MoreTagsThanABatchHoldsAreReadInSeveral) {
  FakeWorld world;
  const auto project = many(world, 70);
  Session session(world.driver, world.settings);
  Poller poller(session, all(project), false);
  world.fake().calls.clear();
  EXPECT_EQ(poller.poll(), LinkState::Online);
  EXPECT_THAT(world.fake().calls,
              ElementsAre("Output 31", "Input 31", "Output 31", "Input 31", "Output 8", "Input 8"));
  for (std::size_t i = 0; i < 70; ++i) {
    EXPECT_EQ(poller.state(i).value, i);
    EXPECT_EQ(poller.state(i).error, 0);
  }
}

TEST(Poller, TellsAfterEachBatchHowManyAreDone) {
  FakeWorld world;
  const auto project = many(world, 70);
  Session session(world.driver, world.settings);
  Poller poller(session, all(project), false);
  std::vector<std::size_t> done;
  poller.after_batch([&done](std::size_t batches) { done.push_back(batches); });
  poller.poll();
  EXPECT_THAT(done, ElementsAre(1, 2, 3));
}

TEST(Poller, StampIsReadWithEveryBatch) {
  FakeWorld world;
  const auto project = many(world, 40);
  Session session(world.driver, world.settings);
  Poller poller(session, all(project), false, select(project, "T7"));
  EXPECT_EQ(poller.poll(), LinkState::Online);
  EXPECT_EQ(poller.batches(), 2U);
  EXPECT_EQ(poller.state(0).stamp, 7);
  EXPECT_EQ(poller.state(39).stamp, 7);
  EXPECT_EQ(poller.state(39).value, 39);
}

TEST(Poller, BatchThatIsNotServedIsAskedForAgain) {
  FakeWorld world;
  const auto project = many(world, 40);
  Session session(world.driver, world.settings);
  session.set_patience(std::chrono::milliseconds(1));
  Poller poller(session, all(project), false);
  poller.poll();
  world.fake().loading = 1;
  world.fake().calls.clear();
  poller.poll();
  // The driver would answer another batch with the values of the one that it still has.
  EXPECT_EQ(poller.poll(), LinkState::Online);
  EXPECT_THAT(world.fake().calls,
              ElementsAre("Output 31", "Input 31", "Output 31", "Input 31", "Output 9", "Input 9"));
}

TEST(Poller, SaysWhetherItConnectsOrLoads) {
  FakeWorld world;
  const auto project = many(world, 1);
  Session session(world.driver, world.settings);
  session.set_patience(std::chrono::milliseconds(0));
  Poller poller(session, all(project), false);
  world.fake().not_ready = 1;
  EXPECT_EQ(poller.poll(), LinkState::Connecting);
  EXPECT_EQ(poller.state(0).error, 13);
  world.fake().loading = 1;
  EXPECT_EQ(poller.poll(), LinkState::Loading);
  EXPECT_EQ(poller.state(0).error, 2);
  EXPECT_EQ(poller.poll(), LinkState::Online);
}

TEST(Poller, LostConnectionIsFollowedByInitialisationUntilTheDeviceServes) {
  FakeWorld world;
  const auto project = many(world, 1);
  Session session(world.driver, world.settings);
  Poller poller(session, all(project), false);
  poller.poll();
  world.fake().lost = true;
  EXPECT_EQ(poller.poll(), LinkState::Lost);
  EXPECT_EQ(poller.state(0).error, 2);
  EXPECT_EQ(poller.state(0).value, 0) << "the last value stays";
  world.fake().calls.clear();
  EXPECT_EQ(poller.poll(), LinkState::Failed);
  EXPECT_THAT(world.fake().calls,
              ElementsAre("Output 1", "Timeout", "Init", "GetInitCmd 0 1", "CheckInitCmd"));
  EXPECT_EQ(poller.reinitialisations(), 1U);
  EXPECT_EQ(poller.poll(), LinkState::Online);
}

TEST(Poller, PausesGrowFromFailureToFailureUpToFiveSeconds) {
  FakeWorld world;
  const auto project = many(world, 1);
  Session session(world.driver, world.settings);
  Poller poller(session, all(project), false);
  world.fake().failed_loader = 10;
  std::vector<long> pauses;
  for (int i = 0; i < 9; ++i) {
    poller.poll();
    pauses.push_back(poller.pause().count());
  }
  EXPECT_THAT(pauses, ElementsAre(100, 200, 400, 800, 1600, 3200, 5000, 5000, 5000));
  world.fake().failed_loader = 0;
  poller.poll();
  EXPECT_EQ(poller.pause().count(), 0);
}

TEST(Poller, TextsOfAnArrayBecomeOneValue) {
  FakeWorld world;
  const auto project = project_of("L,INT,1,,1,1,1\nN,STRING,4,1,3,1,2\n");
  world.fake().words[0] = {1};
  world.fake().words[1] = {'x', 0};
  Session session(world.driver, world.settings);
  Poller poller(session, all(project), false);
  EXPECT_EQ(poller.poll(), LinkState::Online);
  EXPECT_EQ(poller.state(1).value, json({"x", "x", "x"}));
  EXPECT_EQ(poller.state(1).deliveries, 1U);
}

// A narrow text once came back char-paired because a wide one had been at its place in an earlier batch.
TEST(Poller, TextsThatCanBeWideLeadBatchesOfTheirOwn) {
  FakeWorld world;
  const auto project =
      project_of("A,STRING,20,,1,1,1\nB,INT,1,,1,1,2\nC,STRING,254,,1,1,3\nD,INT,1,,1,1,4\n");
  world.fake().words = {{0, {'a', 0}}, {1, {2}}, {2, {'c', 0}}, {3, {4}}};
  Session session(world.driver, world.settings);
  Poller poller(session, all(project), false);
  EXPECT_EQ(poller.poll(), LinkState::Online);
  EXPECT_EQ(poller.batches(), 2U);
  EXPECT_THAT(rows_of_last_batch(world), ElementsAre(2));
  EXPECT_EQ(poller.state(0).value, "a");
  EXPECT_EQ(poller.state(1).value, 2);
  EXPECT_EQ(poller.state(2).value, "c");
  EXPECT_EQ(poller.state(3).value, 4);
}

TEST(Poller, NoTextIsFirstOfSeveral) {
  FakeWorld world;
  const auto project = project_of("A,STRING,20,,1,1,1\nB,STRING,8,,1,1,2\nC,INT,1,,1,1,3\n");
  Session session(world.driver, world.settings);
  Poller mixed(session, all(project), false);
  mixed.poll();
  EXPECT_THAT(rows_of_last_batch(world), ElementsAre(2, 1, 0));
  Poller texts(session, {select(project, "A"), select(project, "B")}, false);
  EXPECT_EQ(texts.batches(), 2U);
}

}  // namespace
}  // namespace ostravel::host
