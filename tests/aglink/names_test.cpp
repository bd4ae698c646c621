// SPDX-License-Identifier: MIT
// functions.def against lists that were written down apart from it.
#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"
#include "aglink/functiontable.h"
#include "tests/aglink/world.h"

using aglink::functionTable;
using aglink::LibraryFunction;
using aglink::Lookup;

TEST(FunctionTable, NamesTheForwardedFunctionsInTheHeadersOrder) {
  std::vector<std::string> forwarded;
  for (const LibraryFunction& function : functionTable) {
    if (function.forwarded) forwarded.emplace_back(function.name);
  }
  EXPECT_EQ(forwarded.size(), 576U);
  EXPECT_EQ(forwarded, expectedNames());
}

TEST(FunctionTable, FamiliesHaveTheirSizes) {
  const std::vector<int> expected{19, 17, 3, 23, 33, 7,  24, 16,  4,  15, 28,
                                  4,  4,  7, 20, 24, 15, 78, 127, 14, 10, 84};
  std::vector<int> sizes;
  for (const std::string& line : readList(EXPECTED_NAMES)) {
    if (line.starts_with("[")) {
      sizes.push_back(0);
    } else {
      ++sizes.back();
    }
  }
  EXPECT_EQ(sizes, expected);
}

TEST(FunctionTable, HasFivePointersWithoutAForwardingFunction) {
  std::set<std::string> local;
  for (const LibraryFunction& function : functionTable) {
    if (!function.forwarded) local.insert(function.name);
  }
  EXPECT_EQ(local, (std::set<std::string>{"AGL_GetBit", "AGL_SetBit", "AGL_ResetBit", "AGL_SetBitVal",
                                          "AGL_UnloadDyn"}));
  EXPECT_EQ(functionTable.size(), 581U);
  EXPECT_EQ(std::size(aglPointers), 581U);
}

TEST(FunctionTable, LeavesOut138NamesAndResolves443) {
  std::vector<std::string> unresolved;
  for (const LibraryFunction& function : functionTable) {
    if (function.lookup == Lookup::Unresolved) unresolved.emplace_back(function.name);
  }
  EXPECT_EQ(unresolved, expectedUnresolved());
  EXPECT_EQ(unresolved.size(), 138U);
  EXPECT_EQ(functionTable.size() - unresolved.size(), 443U);
}

TEST(FunctionTable, HasNoNameTwice) {
  std::set<std::string> names;
  for (const LibraryFunction& function : functionTable) names.insert(function.name);
  EXPECT_EQ(names.size(), functionTable.size());
}

// The pointers are defined in assembly as one array; C++ refers to them by name.
TEST(Pointers, LieInTheOrderOfTheTable) {
  const void* const named[] = {
#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters) &p##Name,
#define AGL_LOCAL_FUNCTION(Result, Name, Parameters) &p##Name,
#include "aglink/functions.def"
  };
  ASSERT_EQ(std::size(named), std::size(aglPointers));
  for (std::size_t i = 0; i < std::size(named); ++i) {
    EXPECT_EQ(named[i], &aglPointers[i]) << functionTable.at(i).name;
  }
}
