// SPDX-License-Identifier: MIT
#include "tools/merge.h"

#include <gtest/gtest.h>

#include "host/usererror.h"

namespace ostravel::tags {
namespace {

using namespace host;

constexpr const char* kHeader = "name,type,count,first,elements,device,id\n";

PlacedProject list(const std::string& name, const std::string& rows, const std::string& head = {}) {
  PlacedProject placed{name, {}, {}};
  placed.project = project_from_list(
      {head + kHeader + rows, std::nullopt}, name, [](const Finding&) {},
      [&](const TagRow& row) { placed.places.push_back(row.place(TagField::Name)); });
  return placed;
}

std::string merged(const std::vector<PlacedProject>& lists, const MergeRules& rules = {}) {
  try {
    return project_to_csv(merge(lists, rules));
  } catch (const UserError& error) {
    return error.what();
  }
}

constexpr MergeRules kFirst{Prefer::First, false};
constexpr MergeRules kLast{Prefer::Last, false};
constexpr MergeRules kRenumber{Prefer::Neither, true};

TEST(Merge, TagsComeInTheOrderInWhichTheyAppearAndOnce) {
  EXPECT_EQ(
      merged({list("a", "A,INT,1,,1,1,1\nB,INT,1,,1,1,2\n"), list("b", "C,INT,1,,1,1,3\nA,INT,1,,1,1,1\n")}),
      std::string(kHeader) + "A,INT,1,,1,1,1\nB,INT,1,,1,1,2\nC,INT,1,,1,1,3\n");
}

TEST(Merge, OtherSettingsAreAnErrorWithBothPlaces) {
  EXPECT_EQ(
      merged({list("a", "X,INT,1,,1,1,0\nA,INT,1,,1,1,1\n"), list("b", "A,REAL,4,0,1,1,1\n")}),
      "b:2:1: A is not as at a:3:1: type REAL and INT, count 4 and 1, first 0 and none; make them the same, "
      "or give --prefer first or --prefer last");
}

TEST(Merge, PreferredOneIsTakenInThePlaceOfTheFirst) {
  const std::vector<PlacedProject> lists{list("a", "A,INT,1,,1,1,1\nB,INT,1,,1,1,2\n"),
                                         list("b", "A,REAL,1,,1,1,1\n")};
  EXPECT_EQ(merged(lists, kFirst), std::string(kHeader) + "A,INT,1,,1,1,1\nB,INT,1,,1,1,2\n");
  EXPECT_EQ(merged(lists, kLast), std::string(kHeader) + "A,REAL,1,,1,1,1\nB,INT,1,,1,1,2\n");
}

TEST(Merge, IdsDifferUnlessTheyAreGivenAnew) {
  const std::vector<PlacedProject> lists{list("a", "A,INT,1,,1,1,5\nB,INT,1,,1,1,6\n"),
                                         list("b", "A,INT,1,,1,1,7\n")};
  EXPECT_EQ(merged(lists).substr(0, 38), "b:2:1: A is not as at a:2:1: id 7 and ");
  EXPECT_EQ(merged(lists, kRenumber), std::string(kHeader) + "A,INT,1,,1,1,1\nB,INT,1,,1,1,2\n");
}

TEST(Merge, SameNameInAnotherDeviceIsAnotherTag) {
  EXPECT_EQ(merged({list("a", "A,INT,1,,1,1,1\n"), list("b", "A,REAL,1,,1,2,1\n")}),
            std::string(kHeader) + "A,INT,1,,1,1,1\nA,REAL,1,,1,2,1\n");
}

TEST(Merge, PartsOfAnArrayStayUnlessTheyOverlap) {
  const auto parts = list("a", "A,INT,10,0,1,1,1\nA,INT,10,10,1,1,2\n");
  EXPECT_EQ(merged({parts, list("b", "A,INT,10,20,1,1,3\nA,INT,10,10,1,1,2\n")}),
            std::string(kHeader) + "A,INT,10,0,1,1,1\nA,INT,10,10,1,1,2\nA,INT,10,20,1,1,3\n");
  EXPECT_EQ(merged({parts, list("b", "A,INT,2,19,1,1,3\n")}).substr(0, 28), "b:2:1: A is not as at a:3:1:");
  EXPECT_EQ(merged({parts, list("b", "A,INT,1,,1,1,3\n")}).substr(0, 28), "b:2:1: A is not as at a:2:1:");
  EXPECT_EQ(merged({parts, list("b", "A,INT,20,0,1,1,3\n")}, kLast),
            "b:2:1: A covers the rows at a:2:1 and a:3:1; make them the same");
}

TEST(Merge, SettingsAreJoinedAndMustNotDiffer) {
  const auto none = list("a", "");
  const auto one = list("b", "", "# password: x\n");
  const auto other = list("c", "", "# password: y\n");
  EXPECT_EQ(merged({none, one, none}), std::string("# password: x\n") + kHeader);
  EXPECT_EQ(
      merged({one, none, other}),
      "c:1:1: the password is not that of b; make them the same, or give --prefer first or --prefer last");
  EXPECT_EQ(merged({one, other}, kFirst), std::string("# password: x\n") + kHeader);
  EXPECT_EQ(merged({one, other}, kLast), std::string("# password: y\n") + kHeader);

  const auto paired = list("p", "", "# strings: char-paired\n");
  EXPECT_EQ(
      merged({none, paired}),
      "p:1:1: strings are char-paired, and word-aligned in a; make them the same, or give --prefer first or "
      "--prefer last");
  EXPECT_EQ(merged({none, paired}, kLast), std::string("# strings: char-paired\n") + kHeader);
}

}  // namespace
}  // namespace ostravel::tags
