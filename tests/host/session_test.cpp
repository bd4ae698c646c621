// SPDX-License-Identifier: MIT
#include "host/session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/usererror.h"
#include "tests/host/fakeworld.h"

namespace ostravel::host {
namespace {

using testing::ElementsAre;

const Access kLevel{5, DT_INT, 0xFFFF, 1, 0, 1};

TEST(Session, BringsTheDeviceUpInTheCallingOrderAndClosesIt) {
  FakeWorld world;
  world.settings.table_position = 20;
  world.settings.station = 9;
  { const Session session(world.driver, world.settings); }
  EXPECT_THAT(world.fake().calls,
              ElementsAre("LinkSet", "LinkGet", "GetAttribute", "StartDevice 0 demo.project 20", "Init",
                          "GetInitCmd 0 9", "CheckInitCmd", "GetCloseCmd", "CloseDevice 0"));
}

TEST(Session, AddressGoesIntoTheParameterWords) {
  FakeWorld world;
  world.settings.address = "192.168.1.10";
  world.settings.station = 7;
  const Session session(world.driver, world.settings);
  const auto& words = world.fake().parameters;
  EXPECT_EQ(words[4], 10);
  EXPECT_EQ(words[5], 1);
  EXPECT_EQ(words[6], 0xA8C0);
  EXPECT_EQ(words[10], 7);
}

TEST(Session, WrongAddressIsRefused) {
  EXPECT_THROW(parse_address("plc"), UserError);
  EXPECT_THROW(parse_address("1.2.3"), UserError);
  EXPECT_THROW(parse_address("1.2.3.256"), UserError);
}

TEST(Session, SimulatedDeviceIsStartedAndClosedAsOne) {
  FakeWorld world;
  world.settings.offline = true;
  { const Session session(world.driver, world.settings); }
  EXPECT_THAT(world.fake().calls, testing::Contains("StartDevice 1 demo.project 0"));
  EXPECT_EQ(world.fake().calls.back(), "CloseDevice 1");
}

TEST(Session, TagDataBlockHasItsFieldsInPlace) {
  FakeWorld world;
  Session session(world.driver, world.settings);
  session.read(std::vector<Access>{{0x01020304, DT_DINT, 0x0506, 0x0708, 4, 1}});
  const auto& block = world.fake().requests[0].byDriverData;
  const std::vector<BYTE> bytes(block, block + 19);
  EXPECT_THAT(bytes, ElementsAre(4, 3, 2, 1, DT_DINT, 0, 0, 0, 0, 4, 0, 0, 0, 6, 5, 8, 7, 0, 0));
}

TEST(Session, ReadDeliversWordsAndStatusOfEachRecord) {
  FakeWorld world;
  world.fake().words[5] = {0x1234};
  Session session(world.driver, world.settings);
  const auto answer = session.read(std::vector<Access>{kLevel, {6, DT_INT, 0xFFFF, 1, 0, 1}});
  EXPECT_EQ(answer.outcome, Outcome::Served);
  EXPECT_THAT(answer.records[0].words, ElementsAre(0x1234));
  EXPECT_EQ(answer.records[0].error, 0);
  EXPECT_EQ(answer.records[0].status, 5);
  EXPECT_EQ(answer.records[1].error, 2);
  EXPECT_TRUE(answer.records[1].words.empty());
}

TEST(Session, AsksTheInputFilterAgainWhileItSaysThirteen) {
  FakeWorld world;
  world.fake().words[5] = {1};
  world.fake().not_ready = 3;
  Session session(world.driver, world.settings);
  world.fake().calls.clear();
  EXPECT_EQ(session.read(std::vector<Access>{kLevel}).outcome, Outcome::Served);
  EXPECT_THAT(world.fake().calls, ElementsAre("Output 1", "Input 1", "Input 1", "Input 1", "Input 1"));
}

TEST(Session, GivesUpAskingWhenItsPatienceEnds) {
  FakeWorld world;
  world.fake().not_ready = 1'000'000;
  Session session(world.driver, world.settings);
  session.set_patience(std::chrono::milliseconds(1));
  EXPECT_EQ(session.read(std::vector<Access>{kLevel}).outcome, Outcome::NotReady);
}

TEST(Session, TwoForTheWholeBatchIsNoData) {
  FakeWorld world;
  world.fake().loading = 1;
  Session session(world.driver, world.settings);
  EXPECT_EQ(session.read(std::vector<Access>{kLevel}).outcome, Outcome::NoData);
}

TEST(Session, BatchWhoseTagsHaveNoDataIsServedAllTheSame) {
  FakeWorld world;
  Session session(world.driver, world.settings);
  const auto answer = session.read(std::vector<Access>{kLevel});
  EXPECT_EQ(answer.outcome, Outcome::Served);
  EXPECT_EQ(answer.records[0].error, 2);
}

TEST(Session, FailedLoaderAnswerSkipsTheInputFilter) {
  FakeWorld world;
  world.fake().failed_loader = 1;
  Session session(world.driver, world.settings);
  world.fake().calls.clear();
  EXPECT_EQ(session.read(std::vector<Access>{kLevel}).outcome, Outcome::Failed);
  EXPECT_THAT(world.fake().calls, ElementsAre("Output 1"));
}

TEST(Session, ReinitialisesAfterATimeOut) {
  FakeWorld world;
  Session session(world.driver, world.settings);
  world.fake().calls.clear();
  session.reinitialise();
  EXPECT_THAT(world.fake().calls, ElementsAre("Timeout", "Init", "GetInitCmd 0 1", "CheckInitCmd"));
}

TEST(Session, WordWriteCarriesItsWords) {
  FakeWorld world;
  Session session(world.driver, world.settings);
  EXPECT_EQ(session.write({{5, DT_DINT, 3, 1, 0, 2}, {0x5678, 0x1234}, false}).outcome, Outcome::Served);
  const auto& request = world.fake().writes.at(0);
  EXPECT_EQ(request.stCmdType.byFunCode, 1);
  EXPECT_EQ(request.stCommand.stWORDWrite.wDataNo, 2);
  EXPECT_EQ(request.stCommand.stWORDWrite.wData[0], 0x5678);
  EXPECT_EQ(request.stCommand.stWORDWrite.wData[1], 0x1234);
}

TEST(Session, BitWriteCarriesItsBit) {
  FakeWorld world;
  Session session(world.driver, world.settings);
  session.write({{5, DT_BOOL, 0xFFFF, 1, 0, 1}, {}, true});
  const auto& request = world.fake().writes.at(0);
  EXPECT_EQ(request.stCmdType.byFunCode, 2);
  EXPECT_EQ(request.stCommand.stBitWrite.byData, 1);
}

TEST(Session, BatchMustHoldOneToThirtyOneRequests) {
  FakeWorld world;
  Session session(world.driver, world.settings);
  EXPECT_THROW(session.read({}), std::invalid_argument);
  EXPECT_THROW(session.read(std::vector<Access>(32, kLevel)), std::invalid_argument);
  EXPECT_NO_THROW(session.read(std::vector<Access>(31, kLevel)));
}

}  // namespace
}  // namespace ostravel::host
