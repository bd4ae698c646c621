// SPDX-License-Identifier: MIT
// Loading, resolving and unloading, with a complete library in the search path.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"
#include "tests/aglink/hooks.h"
#include "tests/aglink/rows.h"
#include "tests/aglink/world.h"

namespace {

using Lines = std::vector<std::string>;

bool isLocal(const std::string& name) {
  const Lines local{"AGL_GetBit", "AGL_SetBit", "AGL_ResetBit", "AGL_SetBitVal", "AGL_UnloadDyn"};
  return std::find(local.begin(), local.end(), name) != local.end();
}

}  // namespace

TEST_F(LibraryTest, LoadDllResolves443NamesInTheHeadersOrder) {
  const Recording recording;
  linesPrintedBy([] { EXPECT_EQ(LoadDll(), 1); });
  Lines names = recording.eventsOf("dlsym");
  EXPECT_EQ(names.size(), 443U);
  EXPECT_EQ(std::count_if(names.begin(), names.end(), isLocal), 5);
  names.erase(std::remove_if(names.begin(), names.end(), isLocal), names.end());
  const Lines unresolved = expectedUnresolved();
  Lines expected;
  for (const std::string& name : expectedNames()) {
    if (std::find(unresolved.begin(), unresolved.end(), name) == unresolved.end()) expected.push_back(name);
  }
  EXPECT_EQ(names, expected);
}

TEST_F(LibraryTest, LoadFunctionTwoIsPrintedBetweenGetParasAndSetDevType) {
  const Recording recording;
  linesPrintedBy([] { LoadDll(); });
  const Lines events = recording.events();
  const auto line = std::find(events.begin(), events.end(), "puts " + kHalfWay);
  ASSERT_NE(line, events.end());
  EXPECT_EQ(*(line - 1), "dlsym AGL_GetParas");
  EXPECT_EQ(*(line + 1), "dlsym AGL_SetDevType");
}

TEST_F(LibraryTest, LoadDllPrintsTheBannerFirstAndStopsAtTheFirstLibraryFound) {
  const Recording recording;
  linesPrintedBy([] { LoadDll(); });
  ASSERT_GE(recording.events().size(), 2U);
  EXPECT_EQ(recording.events()[0], "puts " + kBanner);
  EXPECT_EQ(recording.events()[1], "dlopen " + kLibraryName);
  EXPECT_EQ(recording.eventsOf("dlopen").size(), 1U);
}

TEST_F(LibraryTest, PointersHoldTheLibrarysFunctions) {
  linesPrintedBy([] { LoadDll(); });
  int set = 0;
  for (const void* pointer : aglPointers) set += pointer != nullptr ? 1 : 0;
  EXPECT_EQ(set, 443);
  EXPECT_NE(pAGL_Symbolic_ReadMixEx, nullptr);
  EXPECT_NE(pAGL_Symbolic_ReadMixEx, &AGL_Symbolic_ReadMixEx);
  EXPECT_EQ(pAGLSym_OpenProject, nullptr);
}

// No earlier handle is closed: that the library stays open is deliberate.
TEST_F(LibraryTest, EveryLoadDllAddsAReference) {
  linesPrintedBy([] {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(LoadDll(), 1);
  });
  EXPECT_EQ(unloadAll(kLibraryName), 3);
}

TEST_F(LibraryTest, UnloadDynClosesOnceAndClearsEveryPointer) {
  linesPrintedBy([] {
    LoadDll();
    LoadDll();
  });
  const Recording recording;
  AGL_UnloadDyn();
  EXPECT_EQ(recording.events(), Lines{"dlclose"});
  EXPECT_EQ(hLib, nullptr);
  for (const void* pointer : aglPointers) EXPECT_EQ(pointer, nullptr);
  EXPECT_EQ(unloadAll(kLibraryName), 1);
}

TEST_F(LibraryTest, CallAfterUnloadDynLoadsAgain) {
  linesPrintedBy([] { AGL_GetOptions(); });
  AGL_UnloadDyn();
  EXPECT_EQ(linesPrintedBy([] { EXPECT_NE(AGL_GetOptions(), AGL40_LIB_NOT_LOADED); }),
            (Lines{kBanner, kHalfWay}));
}

// Eight functions a round, until each of the table has had its turn.
TEST_F(LibraryTest, FirstCallsFromSeveralThreadsAllReachTheLibrary) {
  constexpr std::size_t kThreads = 8;
  std::vector<const Row*> resolved;
  for (const Row& row : rows()) {
    if (row.resolved) resolved.push_back(&row);
  }
  ASSERT_EQ(resolved.size(), 438U);
  for (std::size_t first = 0; first < resolved.size(); first += kThreads) {
    std::atomic<std::size_t> ready = 0;
    std::atomic<std::size_t> reached = 0;
    linesPrintedBy([&] {
      std::vector<std::thread> threads;
      threads.reserve(kThreads);
      for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
          const Row& row = *resolved[(first + i) % resolved.size()];
          ++ready;
          while (ready < kThreads) std::this_thread::yield();
          if (row.call(argumentsFor(row)) == row.fakeResult) ++reached;
        });
      }
      for (std::thread& thread : threads) thread.join();
    });
    EXPECT_EQ(reached, kThreads) << resolved[first]->name;
    unloadAll(kLibraryName);
  }
}
