// SPDX-License-Identifier: MIT
// Every data type through everything: PLC, library, driver, runtime, and back.
#include <gtest/gtest.h>

#include <thread>

#include "host/demo/plcview.h"
#include "host/demo/sampleplant.h"
#include "tests/endtoend/world.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

TEST(Values, EveryTypeIsDeliveredAsThePlcHoldsIt) {
  World world;
  world.plc().command("hold");
  const PlcView view(sample_sources());
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  std::size_t compared = 0;
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& selection = poller.selection(i);
    EXPECT_EQ(poller.state(i).error, 0) << selection.text;
    if (!is_known_limit(selection.text)) {
      EXPECT_EQ(view.of(selection, poller.state(i).value), world.held(selection.text)) << selection.text;
      ++compared;
    }
  }
  EXPECT_GT(compared, 70U);
}

TEST(Values, NumbersArriveAsTheSourcesDeclareThem) {
  World world;
  EXPECT_EQ(world.read("Values.Tiny"), -5);
  EXPECT_EQ(world.read("Values.Large"), -1234567890123456789);
  EXPECT_EQ(world.read("Values.LargeCount"), 12345678901234567890U);
  EXPECT_EQ(world.read("Values.Exact"), 2.718281828459045);
  EXPECT_EQ(world.read("Values.OldSpan"), 80000) << "S5TIME arrives in milliseconds";
  EXPECT_EQ(world.read("Values.Stamp"), json({2024, 3 + 5 * 256, 3 + 13 * 256, 14 + 15 * 256, 52501, 1883}))
      << "year, month and day, weekday (Tuesday is 3) and hour, minute and second, nanoseconds";
  EXPECT_EQ(world.read("Plant.Built"), json({231, 7, 11, 5, 1, 8, 30, 0, 0, 101, 205, 29}));
}

TEST(Values, EveryTypeIsWrittenAndReadBack) {
  World world;
  world.plc().command("hold");
  const PlcView view(sample_sources());
  ASSERT_EQ(world.read("Values.Flag"), true) << "writes need a device that serves";
  for (const auto& sample : sample_writes()) {
    const auto value = json::parse(sample.value);
    world.write(sample.tag, value);
    EXPECT_EQ(world.held(sample.tag), view.of(select(world.project(), sample.tag), value)) << sample.tag;
    if (!is_known_limit(sample.tag)) {
      EXPECT_EQ(world.read(sample.tag), value) << sample.tag;
    }
  }
}

TEST(Values, BitsOfAWordAreReadOneByOne) {
  World world;
  EXPECT_EQ(world.read("Values.Mask.%X0"), true) << "16#BEEF";
  EXPECT_EQ(world.read("Values.Mask.%X4"), false);
  EXPECT_EQ(world.read("Values.Mask.%X15"), true);
  EXPECT_EQ(world.read("Values.Wide.%X31"), true) << "16#DEADBEEF";
  EXPECT_EQ(world.read("Values.Wide.%X29"), false);
}

TEST(Values, OneBatchIsOneCycleOfThePlc) {
  World world({.tags = "Simulation.Cycle,UDINT,1,,1,1,1\nPlant.Live.Parts,UDINT,1,,1,1,2\n"
                       "Plant.Live.Code,WORD,1,,1,1,3\nPlant.Live.Message,STRING,24,,1,1,4\n"});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  std::uint64_t first = 0;
  std::uint64_t cycle = 0;
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(poller.poll(), LinkState::Online);
    cycle = poller.state(0).value.get<std::uint64_t>();
    first = i == 0 ? cycle : first;
    EXPECT_EQ(poller.state(1).value, cycle);
    EXPECT_EQ(poller.state(2).value, cycle & 0xFFFF);
    EXPECT_EQ(poller.state(3).value, "cycle " + std::to_string(cycle));
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_GT(cycle, first) << "the PLC stood still";
}

}  // namespace
}  // namespace ostravel::host
