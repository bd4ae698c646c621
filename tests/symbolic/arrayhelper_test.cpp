// SPDX-License-Identifier: MIT
#include "symbolic/arrayhelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct NameCase {
  std::string name;
  bool multi_dimensional;
};

class MultiDimensionNames : public ::testing::TestWithParam<NameCase> {};

TEST_P(MultiDimensionNames, AreToldByTheLastBracketGroup) {
  EXPECT_EQ(IsMultiDimensionArray(GetParam().name), GetParam().multi_dimensional) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(All, MultiDimensionNames,
                         ::testing::Values(NameCase{"A[1,2]", true}, NameCase{"A[1]", false},
                                           NameCase{"A[1,2].B", false}, NameCase{"A[1,2][3]", false},
                                           NameCase{"A[1][2,3]", true}, NameCase{"", false},
                                           NameCase{"A", false}, NameCase{"]", false}, NameCase{"[]", false},
                                           NameCase{"[,]", true}, NameCase{"A,B[1]", false},
                                           // No bracket opens, yet the comma is met first: still true.
                                           NameCase{"A,1]", true}));

struct SuffixCase {
  std::string path;
  std::string array;
};

class ArraySuffixes : public ::testing::TestWithParam<SuffixCase> {};

TEST_P(ArraySuffixes, AreCutOff) {
  EXPECT_EQ(RemoveLastArraySymbol(GetParam().path), GetParam().array) << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(All, ArraySuffixes,
                         ::testing::Values(SuffixCase{"A.B[1,2]", "A.B"}, SuffixCase{"A[1][2]", "A[1]"},
                                           SuffixCase{"A.B[0..3]", "A.B"}, SuffixCase{"A.B", "A.B"},
                                           SuffixCase{"A[1].B", "A[1].B"}, SuffixCase{"A[]", "A"},
                                           SuffixCase{"A[1", "A[1"}, SuffixCase{"[1][2]", "[1]"},
                                           SuffixCase{"A[1]]", "A"}));

// Deliberate: the erase count is the position of the closing bracket, which is one short here.
TEST(RemoveLastArraySymbol, LeavesTheClosingBracketOfATextThatBeginsWithItsOnlyBracket) {
  EXPECT_EQ(RemoveLastArraySymbol("[3]"), "]");
  EXPECT_EQ(RemoveLastArraySymbol("[1,2]"), "]");
}

TEST(RemoveLastArraySymbol, RaisesOutOfRangeForAClosingBracketWithoutAnOpeningOne) {
  const auto message = raised_by<std::out_of_range>([] { RemoveLastArraySymbol("A]"); });
  EXPECT_THAT(message, HasSubstr("basic_string::erase"));
}

TEST(RemoveLastArraySymbol, RaisesOutOfRangeForEmptyText) {
  const auto message = raised_by<std::out_of_range>([] { RemoveLastArraySymbol(""); });
  EXPECT_THAT(message, HasSubstr("basic_string::erase"));
}

TEST(ArrayDescription, AppendsTheBoundsOfEveryDimensionInOrder) {
  FakeLibrary library;
  library.add("A.Matrix", Item::Int16({}).array(1, 4).array(0, 9));
  std::vector<unsigned> lower{77};
  std::vector<unsigned> upper;
  EXPECT_TRUE(get_array_description(FakeLibrary::kRoot, "A.Matrix[2,3]", lower, upper));
  EXPECT_THAT(lower, ElementsAre(77, 1, 0));
  EXPECT_THAT(upper, ElementsAre(4, 9));
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetNodeByPath(root, \"A.Matrix\", &0, &0)",
                                         "AGL_Symbolic_GetArrayDimensionCount(node:A.Matrix, &0)",
                                         "AGL_Symbolic_GetArrayDimension(node:A.Matrix, 0, &0, &0)",
                                         "AGL_Symbolic_GetArrayDimension(node:A.Matrix, 1, &0, &0)"));
}

TEST(ArrayDescription, GivesANegativeBoundAsItsUnsignedPattern) {
  FakeLibrary library;
  library.add("A", Item::Int16({}).array(-2, -1));
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  EXPECT_TRUE(get_array_description(FakeLibrary::kRoot, "A", lower, upper));
  EXPECT_THAT(lower, ElementsAre(0xFFFFFFFEU));
  EXPECT_THAT(upper, ElementsAre(0xFFFFFFFFU));
}

TEST(ArrayDescription, IsTrueAndEmptyForANodeThatIsNoArray) {
  FakeLibrary library;
  library.add("A", Item::Int16(1));
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  EXPECT_TRUE(get_array_description(FakeLibrary::kRoot, "A", lower, upper));
  EXPECT_THAT(lower, IsEmpty());
  EXPECT_THAT(upper, IsEmpty());
}

TEST(ArrayDescription, GoesOnWithAZeroHandleWhenTheNodeIsUnknownAndFailsSilentlyThen) {
  FakeLibrary library;
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  const auto printed =
      printed_by([&] { EXPECT_FALSE(get_array_description(FakeLibrary::kRoot, "Nope[1]", lower, upper)); });
  EXPECT_EQ(printed, "");
  // No message is fetched either.
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetNodeByPath(root, \"Nope\", &0, &0)",
                                         "AGL_Symbolic_GetArrayDimensionCount(0, &0)"));
}

TEST(ArrayDescription, KeepsTheBoundsBeforeOneThatFails) {
  FakeLibrary library;
  library.add("A", Item::Int16({}).array(1, 2).array(3, 4).array(5, 6));
  library.failCall("AGL_Symbolic_GetArrayDimension", 2, -9);
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  EXPECT_FALSE(get_array_description(FakeLibrary::kRoot, "A", lower, upper));
  EXPECT_THAT(lower, ElementsAre(1));
  EXPECT_THAT(upper, ElementsAre(2));
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-9, buffer, 256)");
}

TEST(ArrayDescription, NeverFreesTheNode) {
  FakeLibrary library;
  library.add("A", Item::Int16({}).array(1, 2));
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  get_array_description(FakeLibrary::kRoot, "A", lower, upper);
  EXPECT_EQ(library.count("AGL_Symbolic_FreeHandle"), 0);
  EXPECT_EQ(library.liveNodes(), 1);
}

agl_int32_t huge_dimension_count(HandleType, agl_int32_t* count) {
  *count = std::numeric_limits<agl_int32_t>::max();
  return AGL40_SUCCESS;
}
agl_int32_t negative_count(HandleType, agl_int32_t* count) {
  *count = -1;
  return AGL40_SUCCESS;
}

TEST(ArrayDescription, OfAnEmptyPathRaises) {
  FakeLibrary library;
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  raised_by<std::out_of_range>([&] { get_array_description(FakeLibrary::kRoot, "", lower, upper); });
  EXPECT_TRUE(library.log().empty());
}

TEST(ArrayDescription, StopsAtTheFirstDimensionThatAHugeCountPromisesInVain) {
  FakeLibrary library;
  library.add("A", Item::Int16({}).array(1, 2));
  pAGL_Symbolic_GetArrayDimensionCount = huge_dimension_count;
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  EXPECT_FALSE(get_array_description(FakeLibrary::kRoot, "A", lower, upper));
  EXPECT_THAT(lower, ElementsAre(1));
}

agl_int32_t any_dimension(HandleType, agl_int32_t, agl_int32_t* lower, agl_int32_t* upper) {
  *lower = 0;
  *upper = 1;
  return AGL40_SUCCESS;
}
agl_int32_t any_index(HandleType, agl_int32_t, agl_int32_t* index) {
  *index = 7;
  return AGL40_SUCCESS;
}

TEST(ArrayDescription, DoesNotBelieveMoreDimensionsThanPlcsCanHave) {
  FakeLibrary library;
  library.add("A", Item::Int16({}).array(1, 2));
  pAGL_Symbolic_GetArrayDimensionCount = huge_dimension_count;
  pAGL_Symbolic_GetArrayDimension = any_dimension;
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  EXPECT_FALSE(get_array_description(FakeLibrary::kRoot, "A", lower, upper));
  EXPECT_LE(lower.size(), 1024U);
}

TEST(ArrayDescription, TakesANegativeDimensionCountForNoArray) {
  FakeLibrary library;
  library.add("A", Item::Int16({}).array(1, 2));
  pAGL_Symbolic_GetArrayDimensionCount = negative_count;
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  EXPECT_TRUE(get_array_description(FakeLibrary::kRoot, "A", lower, upper));
  EXPECT_THAT(lower, IsEmpty());
}

TEST(NonZeroStart, LooksAtEveryLowerBound) {
  EXPECT_FALSE(array_index_non_zero_start({}));
  EXPECT_FALSE(array_index_non_zero_start({0}));
  EXPECT_FALSE(array_index_non_zero_start({0, 0, 0}));
  EXPECT_TRUE(array_index_non_zero_start({1}));
  EXPECT_TRUE(array_index_non_zero_start({1, 0, 0}));
  EXPECT_TRUE(array_index_non_zero_start({0, 0, 1}));
  EXPECT_TRUE(array_index_non_zero_start({0xFFFFFFFFU}));
}

TEST(FillSize, IsTheLowerBoundOfAOneDimensionalArray) {
  EXPECT_EQ(get_non_zero_base_array_fill_size({}, {}), 0U);
  EXPECT_EQ(get_non_zero_base_array_fill_size({3}, {10}), 3U);
  EXPECT_EQ(get_non_zero_base_array_fill_size({3}, {}), 3U);
}

TEST(FillSize, CountsBothDimensionsOfAMatrix) {
  EXPECT_EQ(get_non_zero_base_array_fill_size({2, 1}, {5, 3}), 2U * (3 + 1) + 1);
}

// Deliberate: each step sets the total instead of adding to it.
TEST(FillSize, CountsOnlyTheLastTwoOfThreeDimensions) {
  EXPECT_EQ(get_non_zero_base_array_fill_size({1, 2, 3}, {4, 5, 6}), 17U);
  EXPECT_EQ(get_non_zero_base_array_fill_size({1000, 2, 3}, {4, 5, 6}), 17U);
}

TEST(FillSize, WrapsAt32Bits) {
  EXPECT_EQ(get_non_zero_base_array_fill_size({0x10000, 5}, {1, 0xFFFF}), 5U);
  EXPECT_EQ(get_non_zero_base_array_fill_size({7, 5}, {1, 0xFFFFFFFFU}), 5U);
}

TEST(FillSize, RaisesOutOfRangeWhenUpperBoundsAreMissing) {
  const auto message = raised_by<std::out_of_range>([] { get_non_zero_base_array_fill_size({1, 2}, {4}); });
  EXPECT_EQ(message, "vector::_M_range_check: __n (which is 1) >= this->size() (which is 1)");
}

TEST(Rebase, PutsTheFillInFront) {
  const Bytes data{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  Bytes expected(6, 0);
  expected.insert(expected.end(), data.begin(), data.end());
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(2, data, {3}, {10}), expected);
}

TEST(Rebase, LeavesDataThatStartsAtZeroAlone) {
  const Bytes data{1, 2, 3};
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(2, data, {0}, {10}), data);
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(2, data, {0, 0}, {10, 10}), data);
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(2, data, {}, {}), data);
}

TEST(Rebase, LeavesDataOfElementSizeZeroAlone) {
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(0, {1, 2, 3}, {5}, {10}), (Bytes{1, 2, 3}));
}

TEST(Rebase, IsOnlyFillForEmptyData) {
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(2, {}, {1}, {4}), (Bytes{0, 0}));
}

TEST(Rebase, ComputesTheFillModulo32Bits) {
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(2, {1, 2}, {0x80000000U}, {0x80000001U}),
            (Bytes{1, 2}));
  EXPECT_EQ(resize_data_include_an_array_index_to_zero_start(2, {1, 2}, {0x80000001U}, {0x80000001U}),
            (Bytes{0, 0, 1, 2}));
}

// Up to 4 GiB of zeros would stand in front: no more is built than the runtime can address.
TEST(Rebase, BuildsNoMoreOfANegativeLowerBoundsFillThanTheRuntimeCanAddress) {
  constexpr std::size_t kAddressable = 65536;
  constexpr std::size_t kDataBuffer = 4096;
  for (const unsigned element_size : {1U, 2U, 4U, 8U}) {
    const auto data =
        resize_data_include_an_array_index_to_zero_start(element_size, {1, 2, 3, 4}, {0xFFFFFFFFU}, {5});
    const std::size_t seen = kAddressable * element_size + kDataBuffer;
    ASSERT_GE(data.size(), seen);
    EXPECT_LE(data.size(), std::size_t{1} << 20);
    EXPECT_TRUE(std::all_of(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(seen),
                            [](unsigned char byte) { return byte == 0; }));
  }
}

TEST(Rebase, SurvivesAnAbsurdElementSize) {
  const auto data = resize_data_include_an_array_index_to_zero_start(0xFFFFFFFFU, {1}, {3}, {5});
  ASSERT_FALSE(data.empty());
  EXPECT_EQ(data[0], 0);
}

TEST(ParseIndex, WritesIndicesInBrackets) {
  FakeLibrary library;
  library.add("X", Item::Int16(1).index(2).index(5));
  EXPECT_EQ(ArrayHelper::ParseIndex(library.node("X")), "[2,5]");
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_GetIndexSize(node:X, &0)", "AGL_Symbolic_GetIndex(node:X, 0, &0)",
                          "AGL_Symbolic_GetIndex(node:X, 1, &0)"));
}

TEST(ParseIndex, WritesEmptyBracketsForANodeWithoutIndex) {
  FakeLibrary library;
  library.add("X", Item::Int16(1));
  EXPECT_EQ(ArrayHelper::ParseIndex(library.node("X")), "[]");
}

TEST(ParseIndex, EndsWhenTheLibraryNamesNoEnd) {
  FakeLibrary library;
  library.add("X", Item::Int16(1));
  pAGL_Symbolic_GetIndexSize = huge_dimension_count;
  pAGL_Symbolic_GetIndex = any_index;
  pAGL_Symbolic_GetArrayDimensionCount = huge_dimension_count;
  pAGL_Symbolic_GetArrayDimension = any_dimension;
  EXPECT_EQ(ArrayHelper::ParseIndex(library.node("X")).size(), 2 * 1024U + 1);
  EXPECT_EQ(ArrayHelper::ParseArrayDimensions(library.node("X")).size(), 7 * 1024U + 1);
}

TEST(ParseIndex, WritesNegativeIndicesSigned) {
  FakeLibrary library;
  library.add("X", Item::Int16(1).index(-3));
  EXPECT_EQ(ArrayHelper::ParseIndex(library.node("X")), "[-3]");
}

TEST(ParseIndex, GoesOnAfterErrorsWithZero) {
  FakeLibrary library;
  library.add("X", Item::Int16(1).index(2).index(5).index(9));
  library.failCall("AGL_Symbolic_GetIndex", 2, -4);
  EXPECT_EQ(ArrayHelper::ParseIndex(library.node("X")), "[2,0,9]");
  EXPECT_THAT(library.log("AGL_GetErrorMsg"), ElementsAre("AGL_GetErrorMsg(-4, buffer, 256)"));
  library.fail("AGL_Symbolic_GetIndexSize", -5);
  EXPECT_EQ(ArrayHelper::ParseIndex(library.node("X")), "[]");
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-5, buffer, 256)");
}

TEST(ParseIndex, TakesANegativeSizeForNone) {
  FakeLibrary library;
  library.add("X", Item::Int16(1));
  pAGL_Symbolic_GetIndexSize = negative_count;
  EXPECT_EQ(ArrayHelper::ParseIndex(library.node("X")), "[]");
}

TEST(ParseArrayDimensions, WritesBoundsInBraces) {
  FakeLibrary library;
  library.add("X", Item::Int16({}).array(0, 3).array(1, 5));
  EXPECT_EQ(ArrayHelper::ParseArrayDimensions(library.node("X")), "{{0..3},{1..5}}");
}

TEST(ParseArrayDimensions, WritesEmptyBracesForNoArray) {
  FakeLibrary library;
  library.add("X", Item::Int16(1));
  EXPECT_EQ(ArrayHelper::ParseArrayDimensions(library.node("X")), "{}");
}

TEST(ParseArrayDimensions, WritesNegativeBoundsSigned) {
  FakeLibrary library;
  library.add("X", Item::Int16({}).array(-4, -1));
  EXPECT_EQ(ArrayHelper::ParseArrayDimensions(library.node("X")), "{{-4..-1}}");
}

TEST(ParseArrayDimensions, GoesOnAfterErrorsWithZero) {
  FakeLibrary library;
  library.add("X", Item::Int16({}).array(1, 3).array(2, 5));
  library.failCall("AGL_Symbolic_GetArrayDimension", 1, -4);
  EXPECT_EQ(ArrayHelper::ParseArrayDimensions(library.node("X")), "{{0..0},{2..5}}");
  EXPECT_THAT(library.log("AGL_GetErrorMsg"), ElementsAre("AGL_GetErrorMsg(-4, buffer, 256)"));
  library.fail("AGL_Symbolic_GetArrayDimensionCount", -5);
  EXPECT_EQ(ArrayHelper::ParseArrayDimensions(library.node("X")), "{}");
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-5, buffer, 256)");
}

TEST(ParseArrayDimensions, TakesANegativeCountForNone) {
  FakeLibrary library;
  library.add("X", Item::Int16(1));
  pAGL_Symbolic_GetArrayDimensionCount = negative_count;
  EXPECT_EQ(ArrayHelper::ParseArrayDimensions(library.node("X")), "{}");
}

}  // namespace
