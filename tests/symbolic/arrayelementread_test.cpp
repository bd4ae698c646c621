// SPDX-License-Identifier: MIT
// The read of a whole array behind the path of one of its elements.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr unsigned long kUntouched = 4711;

class ArrayElementRead : public ::testing::Test {
 protected:
  ArrayElementRead() {
    loader.set_station_id(7);
    loader.root_schema_node = FakeLibrary::kRoot;
    library.add("Matrix", Item::UInt8({1, 2, 3, 4, 5, 6}).array(0, 1).array(0, 2));
  }

  Bytes read(const std::string& path) {
    Bytes data;
    printed =
        printed_by([&] { data = loader.ReadDataFromPlcByPathfor_multi_array_transfer(path, &position); });
    return data;
  }

  FakeLibrary library;
  SymbolsLoader loader;
  std::string printed;
  unsigned long position = kUntouched;
};

TEST_F(ArrayElementRead, ReturnsTheWholeArrayAndTheElementsPosition) {
  EXPECT_EQ(read("Matrix[1,2]"), (Bytes{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(position, 5U);
  EXPECT_EQ(printed, "");
  const auto log = library.log();
  ASSERT_GE(log.size(), 3U);
  EXPECT_EQ(log[0], "AGL_Symbolic_GetNodeByPath(root, \"Matrix\", &0, &0)");
  EXPECT_EQ(log[1], "AGL_Symbolic_GetArrayIndexAsLinearIndex(node:Matrix, [1, 2], 2, &0)");
  EXPECT_EQ(log[2], "AGL_Symbolic_CreateAccessByPath(root, \"Matrix\", &0, &0)");
  EXPECT_EQ(library.log("AGL_Symbolic_ReadMixEx"),
            Lines{"AGL_Symbolic_ReadMixEx(7, [access:Matrix], 1, &0, 5000, 0)"});
}

TEST_F(ArrayElementRead, NeverFreesTheNode) {
  read("Matrix[1,2]");
  EXPECT_EQ(library.liveAccesses(), 0);
  EXPECT_EQ(library.liveNodes(), 2);  // its own and that of the bounds
}

TEST_F(ArrayElementRead, FreesTheZeroHandleWhenTheArrayIsUnknown) {
  EXPECT_THAT(read("Nope[1,2]"), IsEmpty());
  EXPECT_EQ(position, kUntouched);
  EXPECT_EQ(printed, "AGL_Symbolic_GetNodeByPath error \n");
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetNodeByPath(root, \"Nope\", &0, &0)",
                                         "AGL_Symbolic_FreeHandle(0)"));
}

// The label names another function than the one that failed; it stays.
TEST_F(ArrayElementRead, FreesTheZeroHandleWhenThereIsNoSuchElement) {
  EXPECT_THAT(read("Matrix[7,7]"), IsEmpty());
  EXPECT_EQ(position, kUntouched);
  EXPECT_EQ(printed, "Symbolic_CreateArrayAccessByIndex error \n");
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_GetNodeByPath(root, \"Matrix\", &0, &0)",
                          "AGL_Symbolic_GetArrayIndexAsLinearIndex(node:Matrix, [7, 7], 2, &0)",
                          "AGL_Symbolic_FreeHandle(0)"));
}

TEST_F(ArrayElementRead, GivesThePositionEvenWhenTheReadFails) {
  library.fail("AGL_Symbolic_ReadMixEx", -17);
  EXPECT_THAT(read("Matrix[1,0]"), IsEmpty());
  EXPECT_EQ(position, 3U);
}

// A name may hold a bracket that nothing closes: it is no element's, and the array is asked for without
// indices.
TEST_F(ArrayElementRead, TakesNoIndexFromABracketThatStaysOpen) {
  library.add("Odd[1", Item::UInt8({1, 2}).array(0, 1));
  EXPECT_THAT(read("Odd[1"), IsEmpty());
  EXPECT_EQ(library.log("AGL_Symbolic_GetArrayIndexAsLinearIndex"),
            Lines{"AGL_Symbolic_GetArrayIndexAsLinearIndex(node:Odd[1, [], 0, &0)"});
}

struct IndexCase {
  const char* path;
  const char* arguments;
};

class ElementIndices : public ::testing::TestWithParam<IndexCase> {};

TEST_P(ElementIndices, AreReadAsAStreamReadsNumbers) {
  FakeLibrary library;
  SymbolsLoader loader;
  loader.root_schema_node = FakeLibrary::kRoot;
  library.add("Matrix", Item::UInt8({1, 2}).array(0, 1));
  unsigned long position = 0;
  loader.ReadDataFromPlcByPathfor_multi_array_transfer(GetParam().path, &position);
  EXPECT_EQ(library.log("AGL_Symbolic_GetArrayIndexAsLinearIndex"),
            Lines{std::string("AGL_Symbolic_GetArrayIndexAsLinearIndex(node:Matrix, ") +
                  GetParam().arguments + ", &0)"});
}

INSTANTIATE_TEST_SUITE_P(
    All, ElementIndices,
    ::testing::Values(IndexCase{"Matrix[1]", "[1], 1"}, IndexCase{"Matrix[x]", "[0], 1"},
                      IndexCase{"Matrix[x,2]", "[0, 2], 2"}, IndexCase{"Matrix[ 1,\t2]", "[1, 2], 2"},
                      IndexCase{"Matrix[1a,2 3]", "[1, 2], 2"}, IndexCase{"Matrix[-1,+2]", "[-1, 2], 2"},
                      IndexCase{"Matrix[,2]", "[0, 2], 2"}, IndexCase{"Matrix[1,]", "[1, 0], 2"},
                      IndexCase{"Matrix[]", "[0], 1"}, IndexCase{"Matrix[007]", "[7], 1"},
                      IndexCase{"Matrix[1.9]", "[1], 1"},
                      // No brackets, no indices.
                      IndexCase{"Matrix", "[], 0"}));

TEST_F(ArrayElementRead, SurvivesBracketsInTheWrongOrder) {
  library.add("]A[", Item::UInt8(1));
  EXPECT_THAT(read("]A["), IsEmpty());
}

agl_int32_t minus_one(HandleType, const agl_int32_t*, agl_int32_t, agl_int32_t* linear) {
  *linear = -1;
  return AGL40_SUCCESS;
}

TEST_F(ArrayElementRead, WidensANegativePositionWithItsSign) {
  pAGL_Symbolic_GetArrayIndexAsLinearIndex = minus_one;
  EXPECT_EQ(read("Matrix[0,0]").size(), 6U);
  EXPECT_EQ(position, 0xFFFFFFFFFFFFFFFFUL);
}

}  // namespace
