// SPDX-License-Identifier: MIT
// Floor and driver make the same calls. A program of its own: a process has one library of the name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "benchmarks/cases.h"

namespace bench {
namespace {

// Rows that are measured once are those that take seconds.
bool is_quick(const Case& row) {
  return row.runs > 1 || row.id == "table-100";
}

std::string calls_of(const Driver& driver, Work& work, void (Work::*way)()) {
  driver.forget();
  (work.*way)();
  return driver.recorded();
}

TEST(BenchCalls, TheFloorMakesTheDriversCalls) {
  const Driver driver(DRIVER, RECORDING_LIBRARY);
  ASSERT_NE(driver.recorded, nullptr) << "the recording form of the null library";
  int compared = 0;
  for (const Case& row : cases()) {
    if (!is_quick(row)) continue;
    const auto work = row.make(driver);
    for (int i = 0; i < 3; ++i) work->by_driver();  // the first ones also bring the device up
    const std::string by_driver = calls_of(driver, *work, &Work::by_driver);
    const std::string by_floor = calls_of(driver, *work, &Work::by_floor);
    // Offline, and for the tag table, there is no library.
    const bool silent = row.id.starts_with("offline-") || row.id.starts_with("table-");
    EXPECT_EQ(by_driver.empty(), silent) << row.id;
    EXPECT_TRUE(by_driver == by_floor) << row.id << "\nthe driver's calls:\n"
                                       << by_driver << "the floor's:\n"
                                       << by_floor;
    compared += silent ? 0 : 1;
  }
  EXPECT_GT(compared, 40);
}

TEST(BenchCalls, APollOfTwoTagsIsOneJob) {
  const Driver driver(DRIVER, RECORDING_LIBRARY);
  const auto work = online_poll(driver, {{type("INT"), 1, 0}, {type("REAL"), 1, 0}}, 10);
  for (int i = 0; i < 3; ++i) work->by_driver();
  const std::string calls = calls_of(driver, *work, &Work::by_driver);
  EXPECT_THAT(calls, testing::StartsWith("AGL_Symbolic_CreateAccessByPath A"));
  EXPECT_THAT(calls, testing::HasSubstr("AGL_Symbolic_ReadMixEx  1 2 5000 0\n"));
  EXPECT_THAT(calls, testing::HasSubstr("AGL_Symbolic_GetAccessBufferInt16 "));
  EXPECT_THAT(calls, testing::HasSubstr("AGL_Symbolic_GetAccessBufferFloat32 "));
}

}  // namespace
}  // namespace bench
