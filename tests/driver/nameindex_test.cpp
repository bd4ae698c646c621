// SPDX-License-Identifier: MIT
#include "driver/nameindex.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Names {
  std::vector<std::string> names;
  std::string_view operator()(std::size_t row) const { return names[row]; }
};

TEST(NameIndex, FindsNothingBeforeItIsBuiltAndAfterItIsCleared) {
  const Names names{{"A"}};
  NameIndex index;
  EXPECT_TRUE(index.empty());
  EXPECT_EQ(index.Find("A", names), std::nullopt);
  index.Build(1, names);
  EXPECT_EQ(index.Find("A", names), 0U);
  index.Clear();
  EXPECT_TRUE(index.empty());
  EXPECT_EQ(index.Find("A", names), std::nullopt);
}

TEST(NameIndex, OfNoRowsIsBuiltAndFindsNothing) {
  const Names names;
  NameIndex index;
  index.Build(0, names);
  EXPECT_FALSE(index.empty());
  EXPECT_EQ(index.Find("", names), std::nullopt);
}

TEST(NameIndex, FindsEachRowOfTablesOfEverySize) {
  Names names;
  for (std::size_t rows = 0; rows < 70; ++rows) {
    NameIndex index;
    index.Build(rows, names);
    for (std::size_t row = 0; row < rows; ++row) ASSERT_EQ(index.Find(names.names[row], names), row);
    ASSERT_EQ(index.Find("Absent", names), std::nullopt) << rows;
    names.names.push_back("Tag" + std::to_string(rows));
  }
}

}  // namespace
