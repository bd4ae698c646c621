// SPDX-License-Identifier: MIT
#include "simulator/program/paths.h"

#include <gmock/gmock.h>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using ::testing::ElementsAre;
using testing::load;

const char* const members =
    "Tank : Array[1..2, 0..1] of Struct Level : Int; \"Valve.1\" : Bool; END_STRUCT;\n"
    "\"1st\" : Int; Füll : Byte; List : Array[-2..2] of Int; Stamp : DTL; Hidden { ExternalAccessible := "
    "'False' } : Int; Any : Variant;";

std::optional<std::size_t> misfit(const Program& program, std::string_view path) {
  std::size_t position = 999;
  return resolve(program.blocks, path, &position) ? std::nullopt : std::optional(position);
}

TEST(Resolve, FollowsNamesAndIndices) {
  const Program program = load(block_of(members));
  const std::optional<Target> target = resolve(program.blocks, "D.Tank[2,1].Level");
  ASSERT_TRUE(target);
  EXPECT_EQ(target->symbol->name, "Level");
  EXPECT_EQ(target->address, 9U);
  EXPECT_FALSE(target->element);
  EXPECT_THAT(target->index, ElementsAre());
}

TEST(Resolve, NamesCompareWithoutCaseAndBlanksDoNotMatter) {
  const Program program = load(block_of(members));
  EXPECT_TRUE(resolve(program.blocks, "d.TANK[ 1 , 0 ] . level"));
  EXPECT_TRUE(resolve(program.blocks, "\"D\".\"Tank\"[1,0].\"Valve.1\""));
  EXPECT_TRUE(resolve(program.blocks, "D.FÜLL"));
  EXPECT_TRUE(resolve(program.blocks, "D"));
}

TEST(Resolve, TellsAnElementFromTheWholeArray) {
  const Program program = load(block_of(members));
  const std::optional<Target> element = resolve(program.blocks, "D.List[-1]");
  ASSERT_TRUE(element);
  EXPECT_TRUE(element->element);
  EXPECT_THAT(element->index, ElementsAre(-1));
  const std::optional<Target> whole = resolve(program.blocks, "D.List");
  ASSERT_TRUE(whole);
  EXPECT_FALSE(whole->element);
  EXPECT_EQ(element->address, whole->address + 2);
}

TEST(Resolve, ReachesThePartsOfADtl) {
  const Program program = load(block_of(members));
  const std::optional<Target> part = resolve(program.blocks, "D.Stamp.Nanosecond");
  ASSERT_TRUE(part);
  EXPECT_EQ(part->address, testing::target(program, "D.Stamp").address + 8);
}

TEST(Resolve, SaysWhereAPathStopsToFit) {
  const Program program = load(block_of(members));
  EXPECT_EQ(misfit(program, ""), 0U);
  EXPECT_EQ(misfit(program, "E.Tank"), 0U);
  EXPECT_EQ(misfit(program, "D.Tonk"), 2U);
  EXPECT_EQ(misfit(program, "D.Tank[3,0]"), 7U);
  EXPECT_EQ(misfit(program, "D.Tank[1,2]"), 9U);
  EXPECT_EQ(misfit(program, "D.Tank[1]"), 8U);
  EXPECT_EQ(misfit(program, "D.Tank[1,0,0]"), 10U);
  EXPECT_EQ(misfit(program, "D.Tank[1,0"), 10U);
  EXPECT_EQ(misfit(program, "D.Tank.Level"), 6U);
  EXPECT_EQ(misfit(program, "D.Füll[0]"), 7U);
  EXPECT_EQ(misfit(program, "D.Füll.x"), 7U);
  EXPECT_EQ(misfit(program, "D."), 2U);
  EXPECT_EQ(misfit(program, "D..x"), 2U);
  EXPECT_EQ(misfit(program, "D.1st"), 2U);
  EXPECT_EQ(misfit(program, "D.\"1st"), 2U);
  EXPECT_EQ(misfit(program, "D.\"\""), 2U);
  EXPECT_EQ(misfit(program, "D.List[99999999999]"), 7U);
  EXPECT_EQ(misfit(program, "D.List[a]"), 7U);
  EXPECT_EQ(misfit(program, "D.List[0] x"), 10U);
}

TEST(Resolve, TakesAnyBytes) {
  const Program program = load(block_of(members));
  for (unsigned byte = 0; byte < 256; ++byte) {
    const std::string path = std::string("D.") + static_cast<char>(byte);
    EXPECT_FALSE(resolve(program.blocks, path)) << byte;
  }
}

TEST(Paths, QuotesStandWhereTheyAreNeeded) {
  EXPECT_EQ(path_name("Tank_1"), "Tank_1");
  EXPECT_EQ(path_name("Füll"), "Füll");
  EXPECT_EQ(path_name("1st"), "\"1st\"");
  EXPECT_EQ(path_name("Tank.1"), "\"Tank.1\"");
  EXPECT_EQ(path_name("a b"), "\"a b\"");
  EXPECT_EQ(path_name("a[0]"), "\"a[0]\"");
  EXPECT_EQ(path_name("a-b"), "\"a-b\"");
}

TEST(Paths, ListsReadableVariablesInOrder) {
  const Program program = load(block_of(members));
  std::vector<std::string> paths;
  for_each_leaf(program.blocks, [&paths](const Leaf& leaf) {
    paths.push_back(leaf.path);
    return true;
  });
  EXPECT_THAT(paths, ElementsAre("D.Tank[1,0].Level", "D.Tank[1,0].\"Valve.1\"", "D.Tank[1,1].Level",
                                 "D.Tank[1,1].\"Valve.1\"", "D.Tank[2,0].Level", "D.Tank[2,0].\"Valve.1\"",
                                 "D.Tank[2,1].Level", "D.Tank[2,1].\"Valve.1\"", "D.\"1st\"", "D.Füll",
                                 "D.List", "D.Stamp"));
}

TEST(Paths, EveryListedPathLeadsBack) {
  const Program program = load(block_of(members));
  EXPECT_TRUE(for_each_leaf(program.blocks, [&program](const Leaf& leaf) {
    const std::optional<Target> target = resolve(program.blocks, leaf.path);
    EXPECT_TRUE(target) << leaf.path;
    if (!target) return false;
    EXPECT_EQ(target->symbol, leaf.symbol);
    EXPECT_EQ(target->address, leaf.address);
    EXPECT_EQ(path_of(program.blocks, *target), leaf.path);
    return true;
  }));
}

TEST(Paths, ListingStopsWhenAsked) {
  const Program program = load(block_of(members));
  int visits = 0;
  EXPECT_FALSE(for_each_leaf(program.blocks, [&visits](const Leaf&) { return ++visits < 3; }));
  EXPECT_EQ(visits, 3);
}

TEST(Paths, PathOfElementsStructuresAndViews) {
  const Program program = load(
      "FUNCTION_BLOCK F VAR raw : Array[0..1] of Byte; v AT raw : Word; END_VAR END_FUNCTION_BLOCK "
      "DATA_BLOCK D STRUCT a : Byte; f : Array[0..1] of F; END_STRUCT END_DATA_BLOCK");
  for (const std::string_view path : {"D", "D.f", "D.f[1]", "D.f[1].raw", "D.f[1].raw[1]", "D.f[1].v"}) {
    EXPECT_EQ(path_of(program.blocks, testing::target(program, path)), path);
  }
  Target wrong = testing::target(program, "D.a");
  wrong.address = 2;
  EXPECT_EQ(path_of(program.blocks, wrong), std::nullopt);
}

TEST(Paths, ElementNumbersAreRowMajor) {
  const Program program = load(block_of("m : Array[1..2, -1..1] of Int;"));
  const Symbol& m = program.blocks.at(0).members.at(0);
  EXPECT_THAT(index_of_element(m, 0), ElementsAre(1, -1));
  EXPECT_THAT(index_of_element(m, 4), ElementsAre(2, 0));
  EXPECT_EQ(element_of_index(m, {2, 0}), 4U);
  EXPECT_EQ(element_of_index(m, {3, 0}), std::nullopt);
  EXPECT_EQ(element_of_index(m, {1}), std::nullopt);
}

}  // namespace
}  // namespace ostravel::plc
