// SPDX-License-Identifier: MIT
// With a complete library: every function reaches its own function in the library, with all arguments.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "aglink/AGLink40.h"
#include "tests/aglink/fakes/fakeaccess.h"
#include "tests/aglink/rows.h"
#include "tests/aglink/world.h"

namespace {

using Lines = std::vector<std::string>;

// Calls every function of the table and compares the caller's log with the library's.
void expectLogsToAgree(void (*beforeEachCall)()) {
  const FakeLog fakeLog;
  Lines callersLog;
  int reached = 0;
  for (const Row& row : rows()) {
    std::string result;
    linesPrintedBy([&] {
      beforeEachCall();
      result = row.call(argumentsFor(row));
    });
    if (!row.resolved) continue;
    ++reached;
    callersLog.push_back(logLine(row, argumentsFor(row)));
    EXPECT_EQ(result, row.fakeResult) << row.name;
  }
  EXPECT_EQ(reached, 438);
  EXPECT_EQ(fakeLog.lines(), callersLog);
}

}  // namespace

TEST_F(LibraryTest, LogsOfCallerAndLibraryAgreeOnceLoaded) {
  linesPrintedBy([] { ASSERT_EQ(LoadDll(), 1); });
  expectLogsToAgree([] {});
}

TEST_F(LibraryTest, LogsOfCallerAndLibraryAgreeWhenTheCallLoadsTheLibrary) {
  expectLogsToAgree([] { AGL_UnloadDyn(); });
}

TEST_F(LibraryTest, LoadedFunctionsPrintNothingButTheReportingOnes) {
  linesPrintedBy([] { ASSERT_EQ(LoadDll(), 1); });
  for (const Row& row : rows()) {
    if (!row.resolved || row.reporting) continue;
    EXPECT_EQ(linesPrintedBy([&] { row.call(argumentsFor(row)); }), Lines{}) << row.name;
  }
}

TEST_F(LibraryTest, FirstCallPrintsTheBannerOnce) {
  EXPECT_EQ(linesPrintedBy([] { AGL_GetOptions(); }), (Lines{kBanner, kHalfWay}));
  EXPECT_EQ(linesPrintedBy([] { AGL_GetOptions(); }), Lines{});
}

// The library exports them, but the loader does not ask for them.
TEST_F(LibraryTest, UnresolvedFunctionsFailAfterAFullReloadOnEveryCall) {
  linesPrintedBy([] { ASSERT_EQ(LoadDll(), 1); });
  int calls = 0;
  {
    const FakeLog fakeLog;
    for (const Row& row : rows()) {
      if (row.resolved) continue;
      std::string result;
      EXPECT_EQ(linesPrintedBy([&] { result = row.call(argumentsFor(row)); }), (Lines{kBanner, kHalfWay}));
      EXPECT_EQ(result, "-1048554") << row.name;
      ++calls;
    }
    EXPECT_EQ(fakeLog.lines(), Lines{});
  }
  EXPECT_EQ(calls, 138);
  EXPECT_EQ(unloadAll(kLibraryName), 1 + calls);
}

TEST_F(LibraryTest, GetParasReportsAlsoWhenItSucceeds) {
  const Lines loaded{"into AGL_GetParas", "loaded AGL_GetParas"};
  EXPECT_EQ(linesPrintedBy([] { AGL_GetParas(1, 1, nullptr, 0); }),
            (Lines{"into AGL_GetParas", kBanner, kHalfWay, "loaded AGL_GetParas"}));
  EXPECT_EQ(linesPrintedBy([] { AGL_GetParas(1, 1, nullptr, 0); }), loaded);
}

TEST_F(LibraryTest, SetDevTypeReportsAlsoWhenItSucceeds) {
  const Lines loaded{"into AGL_SetDevType", "loaded pAGL_SetDevType"};
  EXPECT_EQ(linesPrintedBy([] { AGL_SetDevType(1, 21); }),
            (Lines{"into AGL_SetDevType", kBanner, kHalfWay, "loaded pAGL_SetDevType"}));
  EXPECT_EQ(linesPrintedBy([] { AGL_SetDevType(1, 21); }), loaded);
}

TEST_F(LibraryTest, BitHelpersAndUnloadDynNeverCallTheLibrary) {
  linesPrintedBy([] { ASSERT_EQ(LoadDll(), 1); });
  EXPECT_NE(pAGL_GetBit, nullptr);
  EXPECT_NE(pAGL_UnloadDyn, nullptr);
  const FakeLog fakeLog;
  agl_uint8_t byte = 0;
  AGL_GetBit(byte, 0);
  AGL_SetBit(&byte, 0);
  AGL_ResetBit(&byte, 0);
  AGL_SetBitVal(&byte, 0, 1);
  AGL_UnloadDyn();
  EXPECT_EQ(fakeLog.lines(), Lines{});
}
