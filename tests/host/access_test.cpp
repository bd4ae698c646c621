// SPDX-License-Identifier: MIT
#include "host/access.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/tagscsv.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;
using testing::ElementsAre;

const Project& project() {
  static const Project project = project_from_csv(
      "name,type,count,first,elements,device,id\n"
      "Flag,BOOL,1,,1,1,1\n"
      "Level,INT,1,,1,1,2\n"
      "Levels,INT,5,0,1,1,3\n"
      "FromThree,DINT,4,3,1,1,4\n"
      "Bits,BitArray,3,1,1,1,5\n"
      "Name,STRING,8,,1,1,6\n"
      "Names,STRING,8,0,3,1,7\n"
      "Masks,WORD,2,0,1,1,8\n"
      "Wide,WSTRING,254,,1,1,9\n"
      "Low,INT,2,-3,1,1,10\n"
      "Parts,WORD,6,,1,1,11\n"
      "\"M[1,2]\",REAL,1,,1,1,12\n",
      "t");
  return project;
}

std::vector<Access> reads(const char* name, bool char_paired = false) {
  return read_accesses(select(project(), name), char_paired);
}

std::vector<WriteAccess> writes(const char* name, const json& value, bool offline = false) {
  return write_accesses(select(project(), name), false, offline, value);
}

std::string failure(const char* name) {
  try {
    select(project(), name);
  } catch (const UserError& error) {
    return error.what();
  }
  return "none";
}

TEST(ReadAccess, ScalarHasNoArrayIndex) {
  EXPECT_THAT(reads("Level"), ElementsAre(Access{1, DT_INT, 0xFFFF, 1, 0, 1}));
}

TEST(ReadAccess, ArrayIsOneRequestFromItsFirstIndex) {
  EXPECT_THAT(reads("FromThree"), ElementsAre(Access{3, DT_DINT, 3, 4, 0, 8}));
}

TEST(ReadAccess, BoundBelowZeroTravelsAsTheWordThatItIs) {
  EXPECT_THAT(reads("Low"), ElementsAre(Access{9, DT_INT, 0xFFFD, 2, 0, 2}));
}

TEST(ReadAccess, EachTextOfAnArrayIsARequestOfItsOwn) {
  EXPECT_THAT(reads("Names"), ElementsAre(Access{6, DT_STRING, 0, 8, 0, 8}, Access{6, DT_STRING, 1, 8, 0, 8},
                                          Access{6, DT_STRING, 2, 8, 0, 8}));
  EXPECT_THAT(reads("Name", true), ElementsAre(Access{5, DT_STRING, 0xFFFF, 4, 0, 4}));
}

TEST(ReadAccess, ElementIsAddressedByItsIndexInThePlc) {
  EXPECT_THAT(reads("FromThree[5]"), ElementsAre(Access{3, DT_DINT, 5, 1, 0, 2}));
  EXPECT_THAT(reads("Names[2]"), ElementsAre(Access{6, DT_STRING, 2, 8, 0, 8}));
}

TEST(ReadAccess, BitIsSelectedByItsNumberPlusOne) {
  EXPECT_THAT(reads("Level.%X3"), ElementsAre(Access{1, DT_INT, 0xFFFF, 1, 4, 1}));
  EXPECT_THAT(reads("Levels[2].%X15"), ElementsAre(Access{2, DT_INT, 2, 1, 16, 1}));
}

TEST(ReadAccess, TagWhoseNameLooksLikeAnElementIsTakenAsItIs) {
  EXPECT_THAT(reads("M[1,2]"), ElementsAre(Access{11, DT_REAL, 0xFFFF, 1, 0, 2}));
}

TEST(Selection, WhatTheProjectLacksIsNamed) {
  EXPECT_EQ(failure("Nothing"),
            "Nothing: the project has no tag of that name; see: ostravel-tags dump PROJECT");
  EXPECT_EQ(failure("Level[0]"),
            "Level[0]: the project has no tag of that name; see: ostravel-tags dump PROJECT");
  EXPECT_EQ(failure("FromThree[2]"), "FromThree[2]: the index must be 3 to 6");
  EXPECT_EQ(failure("FromThree[7]"), "FromThree[7]: the index must be 3 to 6");
  EXPECT_EQ(failure("Levels.%X0"), "Levels.%X0: name one element of the array, as in Levels[0].%X0");
  EXPECT_EQ(failure("Level.%X16"), "Level: bits of INT are 0 to 15");
  EXPECT_EQ(failure("Flag.%X0"), "Flag: BOOL has no bits to address");
}

TEST(ReadValue, RecordsBecomeScalarsArraysAndTexts) {
  EXPECT_EQ(read_value(select(project(), "Level"), false, std::vector<Words>{{0xFFFF}}), -1);
  EXPECT_EQ(read_value(select(project(), "FromThree"), false, std::vector<Words>{{1, 0, 2, 0, 3, 0, 4, 0}}),
            json({1, 2, 3, 4}));
  EXPECT_EQ(read_value(select(project(), "FromThree[4]"), false, std::vector<Words>{{2, 0}}), 2);
  EXPECT_EQ(read_value(select(project(), "Names"), false, std::vector<Words>{{'a', 0}, {0}, {'b', 'c', 0}}),
            json({"a", "", "bc"}));
  EXPECT_EQ(read_value(select(project(), "Level.%X3"), false, std::vector<Words>{{0xFFFF}}), true);
}

TEST(ReadValue, MissingWordsCountAsZero) {
  EXPECT_EQ(read_value(select(project(), "Levels"), false, std::vector<Words>{{7}}), json({7, 0, 0, 0, 0}));
}

TEST(WriteAccess, ScalarIsOneWordWriteWithoutIndex) {
  const auto write = writes("Level", -2);
  ASSERT_EQ(write.size(), 1U);
  EXPECT_EQ(write[0].access.array_index, 0xFFFF);
  EXPECT_THAT(write[0].words, ElementsAre(0xFFFE));
}

TEST(WriteAccess, BooleanIsABitWrite) {
  const auto write = writes("Flag", true);
  ASSERT_EQ(write.size(), 1U);
  EXPECT_TRUE(write[0].words.empty());
  EXPECT_TRUE(write[0].bit);
}

TEST(WriteAccess, ArrayFromZeroIsWrittenWhole) {
  const auto write = writes("Levels", {1, 2, 3, 4, 5});
  ASSERT_EQ(write.size(), 1U);
  EXPECT_EQ(write[0].access.array_index, 0);
  EXPECT_EQ(write[0].access.elements, 5);
  EXPECT_THAT(write[0].words, ElementsAre(1, 2, 3, 4, 5));
}

TEST(WriteAccess, ArrayWithAnotherLowerBoundIsWrittenElementByElement) {
  const auto write = writes("FromThree", {1, 2, 3, 4});
  ASSERT_EQ(write.size(), 4U);
  EXPECT_EQ(write[0].access.array_index, 3);
  EXPECT_EQ(write[3].access.array_index, 6);
  EXPECT_THAT(write[3].words, ElementsAre(4, 0));
}

TEST(WriteAccess, UnsignedWordsOfAnArrayAreWrittenOneByOne) {
  EXPECT_EQ(writes("Masks", {1, 2}).size(), 2U);
}

TEST(WriteAccess, BitsOfAnArrayAreWrittenOneByOne) {
  const auto write = writes("Bits", {true, false, true});
  ASSERT_EQ(write.size(), 3U);
  EXPECT_EQ(write[0].access.array_index, 1);
  EXPECT_TRUE(write[0].bit);
  EXPECT_FALSE(write[1].bit);
  EXPECT_TRUE(write[2].words.empty());
}

TEST(WriteAccess, SeveralValuesWithoutAnIndexAreWrittenWhole) {
  const auto write = writes("Parts", {1, 2, 3, 4, 5, 6});
  ASSERT_EQ(write.size(), 1U);
  EXPECT_EQ(write[0].access.array_index, 0xFFFF);
  EXPECT_EQ(write[0].words.size(), 6U);
}

TEST(WriteAccess, TextIsFilledWithZerosToItsLength) {
  const auto write = writes("Name", "ab");
  ASSERT_EQ(write.size(), 1U);
  EXPECT_THAT(write[0].words, ElementsAre('a', 'b', 0, 0, 0, 0, 0, 0));
}

TEST(WriteAccess, WideTextWithZeroBytesIsRefusedOnline) {
  EXPECT_THROW(writes("Wide", "ab"), UserError);
  EXPECT_EQ(writes("Wide", "ab", true).size(), 1U);
  EXPECT_EQ(writes("Wide", "日本").size(), 1U);
}

TEST(WriteAccess, SingleBitOfANumberIsWrittenOnlyOffline) {
  EXPECT_THROW(writes("Level.%X3", true), UserError);
  const auto write = writes("Level.%X3", true, true);
  ASSERT_EQ(write.size(), 1U);
  EXPECT_EQ(write[0].access.bit_selector, 4);
  EXPECT_TRUE(write[0].bit);
}

TEST(WriteAccess, ArrayNeedsAsManyValuesAsItHasElements) {
  EXPECT_THROW(writes("Levels", {1, 2}), UserError);
  EXPECT_THROW(writes("Levels", 1), UserError);
  EXPECT_THROW(writes("Names", {"a", "b"}), UserError);
  EXPECT_THROW(writes("Name", 1), UserError);
}

}  // namespace
}  // namespace ostravel::host
