// SPDX-License-Identifier: MIT
// The walk over the elements of an access. bufferwriter_values_test.cpp and bufferwriter_strings_test.cpp
// have what is done to one element.
#include "symbolic/bufferwriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>

#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::KilledBySignal;

class UnwritableValueTypes : public ::testing::TestWithParam<int> {};
using UnwritableValueTypesDeathTest = UnwritableValueTypes;

TEST_P(UnwritableValueTypesDeathTest, AbortWithAFixedMessage) {
  FakeLibrary library;
  const auto type = static_cast<ValueType_t::enum_t>(GetParam());
  Access access(library, Item::Untyped(type, SystemType_t::st_S7_Int));
  EXPECT_EXIT(BufferWriter::WriteBufferValue(access.rw, 0, {1, 2, 3, 4}, 0), KilledBySignal(SIGABRT),
              HasSubstr(": bufferwriter.cpp:191: void BufferWriter::WriteBufferValue(SymbolicRW_t&, const "
                        "size_t&, std::vector<unsigned char>, size_t): Assertion `false' failed."));
}

INSTANTIATE_TEST_SUITE_P(All, UnwritableValueTypesDeathTest, ::testing::Values(-1, 11, 14, 17, 1000));

TEST(BufferWriterDeathTest, AbortsWhenTheValueTypeCannotBeFetchedAtAll) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_GetAccessElementValueType", -9);
  Access access(library, Item::Int16(0));
  EXPECT_EXIT(BufferWriter::WriteBufferValues(access.rw, {1, 2}, 0, 2), KilledBySignal(SIGABRT),
              HasSubstr("bufferwriter.cpp:191: "));
}

TEST(BufferWriter, WritesOneElementAUnitFromTheSourceIndexOn) {
  FakeLibrary library;
  Access access(library, Item::Int16({0, 0, 0, 0, 0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 2, 0, 3, 0, 4, 0}, 2, 2);
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_SetAccessBufferInt16(access:X, buffer, 12, 2, 1)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_SetAccessBufferInt16(access:X, buffer, 12, 3, 2)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_SetAccessBufferInt16(access:X, buffer, 12, 4, 3)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_SetAccessBufferInt16(access:X, buffer, 12, 5, 4)"));
}

TEST(BufferWriter, WritesNothingForAUnitOfNoByte) {
  FakeLibrary library;
  Access access(library, Item::Int16({0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 2, 0}, 0, 0);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
}

TEST(BufferWriter, WritesNothingForNoData) {
  FakeLibrary library;
  Access access(library, Item::Int16({0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {}, 0, 2);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
}

TEST(BufferWriter, LeavesOutARestThatMakesNoWholeUnit) {
  FakeLibrary library;
  Access access(library, Item::Int16({0, 0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 2, 0, 3}, 0, 2);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBufferInt16"), 2);
}

TEST(BufferWriter, OverlapsValuesWhenTheUnitIsNarrowerThanTheType) {
  FakeLibrary library;
  Access access(library, Item::UInt16({0, 0, 0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {0x01, 0x02, 0x03, 0x04}, 0, 1);
  std::vector<std::uint64_t> numbers;
  for (const auto& stored : library.stored()) numbers.push_back(stored.number);
  EXPECT_THAT(numbers, ElementsAre(0x0201, 0x0302, 0x0403, 0x0004));
}

// Deliberate: the count is compared with the first element only.
TEST(BufferWriter, HandsElementsBeyondTheCountToTheLibraryWhenTheFirstIsNotBeyondIt) {
  FakeLibrary library;
  Access access(library, Item::Int32({0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 0, 0, 2, 0, 0, 0}, 2, 4);
  EXPECT_THAT(library.log("AGL_Symbolic_SetAccessBufferInt32"),
              ElementsAre("AGL_Symbolic_SetAccessBufferInt32(access:X, buffer, 8, 2, 1)",
                          "AGL_Symbolic_SetAccessBufferInt32(access:X, buffer, 8, 3, 2)"));
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 2);
}

TEST(BufferWriter, WritesNothingFromAnElementBeyondTheCount) {
  FakeLibrary library;
  Access access(library, Item::Int32({0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 0, 0}, 3, 4);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
}

TEST(BufferWriter, WritesNothingWhenTheCountIsNegative) {
  FakeLibrary library;
  Access access(library, Item::Int32({0, 0}).elementCount(-1));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 0, 0}, 0, 4);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
}

TEST(BufferWriter, TakesAnElementCountThatItCannotFetchForZero) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_GetAccessBufferElementCount", -9);
  Access access(library, Item::Int32({0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 0, 0}, 1, 4);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 0, 0}, 0, 4);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBufferInt32"), 1);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST(BufferWriter, ReachesTheLastElementThatASourceIndexCanName) {
  FakeLibrary library;
  Access access(library, Item::UInt8(0).elementCount(70000));
  BufferWriter::WriteBufferValues(access.rw, {1, 2}, 65535, 1);
  ASSERT_EQ(library.stored().size(), 2U);
  EXPECT_EQ(library.stored()[0].element, 65535);
  EXPECT_EQ(library.stored()[1].element, 65536);
}

TEST(BufferWriter, WritesNothingIntoAnAccessThatCarriesAResultOrSError) {
  FakeLibrary library;
  for (const auto& [result, serror] : {std::pair{-1, 0}, std::pair{0, 1}}) {
    Access access(library, Item::Int16({0, 0}));
    access.rw.Result = result;
    access.rw.SError = serror;
    library.clearLog();
    BufferWriter::WriteBufferValues(access.rw, {1, 0}, 0, 2);
    EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)"));
  }
}

TEST(BufferWriter, PrintsALineWhenTheValueTypeCannotBeFetchedAndGoesOn) {
  FakeLibrary library;
  library.failCall("AGL_Symbolic_GetAccessElementValueType", 1, -9);
  Access access(library, Item::Int16({0, 0}));
  const auto printed = printed_by([&] { BufferWriter::WriteBufferValues(access.rw, {1, 0, 2, 0}, 0, 2); });
  EXPECT_EQ(printed, "AGL_Symbolic_GetAccessElementValueType ERROR\n");
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBufferInt16"), 2);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST(BufferWriter, PrintsTheSameLineForASingleElementAndUsesTheTypeThatArrived) {
  FakeLibrary library;
  library.failAfterwards("AGL_Symbolic_GetAccessElementValueType", -9);
  Access access(library, Item::Int16({0, 0}));
  const auto printed = printed_by([&] { BufferWriter::WriteBufferValue(access.rw, 0, {1, 0}, 0); });
  EXPECT_EQ(printed, "AGL_Symbolic_GetAccessElementValueType ERROR\n");
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBufferInt16"), 1);
}

TEST(BufferWriter, WritesTheNextElementAfterOneThatFails) {
  FakeLibrary library;
  library.failCall("AGL_Symbolic_SetAccessBufferInt32", 1, -9);
  Access access(library, Item::Int32({0, 0}));
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 0, 0, 2, 0, 0, 0}, 0, 4);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBufferInt32"), 2);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 1);
}

}  // namespace
