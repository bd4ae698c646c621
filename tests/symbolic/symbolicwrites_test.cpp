// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class SymbolicWrite : public ::testing::Test {
 protected:
  SymbolicWrite() {
    loader.set_station_id(7);
    loader.root_schema_node = FakeLibrary::kRoot;
    loader.loader_state = SymbolsLoader::Success;
  }

  bool write(const std::string& path, const Bytes& data, unsigned short source_index = 0,
             unsigned char trunk_size = 1) {
    bool accepted = false;
    printed =
        printed_by([&] { accepted = loader.WriteDataFromPlcByPath(path, data, source_index, trunk_size); });
    return accepted;
  }

  FakeLibrary library;
  SymbolsLoader loader;
  std::string printed;
};

// Deliberate: a time-out of 1, where reads have 5000.
TEST_F(SymbolicWrite, RunsAJobOfOneWithATimeOutOf1) {
  library.add("Motor.Speed", Item::Int16(0));
  EXPECT_TRUE(write("Motor.Speed", {0xFE, 0xFF}, 0, 2));
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_CreateAccessByPath(root, \"Motor.Speed\", &0, &0)",
                          "AGL_Symbolic_GetAccessBufferSize(access:Motor.Speed, &0)",
                          "AGL_Symbolic_GetAccessBufferElementCount(access:Motor.Speed, &0)",
                          "AGL_Symbolic_GetAccessElementValueType(access:Motor.Speed, &-1)",
                          "AGL_Symbolic_GetAccessElementValueType(access:Motor.Speed, &-1)",
                          "AGL_Symbolic_SetAccessBufferInt16(access:Motor.Speed, buffer, 2, 0, -2)",
                          "AGL_Symbolic_WriteMixEx(7, [access:Motor.Speed], 1, &0, 1, 0)",
                          "AGL_Symbolic_FreeHandle(access:Motor.Speed)"));
  EXPECT_EQ(printed, "");
  EXPECT_EQ(library.liveAccesses(), 0);
}

TEST_F(SymbolicWrite, SendsTheBufferThatWasFilled) {
  library.add("A", Item::Int16({7, 7, 7}));
  EXPECT_TRUE(write("A", {1, 0, 2, 0, 3, 0}, 0, 2));
  ASSERT_THAT(library.writes(), SizeIs(1));
  const auto access = library.writes()[0].accesses.at(0);
  EXPECT_EQ(access.bytes, (Bytes{1, 0, 2, 0, 3, 0}));
  EXPECT_EQ(access.length, 6);
  EXPECT_EQ(access.result_on_entry, 0);
  EXPECT_EQ(access.serror_on_entry, 0);
  // The values went into the very buffer that is sent.
  EXPECT_EQ(library.stored("A")[0].bytes.size(), 6U);
}

// The buffer starts as zeros, and all of it is sent.
TEST_F(SymbolicWrite, SendsZeroForTheElementsThatItDoesNotWrite) {
  library.add("A", Item::Int16({7, 7, 7, 7}));
  EXPECT_TRUE(write("A", {1, 0, 2, 0}, 1, 2));
  EXPECT_EQ(library.writes()[0].accesses[0].bytes, (Bytes{0, 0, 1, 0, 2, 0, 0, 0}));
}

TEST_F(SymbolicWrite, HandsOnSourceIndexAndUnit) {
  library.add("A", Item::UInt8(std::vector<std::uint8_t>(300, 0)));
  EXPECT_TRUE(write("A", {1, 2, 3, 4, 5, 6}, 257, 3));
  const auto stored = library.stored("A");
  ASSERT_THAT(stored, SizeIs(2));
  EXPECT_EQ(stored[0].element, 257);
  EXPECT_EQ(stored[0].number, 1U);
  EXPECT_EQ(stored[1].element, 258);
  EXPECT_EQ(stored[1].number, 4U);
}

TEST_F(SymbolicWrite, IsRefusedForAnUnknownPath) {
  EXPECT_FALSE(write("Nope", {1}));
  EXPECT_EQ(library.count("AGL_Symbolic_WriteMixEx"), 0);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
  EXPECT_EQ(printed, "");
  // Not the access itself fails it, but the size of the access that never was.
  const auto log = library.log();
  ASSERT_GE(log.size(), 2U);
  EXPECT_EQ(log[0], "AGL_Symbolic_CreateAccessByPath(root, \"Nope\", &0, &0)");
  EXPECT_EQ(log[1], "AGL_Symbolic_GetAccessBufferSize(0, &0)");
}

// Deliberate: the result of the access is not tested.
TEST_F(SymbolicWrite, GoesOnWithAHandleThatArrivedDespiteAFailure) {
  library.add("A", Item::UInt8(0));
  library.failAfterwards("AGL_Symbolic_CreateAccessByPath", -3);
  EXPECT_TRUE(write("A", {1}));
  EXPECT_THAT(library.writes(), SizeIs(1));
}

TEST_F(SymbolicWrite, IsRefusedWhenTheBufferSizeIsUnknown) {
  library.add("A", Item::UInt8(0).failBufferSize(-3));
  EXPECT_FALSE(write("A", {1}));
  EXPECT_EQ(library.count("AGL_Symbolic_WriteMixEx"), 0);
  EXPECT_EQ(printed, "");
}

TEST_F(SymbolicWrite, IsRefusedWhenTheJobIs) {
  library.add("A", Item::UInt8(0));
  library.fail("AGL_Symbolic_WriteMixEx", -17);
  EXPECT_FALSE(write("A", {1}));
  EXPECT_EQ(printed, "");
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
  EXPECT_EQ(library.doubleFrees(), 0);
}

TEST_F(SymbolicWrite, IsAcceptedEvenWhenThePlcRejectsTheAccess) {
  library.add("A", Item::UInt8(0).result(-5).sError(9));
  library.job_serror = 9;
  EXPECT_TRUE(write("A", {1}));
}

TEST_F(SymbolicWrite, IsAcceptedEvenWhenAValueCannotBeEncoded) {
  library.add("A", Item::Int32(0));
  library.fail("AGL_Symbolic_SetAccessBufferInt32", -3);
  EXPECT_TRUE(write("A", {1, 0, 0, 0}, 0, 4));
  EXPECT_EQ(library.writes()[0].accesses[0].bytes, Bytes(4, 0));
  EXPECT_THAT(library.log("AGL_GetErrorMsg"), ElementsAre("AGL_GetErrorMsg(-3, buffer, 256)"));
}

TEST_F(SymbolicWrite, SendsZeroesForEmptyData) {
  library.add("A", Item::Int16(7));
  EXPECT_TRUE(write("A", {}, 0, 2));
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
  EXPECT_EQ(library.writes()[0].accesses[0].bytes, Bytes(2, 0));
}

TEST_F(SymbolicWrite, RaisesOutOfRangeForAnEmptyString) {
  library.add("A", Item::String8("abc", 5));
  EXPECT_THROW(loader.WriteDataFromPlcByPath("A", {}, 0, 1), std::out_of_range);
  EXPECT_EQ(library.count("AGL_Symbolic_WriteMixEx"), 0);
}

TEST_F(SymbolicWrite, WritesAnElementByItsPath) {
  library.add("A", Item::Int16({7, 7, 7}).array(1, 3));
  EXPECT_TRUE(write("A[2]", {5, 0}, 0, 2));
  EXPECT_EQ(library.stored("A[2]").at(0).number, 5U);
  EXPECT_EQ(library.writes()[0].accesses[0].length, 2);
}

TEST_F(SymbolicWrite, IsRefusedWithoutALibrary) {
  const AbsentLibrary absent;
  EXPECT_FALSE(write("A", {1}));
}

TEST_F(SymbolicWrite, IsRefusedOnAnEmptyTree) {
  loader.root_schema_node = 0;
  library.add("A", Item::UInt8(0));
  EXPECT_FALSE(write("A", {1}));
}

class HostileWriteSizes : public ::testing::TestWithParam<agl_int32_t> {};

// UINT16 is the type that is also copied by hand.
TEST_P(HostileWriteSizes, WriteNothingOutsideTheBuffer) {
  FakeLibrary library;
  SymbolsLoader loader;
  loader.root_schema_node = FakeLibrary::kRoot;
  library.add("A", Item::UInt16(0).bufferSize(GetParam()));
  EXPECT_TRUE(loader.WriteDataFromPlcByPath("A", {1, 2}, 0, 2));
  EXPECT_EQ(library.writes()[0].accesses[0].length, GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, HostileWriteSizes, ::testing::Values(1, 0, -1, -2147483647 - 1));

}  // namespace
