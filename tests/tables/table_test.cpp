// SPDX-License-Identifier: MIT
// The table itself: how many cases there are, that their names differ, that no type lacks a direction.
#include <gtest/gtest.h>

#include <set>

#include "tests/tables/rows.h"

namespace tables {
namespace {

template <class Case>
void collect(const std::vector<Case>& cases, std::set<std::string>& names, std::set<std::string>& types) {
  for (const auto& one : cases) {
    EXPECT_TRUE(names.insert(one.name()).second) << one.name() << " twice";
    types.insert(one.row.type);
  }
}

TEST(Table, HoldsCasesForEveryTypeAndDirection) {
  std::set<std::string> names, read, written, offline;
  collect(read_cases(), names, read);
  collect(lost_connection_cases(), names, read);
  collect(write_cases(), names, written);
  collect(offline_cases(), names, offline);
  EXPECT_GE(names.size(), 1500U);
  EXPECT_EQ(read.size(), 18U);
  EXPECT_EQ(written, read);
  EXPECT_EQ(offline, read);
}

}  // namespace
}  // namespace tables
