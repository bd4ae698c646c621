// SPDX-License-Identifier: MIT
// Arrays with every kind of bounds, and what whole writes do to some of them.
#include <gtest/gtest.h>

#include "tests/endtoend/world.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

TEST(Arrays, EveryLowerBoundFromZeroIsReadAsDeclared) {
  World world;
  EXPECT_EQ(world.read("Arrays.Levels"), json({10, -20, 30, -40, 50, -60, 70, -80, 90, -100}));
  EXPECT_EQ(world.read("Arrays.FromOne"), json({100000, 200000, 300000, 400000, 500000, 600000}));
  EXPECT_EQ(world.read("Arrays.Exact"), json({1.5, -2.5}));
  EXPECT_EQ(world.read("Arrays.Signed"), json({-128, -1, 0, 1, 127}));
  EXPECT_EQ(world.read("Arrays.Flags"), json({false, true, false}));
}

TEST(Arrays, ElementIsReadByItsIndexInThePlc) {
  World world;
  EXPECT_EQ(world.read("Arrays.Levels[9]"), -100);
  EXPECT_EQ(world.read("Arrays.FromOne[1]"), 100000);
  EXPECT_EQ(world.read("Arrays.FromOne[6]"), 600000);
  EXPECT_EQ(world.read("Arrays.Masks[4]"), 0x4444);
  EXPECT_EQ(world.read("Arrays.Flags[2]"), true);
}

TEST(Arrays, SeveralDimensionsAreReadInRowOrderWhateverTheirBounds) {
  World world;
  EXPECT_EQ(world.read("Arrays.Matrix"), json({11, 12, 13, 21, 22, 23}));
  EXPECT_EQ(world.read("Arrays.Matrix[2,1]"), 22);
  EXPECT_EQ(world.read("Arrays.Cube"), json({1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0}));
  EXPECT_EQ(world.read("Arrays.Cube[-1,2,1]"), 4.0);
}

TEST(Arrays, OneElementIsWrittenAndNoOther) {
  World world;
  world.read("Arrays.FromOne");
  world.write("Arrays.FromOne[2]", -7);
  EXPECT_EQ(world.held("Arrays.FromOne"), json({100000, -7, 300000, 400000, 500000, 600000}));
  world.write("Arrays.Flags[1]", true);
  EXPECT_EQ(world.held("Arrays.Flags"), json({true, true, false}));
}

// Deliberate: the driver puts the zeros of the missing indexes in front of the array, and below 0 those are
// more than a request can reach over.
TEST(Arrays, LowerBoundBelowZeroReadsAsZeros) {
  World world;
  EXPECT_EQ(world.read("Limits.BelowZero"), json({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(world.read("Limits.BelowZero[-3]"), 0);
  world.write("Limits.BelowZero[-3]", 5);
  EXPECT_EQ(world.held("Limits.BelowZero[-3]"), 5);
}

// Deliberate: the zeros also stand in front of an element that is read by a name of its own. Where the array
// begins above 0, that index as the array index reaches over them.
TEST(Arrays, ElementWithATagOfItsOwnNeedsTheLowerBoundAsIndex) {
  World world({.tags = "Arrays.FromOne[2],DINT,1,,1,1,1\nArrays.Levels[2],INT,1,,1,1,2\n"});
  EXPECT_EQ(world.read("Arrays.FromOne[2]"), 0);
  EXPECT_EQ(world.read("Arrays.Levels[2]"), 30) << "an array from 0 has no zeros in front";
  const auto answer = world.session().read(std::vector<Access>{{0, DT_DINT, 1, 1, 0, 2}});
  EXPECT_EQ(answer.records.at(0).words, (Words{200000 & 0xFFFF, 200000 >> 16}));
}

// Deliberate: a write's index is not brought back to the array's lower bound as a read's is.
TEST(Arrays, WholeWriteOfAnArrayFromOneLandsOneElementLater) {
  World world;
  world.read("Arrays.Signed");
  world.write_words({world.row("Arrays.Signed"), DT_SINT, 1, 5, 0, 5}, {11, 12, 13, 14, 15});
  EXPECT_EQ(world.held("Arrays.Signed"), json({0, 11, 12, 13, 14}));
}

// Deliberate: with every element the driver also copies the first value's bytes to the front, unswapped.
TEST(Arrays, WholeWriteOfUnsignedWordsSwapsTheBytesOfTheFirst) {
  World world;
  world.read("Arrays.Counts");
  world.write_words({world.row("Arrays.Counts"), DT_UINT, 0, 5, 0, 5}, {0x1234, 2, 3, 4, 5});
  EXPECT_EQ(world.held("Arrays.Counts"), json({0x3412, 2, 3, 4, 5}));
}

// Deliberate: an access buffer starts with zeros, and all of it is written.
TEST(Arrays, WriteOfSomeElementsClearsTheOthers) {
  World world;
  world.read("Arrays.Levels");
  world.write_words({world.row("Arrays.Levels"), DT_INT, 2, 2, 0, 2}, {7, 8});
  EXPECT_EQ(world.held("Arrays.Levels"), json({0, 0, 7, 8, 0, 0, 0, 0, 0, 0}));
}

TEST(Arrays, IndexPlaceholderOfANameIsReplacedByTheRequestsIndex) {
  World world({.tags = "Arrays.Levels[INDEX],INT,1,0,1,1,1\nArrays.Levels,INT,10,0,1,1,2\n"});
  world.read("Arrays.Levels");
  const Access access{0, DT_INT, 4, 1, 0, 1};
  const auto answer = world.session().read(std::vector<Access>{access});
  ASSERT_EQ(answer.outcome, Outcome::Served);
  EXPECT_EQ(answer.records[0].words, (Words{50}));
  world.write_words(access, {51});
  EXPECT_EQ(world.held("Arrays.Levels[4]"), 51);
}

}  // namespace
}  // namespace ostravel::host
