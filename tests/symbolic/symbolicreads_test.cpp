// SPDX-License-Identifier: MIT
// Batched and single reads. arrayelementread_test.cpp has the read of a whole array behind an element path.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class SymbolicRead : public ::testing::Test {
 protected:
  SymbolicRead() {
    loader.set_station_id(7);
    loader.root_schema_node = FakeLibrary::kRoot;
    loader.loader_state = SymbolsLoader::Success;
  }

  std::map<std::string, Bytes> batch(const std::vector<std::string>& paths) {
    std::map<std::string, Bytes> result;
    printed = printed_by([&] {
      for (const auto& [path, values] : loader.ReadMapMultiDataFromPlcByPath(paths, error)) {
        result[path] = values.datas;
      }
    });
    return result;
  }

  using Result = std::map<std::string, Bytes>;

  FakeLibrary library;
  SymbolsLoader loader;
  std::string printed;
  int error = 42;  // only ever set, never cleared
};

using BatchRead = SymbolicRead;
using SingleRead = SymbolicRead;

TEST_F(BatchRead, RunsOneJobForAllPaths) {
  library.add("A", Item::Int16(-2));
  library.add("B", Item::UInt8({1, 2}).array(0, 1));
  EXPECT_EQ(batch({"B", "A"}), (Result{{"A", {0xFE, 0xFF}}, {"B", {1, 2}}}));
  EXPECT_EQ(error, 42);
  EXPECT_EQ(printed, "");
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_CreateAccessByPath(root, \"B\", &0, &0)",
                          "AGL_Symbolic_GetAccessBufferSize(access:B, &0)",
                          "AGL_Symbolic_CreateAccessByPath(root, \"A\", &0, &0)",
                          "AGL_Symbolic_GetAccessBufferSize(access:A, &0)",
                          "AGL_Symbolic_ReadMixEx(7, [access:B, access:A], 2, &0, 5000, 0)",
                          "AGL_Symbolic_GetAccessBufferElementCount(access:B, &0)",
                          "AGL_Symbolic_GetAccessElementValueType(access:B, &-1)",
                          "AGL_Symbolic_GetAccessBufferUInt8(access:B, buffer, 2, 0, &0)",
                          "AGL_Symbolic_GetAccessElementValueType(access:B, &-1)",
                          "AGL_Symbolic_GetAccessBufferUInt8(access:B, buffer, 2, 1, &0)",
                          "AGL_Symbolic_GetAccessBufferElementSize(access:B, &0)",
                          "AGL_Symbolic_GetNodeByPath(root, \"B\", &0, &0)",
                          "AGL_Symbolic_GetArrayDimensionCount(node:B, &0)",
                          "AGL_Symbolic_GetArrayDimension(node:B, 0, &0, &0)",
                          "AGL_Symbolic_GetAccessBufferElementCount(access:A, &0)",
                          "AGL_Symbolic_GetAccessElementValueType(access:A, &-1)",
                          "AGL_Symbolic_GetAccessBufferInt16(access:A, buffer, 2, 0, &0)",
                          "AGL_Symbolic_GetAccessBufferElementSize(access:A, &0)",
                          "AGL_Symbolic_GetNodeByPath(root, \"A\", &0, &0)",
                          "AGL_Symbolic_GetArrayDimensionCount(node:A, &0)",
                          "AGL_Symbolic_FreeHandle(access:B)", "AGL_Symbolic_FreeHandle(access:A)"));
}

TEST_F(BatchRead, HandsOverZeroedRecordsAndBuffersOfTheSizeAskedFor) {
  library.add("A", Item::Int16({1, 2, 3}));
  batch({"A"});
  ASSERT_THAT(library.reads(), SizeIs(1));
  const auto job = library.reads()[0];
  EXPECT_EQ(job.connection, 7);
  ASSERT_THAT(job.accesses, SizeIs(1));
  EXPECT_EQ(job.accesses[0].length, 6);
  EXPECT_EQ(job.accesses[0].bytes, Bytes(6, 0));
  EXPECT_EQ(job.accesses[0].result_on_entry, 0);
  EXPECT_EQ(job.accesses[0].serror_on_entry, 0);
}

TEST_F(BatchRead, RunsAJobForNoPathAtAll) {
  EXPECT_THAT(batch({}), IsEmpty());
  EXPECT_EQ(error, 42);
  EXPECT_EQ(printed, "");
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_ReadMixEx(7, [], 0, &0, 5000, 0)"));
}

TEST_F(BatchRead, KeepsAnUnknownPathInTheJobAndReturnsItEmpty) {
  library.add("A", Item::UInt8(1));
  library.add("C", Item::UInt8(3));
  EXPECT_EQ(batch({"A", "Nope", "C"}), (Result{{"A", {1}}, {"C", {3}}, {"Nope", {}}}));
  EXPECT_EQ(error, 1);
  EXPECT_EQ(printed,
            "AGL_Symbolic_CreateAccessByPath\n"
            "AGL_Symbolic_CreateAccessByPath ITEMs.at(i).c_str() = Nope\n"
            "AGL_Symbolic_GetAccessBufferSize\n"
            "AGL_Symbolic_GetAccessBufferSize ITEMs.at(i).c_str() = Nope\n");
  EXPECT_EQ(library.log("AGL_Symbolic_ReadMixEx"),
            Lines{"AGL_Symbolic_ReadMixEx(7, [access:A, 0, access:C], 3, &0, 5000, 0)"});
  // Of the failed access nothing is asked after the job; its zero handle is freed like the others.
  EXPECT_EQ(library.count("AGL_Symbolic_GetNodeByPath"), 2);
  EXPECT_THAT(library.log("AGL_Symbolic_FreeHandle"),
              ElementsAre("AGL_Symbolic_FreeHandle(access:A)", "AGL_Symbolic_FreeHandle(0)",
                          "AGL_Symbolic_FreeHandle(access:C)"));
  // No message is fetched for any of it.
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST_F(BatchRead, UsesAHandleThatArrivedDespiteAFailure) {
  library.add("A", Item::UInt8(9));
  library.failAfterwards("AGL_Symbolic_CreateAccessByPath", -3);
  EXPECT_EQ(batch({"A"}), (Result{{"A", {9}}}));
  EXPECT_EQ(error, 1);
  EXPECT_EQ(printed,
            "AGL_Symbolic_CreateAccessByPath\nAGL_Symbolic_CreateAccessByPath ITEMs.at(i).c_str() = A\n");
}

TEST_F(BatchRead, KeepsAnAccessOfUnknownSizeInTheJob) {
  library.add("A", Item::UInt8(9).failBufferSize(-3));
  EXPECT_EQ(batch({"A"}), (Result{{"A", {9}}}));
  EXPECT_EQ(error, 1);
  EXPECT_EQ(printed,
            "AGL_Symbolic_GetAccessBufferSize\nAGL_Symbolic_GetAccessBufferSize ITEMs.at(i).c_str() = A\n");
  EXPECT_EQ(library.reads()[0].accesses[0].length, 0);
}

TEST_F(BatchRead, PrintsAPathWithPercentSignsAsItIs) {
  batch({"%s%n"});
  EXPECT_EQ(printed,
            "AGL_Symbolic_CreateAccessByPath\n"
            "AGL_Symbolic_CreateAccessByPath ITEMs.at(i).c_str() = %s%n\n"
            "AGL_Symbolic_GetAccessBufferSize\n"
            "AGL_Symbolic_GetAccessBufferSize ITEMs.at(i).c_str() = %s%n\n");
}

TEST_F(BatchRead, ReturnsNothingWhenTheJobFails) {
  library.add("A", Item::UInt8(1));
  library.add("B", Item::UInt8(2));
  library.fail("AGL_Symbolic_ReadMixEx", -17);
  library.job_serror = 0x8104;
  EXPECT_THAT(batch({"A", "B"}), IsEmpty());
  EXPECT_EQ(error, -17);
  EXPECT_EQ(printed, "result = ffffffef\nsError = 8104\nrws.size() = 2\n");
  // The handles are freed all the same.
  EXPECT_EQ(library.liveAccesses(), 0);
  EXPECT_EQ(library.doubleFrees(), 0);
  EXPECT_EQ(library.count("AGL_Symbolic_GetAccessBufferElementCount"), 0);
}

TEST_F(BatchRead, LetsTheJobsResultOverrideAFailedPreparation) {
  library.fail("AGL_Symbolic_ReadMixEx", -17);
  batch({"Nope"});
  EXPECT_EQ(error, -17);
}

TEST_F(BatchRead, GivesEmptyBytesForAnAccessThatFailedInAGoodJob) {
  library.add("A", Item::UInt8(1));
  library.add("B", Item::UInt8(2).result(-5));
  EXPECT_EQ(batch({"A", "B"}), (Result{{"A", {1}}, {"B", {}}}));
  EXPECT_EQ(error, 42);
  EXPECT_EQ(printed, "");
  EXPECT_EQ(library.count("AGL_Symbolic_GetAccessBufferElementCount"), 1);
  EXPECT_EQ(library.liveAccesses(), 0);
}

TEST_F(BatchRead, FreesEveryHandleOnceAndNoNode) {
  library.add("A", Item::UInt8(1));
  library.add("B", Item::UInt8({1, 2}).array(1, 2));
  batch({"A", "B", "A", "Nope"});
  EXPECT_EQ(library.liveAccesses(), 0);
  EXPECT_EQ(library.doubleFrees(), 0);
  EXPECT_EQ(library.zeroFrees(), 1);
  EXPECT_EQ(library.liveNodes(), 3);
}

TEST_F(BatchRead, IgnoresFailuresToFree) {
  library.add("A", Item::UInt8(1));
  library.fail("AGL_Symbolic_FreeHandle", -3);
  EXPECT_EQ(batch({"A"}), (Result{{"A", {1}}}));
  EXPECT_EQ(error, 42);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST_F(BatchRead, ReturnsAPathThatOccursTwiceOnce) {
  library.add("A", Item::UInt8(1));
  EXPECT_EQ(batch({"A", "A"}), (Result{{"A", {1}}}));
  EXPECT_EQ(library.log("AGL_Symbolic_ReadMixEx"),
            Lines{"AGL_Symbolic_ReadMixEx(7, [access:A, access:A], 2, &0, 5000, 0)"});
}

TEST_F(BatchRead, LetsTheFirstOccurrenceOfAPathWin) {
  library.add("A", Item::UInt8(1));
  library.failCall("AGL_Symbolic_CreateAccessByPath", 1, -3);
  EXPECT_EQ(batch({"A", "A"}), (Result{{"A", {}}}));
  library.failCall("AGL_Symbolic_CreateAccessByPath", 4, -3);
  EXPECT_EQ(batch({"A", "A"}), (Result{{"A", {1}}}));
}

TEST_F(BatchRead, PutsZeroesInFrontOfAOneDimensionalArrayThatDoesNotStartAtZero) {
  library.add("A", Item::Int16({10, 20, 30, 40}).array(1, 4));
  EXPECT_EQ(batch({"A"}), (Result{{"A", {0, 0, 10, 0, 20, 0, 30, 0, 40, 0}}}));
}

// By design: only one dimension is re-based.
TEST_F(BatchRead, ReturnsAMatrixAsRead) {
  library.add("A", Item::UInt8({1, 2, 3, 4}).array(1, 2).array(3, 4));
  EXPECT_EQ(batch({"A"}), (Result{{"A", {1, 2, 3, 4}}}));
}

TEST_F(BatchRead, ReturnsAnArrayThatStartsAtZeroAsRead) {
  library.add("A", Item::UInt8({1, 2, 3}).array(0, 2));
  EXPECT_EQ(batch({"A"}), (Result{{"A", {1, 2, 3}}}));
}

// The bounds are those of the array, also for an access to one element of it.
TEST_F(BatchRead, PutsTheArraysZeroesInFrontOfASingleElementToo) {
  library.add("A", Item::UInt8({1, 2, 3}).array(2, 4));
  EXPECT_EQ(batch({"A[3]"}), (Result{{"A[3]", {0, 0, 2}}}));
  EXPECT_EQ(library.log("AGL_Symbolic_GetNodeByPath"),
            Lines{"AGL_Symbolic_GetNodeByPath(root, \"A\", &0, &0)"});
}

TEST_F(BatchRead, ReturnsTheValueAsReadWhenTheBoundsAreUnknown) {
  library.add("A", Item::UInt8({1, 2}).array(1, 2));
  library.fail("AGL_Symbolic_GetArrayDimension", -3);
  EXPECT_EQ(batch({"A"}), (Result{{"A", {1, 2}}}));
  EXPECT_EQ(error, 42);
  library.fail("AGL_Symbolic_GetArrayDimensionCount", -3);
  EXPECT_EQ(batch({"A"}), (Result{{"A", {1, 2}}}));
}

TEST_F(BatchRead, TakesAnElementSizeThatCannotBeFetchedForZero) {
  library.add("A", Item::UInt8({1, 2}).array(1, 2));
  library.fail("AGL_Symbolic_GetAccessBufferElementSize", -3);
  EXPECT_EQ(batch({"A"}), (Result{{"A", {1, 2}}}));
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

// An SError alone leaves no bytes, but the step in front of them still runs.
TEST_F(BatchRead, ReturnsOnlyTheFillOfAnArrayWithAnSError) {
  library.add("A", Item::Int16({1, 2}).array(1, 2).sError(4));
  library.add("B", Item::Int16(1).sError(4));
  EXPECT_EQ(batch({"A", "B"}), (Result{{"A", {0, 0}}, {"B", {}}}));
}

TEST_F(BatchRead, ReadsNothingOfAnAccessWithoutElements) {
  library.add("A", Item::UInt8({}).elementCount(0));
  EXPECT_EQ(batch({"A"}), (Result{{"A", {}}}));
}

TEST_F(BatchRead, ReadsStringsAsWholeVectors) {
  library.add("A", Item::String8("abc", 5));
  library.add("B", Item::String16(u"ab", 3));
  EXPECT_EQ(batch({"A", "B"}),
            (Result{{"A", {'a', 'b', 'c', 0, 0, 0}}, {"B", {'a', 0, 'b', 0, 0, 0, 0, 0}}}));
}

TEST_F(BatchRead, FailsAltogetherWithoutALibrary) {
  const AbsentLibrary absent;
  EXPECT_THAT(batch({"A"}), IsEmpty());
  EXPECT_EQ(error, -1048554);
}

TEST_F(BatchRead, FailsAltogetherOnAnEmptyTree) {
  loader.root_schema_node = 0;
  library.add("A", Item::UInt8(1));
  EXPECT_EQ(batch({"A"}), (Result{{"A", {}}}));
  EXPECT_EQ(error, 1);
}

TEST_F(BatchRead, RaisesOutOfRangeForAPathThatClosesABracketItNeverOpened) {
  library.add("A]", Item::UInt8(1));
  EXPECT_THROW(loader.ReadMapMultiDataFromPlcByPath({"A]"}, error), std::out_of_range);
}

class HostileBufferSizes : public ::testing::TestWithParam<agl_int32_t> {};

// A negative size allocates nothing, but the record carries it.
TEST_P(HostileBufferSizes, ReachTheJobAndNoMemory) {
  FakeLibrary library;
  SymbolsLoader loader;
  loader.root_schema_node = FakeLibrary::kRoot;
  library.add("A", Item::UInt8(5).bufferSize(GetParam()));
  int error = 0;
  auto result = loader.ReadMapMultiDataFromPlcByPath({"A"}, error);
  EXPECT_EQ(result.at("A").datas, Bytes{5});
  EXPECT_EQ(library.reads()[0].accesses[0].length, GetParam());
  EXPECT_EQ(loader.ReadDataFromPlcByPath("A"), Bytes{5});
  EXPECT_EQ(library.reads()[1].accesses[0].length, GetParam());
  EXPECT_EQ(library.liveAccesses(), 0);
}

INSTANTIATE_TEST_SUITE_P(All, HostileBufferSizes, ::testing::Values(0, -1, -2147483647 - 1, 1000000));

TEST_F(BatchRead, BuildsABoundedFillForANegativeLowerBound) {
  library.add("A", Item::Int16({1, 2}).array(-1, 0));
  const auto result = batch({"A"});
  EXPECT_GE(result.at("A").size(), 65536U * 2 + 4096);
  EXPECT_LE(result.at("A").size(), 1U << 20);
}

TEST_F(SingleRead, RunsAJobOfOne) {
  library.add("A.B", Item::Int16(-2));
  EXPECT_EQ(loader.ReadDataFromPlcByPath("A.B"), (Bytes{0xFE, 0xFF}));
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_CreateAccessByPath(root, \"A.B\", &0, &0)",
                                         "AGL_Symbolic_GetAccessBufferSize(access:A.B, &0)",
                                         "AGL_Symbolic_ReadMixEx(7, [access:A.B], 1, &0, 5000, 0)",
                                         "AGL_Symbolic_GetAccessBufferElementCount(access:A.B, &0)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:A.B, &-1)",
                                         "AGL_Symbolic_GetAccessBufferInt16(access:A.B, buffer, 2, 0, &0)",
                                         "AGL_Symbolic_GetAccessBufferElementSize(access:A.B, &0)",
                                         "AGL_Symbolic_FreeHandle(access:A.B)",
                                         "AGL_Symbolic_GetNodeByPath(root, \"A.B\", &0, &0)",
                                         "AGL_Symbolic_GetArrayDimensionCount(node:A.B, &0)"));
  EXPECT_EQ(library.reads()[0].accesses[0].bytes, Bytes(2, 0));
}

TEST_F(SingleRead, ReturnsNothingForAnUnknownPath) {
  Bytes data{1};
  EXPECT_EQ(printed_by([&] { data = loader.ReadDataFromPlcByPath("Nope"); }), "");
  EXPECT_THAT(data, IsEmpty());
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_CreateAccessByPath(root, \"Nope\", &0, &0)"));
}

TEST_F(SingleRead, FreesTheAccessWhoseSizeIsUnknown) {
  library.add("A", Item::UInt8(1).failBufferSize(-3));
  EXPECT_THAT(loader.ReadDataFromPlcByPath("A"), IsEmpty());
  EXPECT_EQ(library.log().back(), "AGL_Symbolic_FreeHandle(access:A)");
  EXPECT_EQ(library.count("AGL_Symbolic_ReadMixEx"), 0);
}

TEST_F(SingleRead, FreesTheAccessOfAFailedJob) {
  library.add("A", Item::UInt8(1));
  library.fail("AGL_Symbolic_ReadMixEx", -17);
  Bytes data{1};
  EXPECT_EQ(printed_by([&] { data = loader.ReadDataFromPlcByPath("A"); }), "");
  EXPECT_THAT(data, IsEmpty());
  EXPECT_EQ(library.log().back(), "AGL_Symbolic_FreeHandle(access:A)");
  EXPECT_EQ(library.liveAccesses(), 0);
}

TEST_F(SingleRead, PutsZeroesInFrontOfAOneDimensionalArrayThatDoesNotStartAtZero) {
  library.add("A", Item::Int16({10, 20}).array(2, 3));
  EXPECT_EQ(loader.ReadDataFromPlcByPath("A"), (Bytes{0, 0, 0, 0, 10, 0, 20, 0}));
}

TEST_F(SingleRead, ReturnsAMatrixAsRead) {
  library.add("A", Item::UInt8({1, 2, 3, 4}).array(1, 2).array(3, 4));
  EXPECT_EQ(loader.ReadDataFromPlcByPath("A"), (Bytes{1, 2, 3, 4}));
}

// The job's overall result alone decides: a failed access leaves no bytes, and the fill still comes.
TEST_F(SingleRead, DoesNotLookAtTheResultOfItsAccess) {
  library.add("A", Item::Int16({10, 20}).array(1, 2).result(-5));
  EXPECT_EQ(loader.ReadDataFromPlcByPath("A"), (Bytes{0, 0}));
}

}  // namespace
