// SPDX-License-Identifier: MIT
#include "tools/pathcheck.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostravel::tags {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// "position: text", with "warning: " where it is one.
std::vector<std::string> faults(std::string_view name) {
  std::vector<std::string> texts;
  for (const auto& fault : path_faults(name)) {
    texts.push_back(fmt::format("{}: {}{}", fault.position,
                                fault.severity == host::Severity::Warning ? "warning: " : "", fault.text));
  }
  return texts;
}

TEST(PathCheck, PathsOfVariablesHaveNoFault) {
  for (const auto* name :
       {"Level", "Plant.Motors[2].Speed", "_a.b_1", "A[-1,2,0]", "\"1_pump\".\"Tank.1/2 [x]\".Level",
        "\"M\"[1,2].x", "Füllstand.Höhe", "Motor[INDEX].Speed", "Motor[MY_INDEX]", "A[1,2,3,4,5,6]",
        "\"a\tb\"", "A[-2147483648]"}) {
    EXPECT_THAT(faults(name), IsEmpty()) << name;
  }
}

TEST(PathCheck, EmptyPartsAreTold) {
  EXPECT_THAT(faults(""), ElementsAre("0: the name is empty"));
  EXPECT_THAT(faults(".a"), ElementsAre("0: a part of the path is empty; remove a dot"));
  EXPECT_THAT(faults("a..b."), ElementsAre("2: a part of the path is empty; remove a dot",
                                           "5: a part of the path is empty; remove a dot"));
  EXPECT_THAT(faults("a.\"\""), ElementsAre("2: the name in quotes is empty"));
}

TEST(PathCheck, QuotesAndBracketsMustBeClosed) {
  EXPECT_THAT(faults("a.\"b"), ElementsAre("2: the quote is never closed"));
  EXPECT_THAT(faults("a[1"), ElementsAre("1: the bracket is never closed"));
  EXPECT_THAT(faults("a]"), ElementsAre("1: a closing bracket without an opening one"));
  EXPECT_THAT(faults("a\"b\""), ElementsAre("1: a dot or the end belongs here"));
  EXPECT_THAT(faults("\"a\"b"), ElementsAre("3: a dot or the end belongs here"));
  EXPECT_THAT(faults("a[1]b"), ElementsAre("4: a dot or the end belongs here"));
  EXPECT_THAT(faults("[1].a"), ElementsAre("0: an index without a name before it"));
}

TEST(PathCheck, CharactersThatNeedQuotesAreTold) {
  EXPECT_THAT(faults("a.b-c.d"), ElementsAre("3: a name with '-' in it goes in quotes: \"b-c\""));
  EXPECT_THAT(faults("a b"), ElementsAre("1: a name with ' ' in it goes in quotes: \"a b\""));
  EXPECT_THAT(faults("a.1b"), ElementsAre("2: a name that begins with a digit goes in quotes: \"1b\""));
  EXPECT_THAT(faults("a.%X3"),
              ElementsAre("2: addresses and bits are no part of a path; give the variable's name"));
}

TEST(PathCheck, FormsOfAnIndexAreChecked) {
  EXPECT_THAT(faults("a[]"), ElementsAre("2: an index is missing between the brackets"));
  EXPECT_THAT(faults("a[1,]"), ElementsAre("4: an index is missing between the brackets"));
  EXPECT_THAT(faults("a[x]"), ElementsAre("2: index 'x' is no whole number of 32 bits"));
  EXPECT_THAT(faults("a[+1]"), ElementsAre("2: index '+1' is no whole number of 32 bits"));
  EXPECT_THAT(faults("a[1.5]"), ElementsAre("2: index '1.5' is no whole number of 32 bits"));
  EXPECT_THAT(faults("a[2147483648]"), ElementsAre("2: index '2147483648' is no whole number of 32 bits"));
  EXPECT_THAT(faults("a[1][2].b"), ElementsAre("4: one index behind another; write [1,2]"));
  EXPECT_THAT(faults("a[1,2,3,4,5,6,7]"), ElementsAre("2: 7 indexes; an array has at most 6 dimensions"));
}

TEST(PathCheck, PlaceholderIsWhatTheDriverTakesForOne) {
  EXPECT_THAT(faults("aINDEX]"),
              testing::Contains("1: INDEX] without a [ before it ends the runtime; write [INDEX]"));
  EXPECT_THAT(faults("a[x].b_INDEX]"),
              ElementsAre("1: the driver replaces all from here to INDEX]; write [INDEX]"));
  EXPECT_THAT(faults("a[INDEX].b[INDEX]"),
              ElementsAre("11: the driver replaces only the first [INDEX]; write a number"));
  EXPECT_THAT(faults("\"a[INDEX]\""),
              ElementsAre("2: warning: the driver replaces [INDEX] in a name in quotes, too"));
}

TEST(PathCheck, TooLongNamesAreToldByTheirCharacters) {
  std::string name;
  for (int i = 0; i < 128; ++i) {
    name += "ä";
  }
  EXPECT_THAT(faults(name), IsEmpty());
  EXPECT_THAT(faults("a." + name + "b"), ElementsAre("2: a name of 129 characters; the longest has 128"));
  EXPECT_THAT(faults("\"" + name + "b\""), ElementsAre("0: a name of 129 characters; the longest has 128"));
}

TEST(PathCheck, WhatAPlcMightTakeIsAWarning) {
  EXPECT_THAT(faults("a . b[1, 2] "), ElementsAre("1: warning: a blank outside quotes; remove it"));
  EXPECT_THAT(faults("a[1, 2]"), ElementsAre("4: warning: a blank between brackets; remove it"));
  EXPECT_THAT(faults("\"a\nb\""),
              ElementsAre("2: warning: the name holds the control character 0A; remove it"));
  EXPECT_THAT(faults("F\xFCll"),
              ElementsAre("0: warning: the name is not valid UTF-8; save the list as UTF-8"));
}

TEST(PathCheck, SameVariableHasTheSameKey) {
  EXPECT_EQ(path_key("\"Plant\".LEVEL[1]"), path_key("plant.\"level\"[1]"));
  EXPECT_EQ(path_key("ÄÖÜ"), path_key("äöü"));
  EXPECT_NE(path_key("\"a.b\""), path_key("a.b"));
  EXPECT_NE(path_key("\"a b\""), path_key("a b"));
  EXPECT_NE(path_key("\"1\""), path_key("1"));
  EXPECT_EQ(path_key("a\""), "a\"");
}

}  // namespace
}  // namespace ostravel::tags
