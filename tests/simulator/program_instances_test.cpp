// SPDX-License-Identifier: MIT
// Instances of the function blocks and types that sources declare and no data block of theirs uses.
#include <gmock/gmock.h>

#include <algorithm>

#include "program_support.h"
#include "simulator/program/paths.h"

namespace ostravel::plc {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> variables(std::string_view text, bool instances = true) {
  LoadOptions options;
  options.instances = instances;
  std::vector<std::string> paths;
  for_each_leaf(load_text(text, "test.scl", options).blocks, [&](const Leaf& leaf) {
    paths.push_back(leaf.path);
    return true;
  });
  return paths;
}

constexpr std::string_view kTypeAndBlock = R"(
TYPE "Tank" VERSION : 0.1 STRUCT Level : Real; END_STRUCT; END_TYPE
FUNCTION_BLOCK "Pump"
VAR_INPUT On : Bool; END_VAR
VAR Inner : "Tank"; END_VAR
BEGIN
END_FUNCTION_BLOCK
)";

TEST(Instances, EveryBlockAndTypeGetsOne) {
  EXPECT_THAT(variables(kTypeAndBlock), ElementsAre("Tank_DB.Level", "Pump_DB.On", "Pump_DB.Inner.Level"));
  EXPECT_THAT(variables(kTypeAndBlock, false), IsEmpty());
}

TEST(Instances, WhatHasOneGetsNoOther) {
  EXPECT_THAT(variables(std::string(kTypeAndBlock) +
                        "DATA_BLOCK \"Own\" \"pump\" BEGIN END_DATA_BLOCK\n"
                        "DATA_BLOCK \"tank_db\" VAR Other : Int; END_VAR BEGIN END_DATA_BLOCK\n"),
              ElementsAre("Own.On", "Own.Inner.Level", "tank_db.Other"));
}

}  // namespace
}  // namespace ostravel::plc
