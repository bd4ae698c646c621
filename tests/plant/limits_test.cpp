// SPDX-License-Identifier: MIT
// Where the driver shows as good what is not the tag's value, because its contract with the runtime says so.
// Each is pinned, so that nobody has to find it out on a panel.
#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <thread>

#include "tests/endtoend/world.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

std::string program(const std::string& variables) {
  return "DATA_BLOCK \"Line\"\nVAR\n" + variables + "END_VAR\nBEGIN\nEND_DATA_BLOCK\n";
}

class Limits : public testing::Test {
 protected:
  Limits() { std::filesystem::remove(kSymbolFile); }

  // The world with one program downloaded in the place of another, and the device online again.
  static void download(World& world, Poller& poller, const std::string& variables) {
    const auto file = world.scratch().write("next.db", program(variables));
    ASSERT_TRUE(world.plc().command("download " + file).contains("downloaded"));
    ASSERT_EQ(poller.poll(), LinkState::Lost) << "a download is never taken for the old program";
    ASSERT_TRUE(World::online(poller));
  }
};

TEST_F(Limits, VariableThatWasMovedIsReadWhereItIsNow) {
  World world({.tags = "Line.Speed,DINT,1,,1,1,1\n", .source = program("Speed : DInt := 7;\n")});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  download(world, poller, "Before : LReal := 1.5;\nSpeed : DInt := 8;\n");
  EXPECT_EQ(poller.state(0).value, 8);
}

// The runtime alone knows the tag's type, and the driver shows the variable's bits as that.
TEST_F(Limits, VariableOfAnotherTypeShowsItsBits) {
  World world({.tags = "Line.Speed,DINT,1,,1,1,1\nLine.Count,DINT,1,,1,1,2\n",
               .source = program("Speed : DInt := 7;\nCount : DInt := 7;\n")});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  download(world, poller, "Speed : Real := 1.5;\nCount : Int := -1;\n");
  EXPECT_EQ(poller.state(0).error, 0);
  EXPECT_EQ(poller.state(0).value, std::bit_cast<std::int32_t>(1.5F));
  EXPECT_EQ(poller.state(1).error, 0);
  EXPECT_EQ(poller.state(1).value, 65535) << "a narrower variable comes without its sign";
}

TEST_F(Limits, ArrayThatHasShrunkShowsZerosBehindItsEnd) {
  World world(
      {.tags = "Line.Levels,INT,4,0,1,1,1\n", .source = program("Levels : Array[0..3] of Int := [4(5)];\n")});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  download(world, poller, "Levels : Array[0..1] of Int := [6, 7];\n");
  EXPECT_EQ(poller.state(0).error, 0);
  EXPECT_EQ(poller.state(0).value, json::parse("[6,7,0,0]"));
}

// A batch stays the one to be answered until it is. A runtime that gives up on it asks for the next one only
// after a time-out, which forgets it.
TEST_F(Limits, BatchInThePlaceOfOneThatIsNotAnsweredYetGetsItsValues) {
  World world({.tags = "Line.First,INT,1,,1,1,1\nLine.Second,INT,1,,1,1,2\n",
               .source = program("First : Int := 11;\nSecond : Int := 22;\n")});
  const auto first = read_accesses(world.selections().at(0), false);
  const auto second = read_accesses(world.selections().at(1), false);
  world.session().set_patience(std::chrono::milliseconds(0));
  world.plc().command("delay 50ms");  // not connected at once
  ASSERT_EQ(world.session().read(first).outcome, Outcome::NotReady);
  auto answer = world.session().read(second);
  for (int i = 0; i < 2000 && answer.outcome != Outcome::Served; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    answer = world.session().read(second);
  }
  ASSERT_EQ(answer.outcome, Outcome::Served);
  EXPECT_EQ(answer.records.at(0).words, Words{11}) << "of the batch that was asked for before";
  EXPECT_EQ(world.session().read(second).records.at(0).words, Words{22});
}

TEST_F(Limits, TimeOutForgetsABatchThatIsNotAnsweredYet) {
  World world({.tags = "Line.First,INT,1,,1,1,1\nLine.Second,INT,1,,1,1,2\n",
               .source = program("First : Int := 11;\nSecond : Int := 22;\n")});
  const auto first = read_accesses(world.selections().at(0), false);
  world.session().set_patience(std::chrono::milliseconds(0));
  world.plc().command("delay 50ms");  // not connected at once
  ASSERT_NE(world.session().read(first).outcome, Outcome::Served);
  world.session().reinitialise();
  world.plc().command("delay 0ms");
  EXPECT_EQ(world.read("Line.Second"), 22);
}

}  // namespace
}  // namespace ostravel::host
