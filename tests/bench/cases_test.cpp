// SPDX-License-Identifier: MIT
// The rows of the bench as they are measured: the driver's answers are right.
#include "benchmarks/cases.h"

#include <gtest/gtest.h>

#include <set>

namespace bench {
namespace {

// Rows that are measured once are those that take seconds.
bool is_quick(const Case& row) {
  return row.runs > 1 || row.id == "table-100";
}

TEST(BenchCases, EachHasAnIdOfItsOwn) {
  std::set<std::string> ids;
  for (const Case& row : cases()) EXPECT_TRUE(ids.insert(row.id).second) << row.id;
  EXPECT_GT(ids.size(), 100U);
}

TEST(BenchCases, TheDriverAnswersEachWithTheFloorsWords) {
  const Driver driver(DRIVER, NULL_LIBRARY);
  for (const Case& row : cases()) {
    if (!is_quick(row)) continue;
    const auto work = row.make(driver);
    for (int i = 0; i < 3; ++i) work->by_driver();
    work->by_floor();
    EXPECT_EQ(work->fault(), "") << row.id;
  }
}

}  // namespace
}  // namespace bench
