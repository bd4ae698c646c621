// SPDX-License-Identifier: MIT
#include "tools/diff.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/tagscsv.h"

namespace ostravel::tags {
namespace {

using namespace host;
using testing::ElementsAre;

Project list(const std::string& rows, const std::string& head = {}) {
  return project_from_csv(head + "name,type,count,first,elements,device,id\n" + rows, "t");
}

TEST(Diff, SameListsDoNotDiffer) {
  const auto project =
      list("A,INT,1,,1,1,1\nA,INT,1,,1,1,1\nB,INT,9,0,1,1,2\nB,INT,9,9,1,1,2\n", "# password: x\n");
  EXPECT_TRUE(diff(project, project).none());
}

TEST(Diff, RemovedAddedAndChangedTagsAreTold) {
  const auto before = list("A,INT,1,,1,1,1\nB,INT,1,,1,1,2\nC,INT,1,,1,1,3\n");
  const auto after = list("A,REAL,1,0,1,1,9\nC,INT,1,,1,1,3\nD,INT,1,,1,1,4\n");
  const auto difference = diff(before, after);
  ASSERT_EQ(difference.tags.size(), 3U);
  EXPECT_EQ(difference.tags[0].change, Change::Removed);
  EXPECT_EQ(difference.tags[0].before->name, "B");
  EXPECT_EQ(difference.tags[1].change, Change::Changed);
  EXPECT_EQ(difference.tags[1].after->name, "A");
  EXPECT_THAT(difference.tags[1].fields, ElementsAre(TagField::Type, TagField::First, TagField::Id));
  EXPECT_EQ(difference.tags[2].change, Change::Added);
  EXPECT_EQ(difference.tags[2].after->name, "D");
  EXPECT_EQ(difference.count(Change::Added), 1U);
  EXPECT_EQ(difference.moved, nullptr);
}

TEST(Diff, PartsOfAnArrayAreComparedOneByOne) {
  const auto before = list("A,INT,10,0,1,1,1\nA,INT,10,10,1,1,2\n");
  const auto after = list("A,INT,10,10,1,1,2\nA,INT,5,0,1,1,1\nA,INT,5,5,1,1,3\n");
  const auto difference = diff(before, after);
  ASSERT_EQ(difference.tags.size(), 2U);
  EXPECT_THAT(difference.tags[0].fields, ElementsAre(TagField::Count));
  EXPECT_EQ(difference.tags[1].change, Change::Added);
}

TEST(Diff, OtherOrderIsADifferenceByItself) {
  const auto difference = diff(list("A,INT,1,,1,1,1\nB,INT,1,,1,1,2\nC,INT,1,,1,1,3\n"),
                               list("B,INT,1,,1,1,2\nC,INT,1,,1,1,3\nA,INT,1,,1,1,1\n"));
  EXPECT_TRUE(difference.tags.empty());
  ASSERT_NE(difference.moved, nullptr);
  EXPECT_EQ(difference.moved->name, "A");
  EXPECT_FALSE(difference.none());
}

TEST(Diff, SettingsAreCompared) {
  const auto difference =
      diff(list("", "# password: x\n"), list("", "# password: y\n# strings: char-paired\n"));
  EXPECT_TRUE(difference.password);
  EXPECT_TRUE(difference.strings);
  EXPECT_TRUE(diff(list(""), list("", "# password:\n")).password);
}

}  // namespace
}  // namespace ostravel::tags
