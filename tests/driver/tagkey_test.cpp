// SPDX-License-Identifier: MIT
// The key of one addressed tag element: how a tag data block fills it, and how keys are ordered.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "driver/tagtable.h"
#include "tests/driver/projectfile.h"
#include "tests/driver/requestbuilder.h"

namespace {

class TagKey : public testing::Test {
 protected:
  void SetUp() override {
    table.Read(ProjectFile().tag("Motor", 100).tag("Valve", 200).write(folder).c_str(), 0);
  }
  stTag fill(TagBlock& block) {
    stTag tag{};
    count = FillTagStruct(&table, &tag, block.data());
    return tag;
  }
  TemporaryFolder folder;
  CTagTable table;
  INT count = -1;
};

stTag key(INT row, int index, int type, int bit, const char* name) {
  return {0, row, static_cast<WORD>(index), static_cast<BYTE>(type), name, static_cast<signed char>(bit)};
}

}  // namespace

TEST_F(TagKey, TakesNameAndIdFromItsRow) {
  TagBlock block(195);
  const auto tag = fill(block.row(1).index(4).count(7));
  EXPECT_EQ(tag.TagIndex, 1);
  EXPECT_EQ(tag.TagId, 200U);
  EXPECT_STREQ(tag.pTagName, "Valve");
  EXPECT_EQ(tag.pTagName, table.Get(1)->pStringA) << "the name is borrowed";
  EXPECT_EQ(tag.DataType, 195);
  EXPECT_EQ(tag.ArrayIndex, 4);
  EXPECT_EQ(tag.BitIndex, -1);
  EXPECT_EQ(count, 7);
}

TEST_F(TagKey, ReadsTheUnalignedWordsAtTheirOffsets) {
  BYTE block[19] = {1, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0xAA, 0xBB, 0x34, 0x12, 0x78, 0x56, 0xCC, 0xDD};
  stTag tag{};
  EXPECT_EQ(FillTagStruct(&table, &tag, block), 0x5678);
  EXPECT_EQ(tag.ArrayIndex, 0x1234);
}

TEST_F(TagKey, ElementCountIsUnsigned) {
  TagBlock block(3);
  fill(block.count(65535));
  EXPECT_EQ(count, 65535);
  fill(block.count(0));
  EXPECT_EQ(count, 0);
}

TEST_F(TagKey, BitSelectorGivesTheBitNumber) {
  TagBlock block(3);
  EXPECT_EQ(fill(block.selector(0)).BitIndex, -1);
  EXPECT_EQ(fill(block.selector(1)).BitIndex, 0);
  EXPECT_EQ(fill(block.selector(32)).BitIndex, 31);
  EXPECT_EQ(fill(block.selector(128)).BitIndex, 127);
}

TEST_F(TagKey, BitSelectorAbove128GivesANegativeNumber) {
  TagBlock block(3);
  EXPECT_EQ(fill(block.selector(129)).BitIndex, -128);
  EXPECT_EQ(fill(block.selector(254)).BitIndex, -3);
}

TEST_F(TagKey, BitSelector255TakesTheLowByteOfTheIndex) {
  TagBlock block(3);
  auto tag = fill(block.selector(255).index(0x0105));
  EXPECT_EQ(tag.BitIndex, 5);
  EXPECT_EQ(tag.ArrayIndex, 0x0105);
  tag = fill(block.index_off(1));
  EXPECT_EQ(tag.BitIndex, 5);
  EXPECT_EQ(tag.ArrayIndex, 0);
}

TEST_F(TagKey, BitSelector255WithLowByte255IsTheWholeValue) {
  TagBlock block(3);
  EXPECT_EQ(fill(block.selector(255).index(0x01FF)).BitIndex, -1);
}

TEST_F(TagKey, IndexOffClearsTheArrayIndexOnly) {
  TagBlock block(3);
  const auto tag = fill(block.bit(3).index(9).index_off(0x80));
  EXPECT_EQ(tag.ArrayIndex, 0);
  EXPECT_EQ(tag.BitIndex, 3);
}

TEST_F(TagKey, AlternateTypeReplacesTheTypeInTheBlockItself) {
  TagBlock block(195);
  auto expected = block.alternate(212).bytes();
  EXPECT_EQ(fill(block).DataType, 212);
  expected[4] = 212;
  EXPECT_EQ(block.bytes(), expected) << "nothing but byte 4 changes";
}

TEST_F(TagKey, BlockHandledTwiceKeepsTheReplacedType) {
  TagBlock block(195);
  fill(block.alternate(212));
  EXPECT_EQ(fill(block.alternate(0)).DataType, 212);
}

TEST_F(TagKey, RowOutsideTheTableHasAnEmptyNameAndIdZero) {
  TagBlock block(195);
  for (DWORD row : {2U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    const auto tag = fill(block.row(row));
    ASSERT_NE(tag.pTagName, nullptr) << row;
    EXPECT_STREQ(tag.pTagName, "") << row;
    EXPECT_EQ(tag.TagId, 0U) << row;
    EXPECT_EQ(tag.TagIndex, static_cast<INT>(row));
  }
}

TEST(TagOrder, ComparesFieldByFieldAndStopsAtTheFirstDifference) {
  // Ascending; each entry differs from its neighbour in the field that decides, with later fields pointing
  // the other way.
  const std::vector<stTag> ascending = {
      key(-2, 9, 9, 9, "z"),     key(-1, 9, 9, 9, "z"),       key(0, 0, 200, 5, "z"),
      key(0, 0, 201, -1, "a"),   key(0, 1, 2, 3, "m"),        key(0, 40000, 2, 3, "m"),
      key(0, 65535, 1, -1, "z"), key(0, 65535, 2, -128, "z"), key(0, 65535, 2, -1, "z"),
      key(0, 65535, 2, 0, ""),   key(0, 65535, 2, 0, "B"),    key(0, 65535, 2, 0, "BA"),
      key(0, 65535, 2, 0, "a"),  key(0, 65535, 2, 0, "\xC3"), key(0, 65535, 2, 127, "a"),
      key(1, 0, 0, -128, ""),
  };
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = 0; j < ascending.size(); ++j) {
      EXPECT_EQ(ascending[i] < ascending[j], i < j) << i << " and " << j;
    }
  }
}

TEST(TagOrder, WholeValueSortsBeforeBitZero) {
  EXPECT_TRUE(key(0, 0, 3, -1, "a") < key(0, 0, 3, 0, "a"));
}

TEST(TagOrder, KeysThatDifferInTheTagIdAloneAreOneKey) {
  std::map<stTag, int> map;
  auto tag = key(3, 4, 195, -1, "Motor");
  tag.TagId = 1;
  map[tag] = 11;
  tag.TagId = 2;
  map[tag] = 22;
  EXPECT_EQ(map.size(), 1U);
  EXPECT_EQ(map[tag], 22);
}

TEST(TagOrder, NoNameIsAnEmptyOne) {
  EXPECT_TRUE(key(0, 0, 3, -1, nullptr) < key(0, 0, 3, -1, "A"));
  EXPECT_FALSE(key(0, 0, 3, -1, "A") < key(0, 0, 3, -1, nullptr));
  EXPECT_FALSE(key(0, 0, 3, -1, "") < key(0, 0, 3, -1, nullptr));
  EXPECT_FALSE(key(0, 0, 3, -1, nullptr) < key(0, 0, 3, -1, ""));
}

TEST(TagOrder, NamesAreComparedByTextAndNotByAddress) {
  const std::string one = "Motor";
  const std::string other = "Motor";
  EXPECT_FALSE(key(0, 0, 3, -1, one.c_str()) < key(0, 0, 3, -1, other.c_str()));
  EXPECT_FALSE(key(0, 0, 3, -1, other.c_str()) < key(0, 0, 3, -1, one.c_str()));
}
