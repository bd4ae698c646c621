// SPDX-License-Identifier: MIT
// The runtime's number of each data type.
#include <gtest/gtest.h>

#include <set>

#include "driver/driver.h"
#include "tests/driver/requestbuilder.h"

namespace {

struct TypeNumber {
  int code;
  int number;
};

constexpr TypeNumber kNumbers[] = {
    {193, 1}, {211, 1},  {2, 2},   {3, 3},   {4, 4},  {202, 5}, {6, 6},   {194, 7}, {212, 7},
    {195, 9}, {196, 10}, {11, 11}, {12, 12}, {8, 13}, {9, 14},  {10, 15}, {7, 16},
};

constexpr int kUntouched = 4711;

class DataTypeNumber : public testing::TestWithParam<TypeNumber> {};

}  // namespace

TEST_P(DataTypeNumber, IsDelivered) {
  TagBlock block(GetParam().code);
  int number = kUntouched;
  EXPECT_EQ(KORVALE_DRV_GetDataType(block.data(), nullptr, number), 1);
  EXPECT_EQ(number, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(EveryType, DataTypeNumber, testing::ValuesIn(kNumbers),
                         [](const auto& row) { return "Code" + std::to_string(row.param.code); });

TEST(DataType, LtimeReturnsTrueAndLeavesTheNumberUntouched) {
  TagBlock block(13);
  int number = kUntouched;
  EXPECT_EQ(KORVALE_DRV_GetDataType(block.data(), nullptr, number), 1);
  EXPECT_EQ(number, kUntouched);
}

TEST(DataType, CodesOutsideTheTableLeaveTheNumberUntouched) {
  std::set<int> known;
  for (const auto& row : kNumbers) known.insert(row.code);
  for (int code = 0; code < 256; ++code) {
    if (known.contains(code)) continue;
    TagBlock block(code);
    int number = kUntouched;
    EXPECT_EQ(KORVALE_DRV_GetDataType(block.data(), nullptr, number), 1) << code;
    EXPECT_EQ(number, kUntouched) << code;
  }
}

TEST(DataType, AlternateTypeDoesNotCountHere) {
  TagBlock block(195);
  block.alternate(196);
  const auto before = block.bytes();
  int number = 0;
  KORVALE_DRV_GetDataType(block.data(), nullptr, number);
  EXPECT_EQ(number, 9);
  EXPECT_EQ(block.bytes(), before);
}
