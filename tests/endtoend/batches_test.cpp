// SPDX-License-Identifier: MIT
// Many tags, unknown tags, failing tags, two devices.
#include <gtest/gtest.h>

#include <fmt/format.h>

#include "host/files.h"
#include "tests/endtoend/world.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

TEST(Batches, HundredTagsAreReadInFour) {
  std::string tags;
  std::string source = "DATA_BLOCK \"Many\"\nVAR\n";
  for (int i = 0; i < 100; ++i) {
    tags += fmt::format("Many.V{},DINT,1,,1,1,{}\n", i, i + 1);
    source += fmt::format("V{} : DInt := {};\n", i, i * 1001 - 50000);
  }
  World world({.tags = tags, .source = source + "END_VAR\nBEGIN\nEND_DATA_BLOCK\n"});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  EXPECT_EQ(poller.batches(), 4U);
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(poller.state(static_cast<std::size_t>(i)).value, i * 1001 - 50000);
  }
  const auto before = World::statistics();
  ASSERT_EQ(poller.poll(), LinkState::Online);
  EXPECT_EQ(World::statistics().read_jobs - before.read_jobs, 4U) << "a batch is one job of the library";
}

TEST(Batches, UnknownTagHasNoDataAndTheOthersDo) {
  World world({.tags =
                   "Values.Small,INT,1,,1,1,1\nValues.Nothing,INT,1,,1,1,2\nNowhere.At.All,STRING,5,,1,1,3\n"
                   "Plant.Motors[9].Limit,INT,1,,1,1,4\nValues.Medium,DINT,1,,1,1,5\n"});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  EXPECT_EQ(poller.state(0).value, -12345);
  EXPECT_EQ(poller.state(1).error, 2);
  EXPECT_EQ(poller.state(2).error, 2);
  EXPECT_EQ(poller.state(3).error, 2);
  EXPECT_EQ(poller.state(4).value, -1234567890);
}

TEST(Batches, TagThatFailsInThePlcHasNoDataUntilItIsWellAgain) {
  World world;
  auto poller = world.poller({"Values.Small", "Values.Medium"});
  ASSERT_TRUE(World::online(poller));
  world.plc().command("fail Values.Small");
  ASSERT_EQ(poller.poll(), LinkState::Online);
  EXPECT_EQ(poller.state(0).error, 2);
  EXPECT_EQ(poller.state(1).error, 0);
  world.plc().command("heal Values.Small");
  ASSERT_EQ(poller.poll(), LinkState::Online);
  EXPECT_EQ(poller.state(0).error, 0);
}

// Deliberate: a write is answered with success whatever became of it.
TEST(Batches, WriteToAnUnknownTagIsAnsweredLikeAnyOther) {
  World world({.tags = "Values.Small,INT,1,,1,1,1\nValues.Nothing,INT,1,,1,1,2\n"});
  world.read("Values.Small");
  world.write("Values.Nothing", 1);
  EXPECT_EQ(world.read("Values.Small"), -12345) << "and the device goes on serving";
}

TEST(Batches, SameTagTwiceIsReadOnce) {
  World world;
  world.read("Values.Small");
  const auto before = World::statistics();
  const Access access{world.row("Values.Small"), DT_INT, 0xFFFF, 1, 0, 1};
  const auto answer = world.session().read(std::vector{access, access});
  EXPECT_EQ(answer.records.at(0).words, answer.records.at(1).words);
  EXPECT_EQ(World::statistics().items_read - before.items_read, 1U);
}

TEST(Batches, PollingLeavesNoAccessBehind) {
  World world;
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  for (int i = 0; i < 10; ++i) {
    ASSERT_EQ(poller.poll(), LinkState::Online);
  }
  EXPECT_EQ(World::statistics().live_accesses, 0U);
  EXPECT_EQ(World::statistics().double_frees, 0U);
}

TEST(Devices, TwoStationsAreServedSideBySide) {
  World world({.tags = "Values.Small,INT,1,,1,1,1\n"});
  PlcOptions options;
  options.program = PLC_PATH;
  options.sources = {world.scratch().write(
      "second.db", "DATA_BLOCK \"Values\"\nVAR\nSmall : Int := 222;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n")};
  options.listen = "127.0.0.2";
  options.port = world.plc().port();  // the stand-in has one port for all
  PlcProcess second(options);
  auto settings = world.settings();
  settings.address = "127.0.0.2";
  settings.station = 2;
  Session session(world.driver(), settings);
  Poller other(session, world.selections(), false);
  auto first = world.poller();
  ASSERT_TRUE(World::online(first));
  ASSERT_TRUE(World::online(other));
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(first.poll(), LinkState::Online);
    ASSERT_EQ(other.poll(), LinkState::Online);
    EXPECT_EQ(first.state(0).value, -12345);
    EXPECT_EQ(other.state(0).value, 222);
  }
  session.write(write_accesses(world.selections().at(0), false, false, 223).at(0));
  EXPECT_EQ(second.value("Values.Small"), 223);
  EXPECT_EQ(world.held("Values.Small"), -12345);
  // What happens to one does not touch the other.
  second.take_away();
  EXPECT_EQ(other.poll(), LinkState::Lost);
  EXPECT_EQ(first.poll(), LinkState::Online);
  EXPECT_TRUE(std::filesystem::exists(kSymbolFile));
  EXPECT_FALSE(std::filesystem::exists("/mnt/project/2_s71500_symbolic.ap"));
}

}  // namespace
}  // namespace ostravel::host
