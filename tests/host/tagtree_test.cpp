// SPDX-License-Identifier: MIT
#include "host/commands/tagtree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostravel::host {
namespace {

using testing::ElementsAre;

TagTree tree_of(const std::vector<std::string>& paths) {
  TagTree tree;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    tree.add(path_parts(paths[i]), i);
  }
  return tree;
}

std::string drawn(const TagTree& tree, std::size_t depth = 0, bool utf8 = false) {
  std::string text;
  for (const auto& line : tree.lines(depth, utf8)) {
    text += line.text;
    if (line.tag != TagTree::kNone) {
      text += " =" + std::to_string(line.tag);
    }
    if (line.hidden > 0) {
      text += " +" + std::to_string(line.hidden);
    }
    text += '\n';
  }
  return text;
}

TEST(PathParts, DotsOutsideQuotesAndBracketsPart) {
  EXPECT_THAT(path_parts("Plant.Motors[2].Speed"), ElementsAre("Plant", "Motors", "[2]", "Speed"));
  EXPECT_THAT(path_parts("Plant.\"Tank.1 [north]\".Level"),
              ElementsAre("Plant", "\"Tank.1 [north]\"", "Level"));
  EXPECT_THAT(path_parts("M[1,2][3]"), ElementsAre("M", "[1,2]", "[3]"));
  EXPECT_THAT(path_parts("Level"), ElementsAre("Level"));
}

TEST(PathParts, BrokenPathsKeepTheirText) {
  EXPECT_THAT(path_parts(""), ElementsAre());
  EXPECT_THAT(path_parts("a..b"), ElementsAre("a", "b"));
  EXPECT_THAT(path_parts("a[1"), ElementsAre("a", "[1"));
  EXPECT_THAT(path_parts("a\"b.c"), ElementsAre("a\"b.c"));
}

TEST(MatchesFilter, PlainTextIsLookedForAnywhere) {
  EXPECT_TRUE(matches_filter("Plant.Motor", "motor"));
  EXPECT_TRUE(matches_filter("Plant.Motor", ""));
  EXPECT_FALSE(matches_filter("Plant.Motor", "Valve"));
}

TEST(MatchesFilter, PatternFitsTheWholePath) {
  EXPECT_TRUE(matches_filter("Plant.Motors[2].Speed", "plant.*.speed"));
  EXPECT_TRUE(matches_filter("Plant.Motors[2].Speed", "*[?]*"));
  EXPECT_FALSE(matches_filter("Plant.Motors[2].Speed", "*.Spee?d"));
  EXPECT_FALSE(matches_filter("Plant.Motors[2].Speed", "Motors*"));
  EXPECT_TRUE(matches_filter("", "*"));
  // A pattern that goes back for each star would take longer than anyone waits.
  EXPECT_FALSE(matches_filter(std::string(2000, 'a'), "*a*a*a*a*a*a*a*a*a*a*b"));
}

TEST(TagTree, GroupsByPathInOrderOfAppearance) {
  const auto tree = tree_of({"Plant.B", "Other", "Plant.M[1].Speed", "Plant.M[2].Speed", "Plant.A"});
  EXPECT_EQ(drawn(tree),
            "Plant\n"
            "|- B =0\n"
            "|- M\n"
            "|  |- [1]\n"
            "|  |  `- Speed =2\n"
            "|  `- [2]\n"
            "|     `- Speed =3\n"
            "`- A =4\n"
            "Other =1\n");
}

TEST(TagTree, HasLinesWhereTheTerminalDoes) {
  EXPECT_EQ(drawn(tree_of({"P.A.X", "P.B"}), 0, true), "P\n├─ A\n│  └─ X =0\n└─ B =1\n");
}

TEST(TagTree, DepthCutsAndCountsWhatIsBelow) {
  const auto tree = tree_of({"P.A.X", "P.A.Y", "P.B", "Q"});
  EXPECT_EQ(drawn(tree, 1), "P +3\nQ =3\n");
  EXPECT_EQ(drawn(tree, 2), "P\n|- A +2\n`- B =2\nQ =3\n");
}

TEST(TagTree, TagCanHaveTagsBelowItAndANameTwice) {
  EXPECT_EQ(drawn(tree_of({"M", "M[1]", "M"})), "M =0\n`- [1] =1\nM =2\n");
}

TEST(TagTree, PathAsDeepAsAFileCanMakeItIsDrawn) {
  std::string path = "a";
  for (int i = 0; i < 3000; ++i) {
    path += ".a";
  }
  EXPECT_EQ(tree_of({path}).lines(0, false).size(), 3001U);
}

}  // namespace
}  // namespace ostravel::host
