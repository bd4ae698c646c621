// SPDX-License-Identifier: MIT
// With a library in the search path that lacks AGL_GetLifelist and AGL_GetParas, and has all other names.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"
#include "tests/aglink/hooks.h"
#include "tests/aglink/world.h"

using Lines = std::vector<std::string>;

// Nothing remembers that a name was looked for in vain: deliberately, every call reloads everything.
TEST_F(LibraryTest, EveryCallOfAMissingFunctionReloadsAndFails) {
  linesPrintedBy([] { ASSERT_EQ(LoadDll(), 1); });
  for (int call = 0; call < 3; ++call) {
    const Recording recording;
    EXPECT_EQ(linesPrintedBy([] { EXPECT_EQ(AGL_GetLifelist(), -1048554); }), (Lines{kBanner, kHalfWay}));
    EXPECT_EQ(recording.eventsOf("dlopen"), Lines{kLibraryName});
    EXPECT_EQ(recording.eventsOf("dlsym").size(), 443U);
    EXPECT_EQ(recording.eventsOf("dlclose").size(), 0U);
  }
}

TEST_F(LibraryTest, ReferenceCountGrowsByOneWithEachCallOfAMissingFunction) {
  for (int calls = 0; calls < 4; ++calls) {
    linesPrintedBy([&] {
      ASSERT_EQ(LoadDll(), 1);
      for (int call = 0; call < calls; ++call) AGL_GetLifelist();
    });
    EXPECT_EQ(unloadAll(kLibraryName), 1 + calls);
  }
}

TEST_F(LibraryTest, FirstCallOfAMissingFunctionLoadsOnceAndFails) {
  EXPECT_EQ(linesPrintedBy([] { EXPECT_EQ(AGL_GetLifelist(), -1048554); }), (Lines{kBanner, kHalfWay}));
  EXPECT_NE(hLib, nullptr);
  EXPECT_EQ(pAGL_GetLifelist, nullptr);
  EXPECT_EQ(unloadAll(kLibraryName), 1);
}

TEST_F(LibraryTest, OtherFunctionsAreReachedDirectlyAlthoughOneIsMissing) {
  linesPrintedBy([] { AGL_GetLifelist(); });
  EXPECT_EQ(linesPrintedBy([] { EXPECT_NE(AGL_GetOptions(), AGL40_LIB_NOT_LOADED); }), Lines{});
}

TEST_F(LibraryTest, MissingGetParasReportsTheReloadAndTheError) {
  const Lines expected{"into AGL_GetParas", kBanner, kHalfWay, "load error  AGL_GetParas"};
  for (int call = 0; call < 2; ++call) {
    EXPECT_EQ(linesPrintedBy([] { EXPECT_EQ(AGL_GetParas(1, 1, nullptr, 0), -1048554); }), expected);
  }
}
