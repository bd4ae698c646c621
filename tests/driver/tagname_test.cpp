// SPDX-License-Identifier: MIT
#include "driver/tagname.h"

#include <gtest/gtest.h>

namespace {

TEST(TagName, IsEmptyAtFirstAndEndsWithANul) {
  const TagName name;
  EXPECT_EQ(name, "");
  EXPECT_EQ(*name.view().data(), '\0');
}

TEST(TagName, BorrowsWithoutCopying) {
  const char text[] = "Motor.Speed";
  TagName name;
  name.Borrow(text, 17);
  EXPECT_EQ(name.view().data(), text);
  EXPECT_EQ(name.hash(), 17U);
}

TEST(TagName, BuildsAnElementsNameFromABorrowedOneAndFromItsOwn) {
  TagName name;
  name.Borrow("Texts[0]", 1);
  name.NameElement(3);
  EXPECT_EQ(name, "Texts[3]");
  EXPECT_EQ(name.hash(), hash_of_name("Texts[3]"));
  name.NameElement(65535);
  EXPECT_EQ(name, "Texts[65535]") << "once more, from what was built";
  name.Borrow("Plain", 2);
  name.AppendIndex(0);
  EXPECT_EQ(name, "Plain[0]");
  name.AppendIndex(1);
  EXPECT_EQ(name, "Plain[0][1]") << "behind the whole name";
}

TEST(TagName, ANameThatTakesNoIndexStaysAsItIs) {
  TagName name;
  name.Borrow("Before", 3);
  EXPECT_FALSE(name.SubstituteIndex("Motor.Speed", 5));
  EXPECT_EQ(name, "Before");
  EXPECT_TRUE(name.SubstituteIndex("Motor[INDEX].Speed", 5));
  EXPECT_EQ(name, "Motor[5].Speed");
  EXPECT_EQ(*(name.view().data() + name.view().size()), '\0');
}

}  // namespace
