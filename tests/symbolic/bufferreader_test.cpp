// SPDX-License-Identifier: MIT
// Values of fixed width; bufferreader_strings_test.cpp has the strings.
#include "symbolic/bufferreader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <limits>

#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::KilledBySignal;

using Reader = void (*)(const SymbolicRW_t&, const size_t&, Bytes&);

struct Case {
  const char* name;
  Item item;
  Bytes bytes;
  Reader reader;
  const char* function;
  const char* parts;  // the output arguments on entry
};

std::vector<Case> cases() {
  const fake::Parts moment{2024, 3, 5, 2, 13, 14, 15, 123456789};
  const fake::Parts day{1999, 12, 31, 6, 23, 59, 58, 987};
  return {
      {"UInt8", Item::UInt8(0xFE), {0xFE}, BufferReader::ReadUInt8, "UInt8", "&0"},
      {"UInt16", Item::UInt16(0xFEDC), {0xDC, 0xFE}, BufferReader::ReadUInt16, "UInt16", "&0"},
      {"UInt32",
       Item::UInt32(0xFEDCBA98),
       {0x98, 0xBA, 0xDC, 0xFE},
       BufferReader::ReadUInt32,
       "UInt32",
       "&0"},
      {"UInt64",
       Item::UInt64(0xFEDCBA9876543210),
       {0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE},
       BufferReader::ReadUInt64,
       "UInt64",
       "&0"},
      {"Int8", Item::Int8(-5), {0xFB}, BufferReader::ReadInt8, "Int8", "&0"},
      {"Int16", Item::Int16(-2), {0xFE, 0xFF}, BufferReader::ReadInt16, "Int16", "&0"},
      {"Int32", Item::Int32(-2), {0xFE, 0xFF, 0xFF, 0xFF}, BufferReader::ReadInt32, "Int32", "&0"},
      {"Int64",
       Item::Int64(-2),
       {0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
       BufferReader::ReadInt64,
       "Int64",
       "&0"},
      {"Float32", Item::Float32(-1.5F), {0x00, 0x00, 0xC0, 0xBF}, BufferReader::ReadFloat32, "Float32", "&0"},
      {"Float64",
       Item::Float64(-1.5),
       {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF8, 0xBF},
       BufferReader::ReadFloat64,
       "Float64",
       "&0"},
      {"Char8", Item::Char8('A'), {0x41}, BufferReader::ReadChar8, "Char8", "&0"},
      {"Bool", Item::Bool(true), {0x01}, BufferReader::ReadUInt8, "UInt8", "&0"},
      {"Counter", Item::Counter(999), {0xE7, 0x03}, BufferReader::ReadS7Counter, "S7_Counter", "&0"},
      {"S5Time",
       Item::S5Time(9990000),
       {0x70, 0x6F, 0x98, 0x00},
       BufferReader::ReadS5Time,
       "S7_S5TimeMs",
       "&0"},
      {"DateAndTime",
       Item::DateAndTime(day),
       {0xCF, 0x07, 0x0C, 0x1F, 0x06, 0x17, 0x3B, 0x3A, 0xDB, 0x03},
       BufferReader::ReadS7DateAndtime,
       "S7_Date_and_TimeParts",
       "&0, &0, &0, &0, &0, &0, &0, &0"},
      // 2024-03-05, a Tuesday, 13:14:15.123456789
      {"Dtl",
       Item::Dtl(moment),
       {0xE8, 0x07, 0x03, 0x05, 0x02, 0x0D, 0x0E, 0x0F, 0x15, 0xCD, 0x5B, 0x07},
       BufferReader::ReadDTL,
       "S7_DTLParts",
       "&0, &0, &0, &0, &0, &0, &0, &0"},
  };
}

std::string call_of(const Case& value) {
  return std::string("AGL_Symbolic_GetAccessBuffer") + value.function + "(access:X, buffer, " +
         std::to_string(value.item.buffer_size) + ", 0, " + value.parts + ")";
}

class FixedWidthValues : public ::testing::TestWithParam<Case> {};

TEST_P(FixedWidthValues, AreAppendedByTheirReader) {
  FakeLibrary library;
  const Access access(library, GetParam().item);
  Bytes data{0xAA};
  GetParam().reader(access.rw, 0, data);
  Bytes expected{0xAA};
  expected.insert(expected.end(), GetParam().bytes.begin(), GetParam().bytes.end());
  EXPECT_EQ(data, expected);
  EXPECT_THAT(library.log(), ElementsAre(call_of(GetParam())));
}

TEST_P(FixedWidthValues, AreFoundByTheirType) {
  FakeLibrary library;
  const Access access(library, GetParam().item);
  Bytes data;
  BufferReader::GetBufferValue(access.rw, 0, data);
  EXPECT_EQ(data, GetParam().bytes);
  Lines expected{"AGL_Symbolic_GetAccessElementValueType(access:X, &-1)"};
  if (GetParam().item.value_type == ValueType_t::vt_SYSTEM_SPECIFIC) {
    expected.push_back("AGL_Symbolic_GetAccessElementSystemType(access:X, &-1)");
  }
  expected.push_back(call_of(GetParam()));
  EXPECT_EQ(library.log(), expected);
}

TEST_P(FixedWidthValues, ContributeNothingWhenTheyCannotBeFetched) {
  FakeLibrary library;
  library.failAfterwards(std::string("AGL_Symbolic_GetAccessBuffer") + GetParam().function, -9);
  const Access access(library, GetParam().item);
  Bytes data{0xAA};
  const auto printed = printed_by([&] { GetParam().reader(access.rw, 0, data); });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(data, Bytes{0xAA});
  EXPECT_THAT(library.log(), ElementsAre(call_of(GetParam()), "AGL_GetErrorMsg(-9, buffer, 256)"));
}

TEST_P(FixedWidthValues, HandOnTheElementAndTheLowHalfOfIndexAndLength) {
  FakeLibrary library;
  Access access(library, GetParam().item);
  access.rw.BufferLen = 0x7'0000'0005;
  Bytes data;
  GetParam().reader(access.rw, 0x3'0000'0002, data);
  EXPECT_THAT(library.log()[0], HasSubstr("(access:X, buffer, 5, 2, "));
}

INSTANTIATE_TEST_SUITE_P(All, FixedWidthValues, ::testing::ValuesIn(cases()), case_name<Case>);

TEST(BufferReader, AppendsThreeIntsInOrder) {
  FakeLibrary library;
  const Access access(library, Item::Int16({1, -2, 3}));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{0x01, 0x00, 0xFE, 0xFF, 0x03, 0x00}));
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_GetAccessBufferInt16(access:X, buffer, 6, 0, &0)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_GetAccessBufferInt16(access:X, buffer, 6, 1, &0)",
                                         "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                                         "AGL_Symbolic_GetAccessBufferInt16(access:X, buffer, 6, 2, &0)"));
}

TEST(BufferReader, NeverClearsWhatTheVectorHeld) {
  FakeLibrary library;
  const Access access(library, Item::UInt8({7, 8}));
  Bytes data{1, 2};
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{1, 2, 7, 8}));
}

TEST(BufferReader, MovesLaterValuesForwardOverOneThatFails) {
  FakeLibrary library;
  const Access access(library, Item::Int16({1, 2, 3}));
  library.failCall("AGL_Symbolic_GetAccessBufferInt16", 2, -9);
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{1, 0, 3, 0}));
}

TEST(BufferReader, CallsNoValueFunctionForNoElement) {
  FakeLibrary library;
  const Access access(library, Item::Int16({1, 2}).elementCount(0));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_THAT(data, IsEmpty());
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)"));
}

TEST(BufferReader, TakesANegativeElementCountForNone) {
  FakeLibrary library;
  const Access access(library, Item::Int16({1, 2}).elementCount(std::numeric_limits<agl_int32_t>::min()));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_THAT(data, IsEmpty());
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)"));
}

TEST(BufferReader, StopsAtElementsThatNoRuntimeCanAddress) {
  FakeLibrary library;
  const Access access(library, Item::Int16({1, 2}).elementCount(std::numeric_limits<agl_int32_t>::max()));
  pAGL_Symbolic_GetAccessBufferInt16 = [](HandleType, const void*, agl_int32_t, agl_int32_t element,
                                          agl_int16_t* value) {
    *value = static_cast<agl_int16_t>(element);
    return AGL40_SUCCESS;
  };
  pAGL_Symbolic_GetAccessElementValueType = [](HandleType, ValueType_t::enum_t* type) {
    *type = ValueType_t::vt_INT16;
    return AGL40_SUCCESS;
  };
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  // Past an index of 16 bits, eight bytes an element, and the 4096 bytes that a command takes.
  ASSERT_EQ(data.size(), 2 * (65536U * 8 + 4096));
  EXPECT_EQ(Bytes(data.begin() + 65535 * 2, data.begin() + 65536 * 2), (Bytes{0xFF, 0xFF}));
}

TEST(BufferReader, OutlivesAnElementCountBeyondTheValues) {
  FakeLibrary library;
  const Access access(library, Item::Int16({1, 2}).elementCount(1000));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{1, 0, 2, 0}));
}

TEST(BufferReader, DoesNotLookAtTheResultOfTheElementCount) {
  FakeLibrary library;
  library.failAfterwards("AGL_Symbolic_GetAccessBufferElementCount", -9);
  const Access access(library, Item::Int16({1, 2}));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{1, 0, 2, 0}));
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST(BufferReader, DoesNotLookAtTheResultOfTheValueType) {
  FakeLibrary library;
  library.failAfterwards("AGL_Symbolic_GetAccessElementValueType", -9);
  const Access access(library, Item::Int16({1, 2}));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{1, 0, 2, 0}));
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST(BufferReader, AppendsNothingOfAJobWithAResult) {
  FakeLibrary library;
  Access access(library, Item::Int16({1, 2}));
  access.rw.Result = -1;
  Bytes data{9};
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, Bytes{9});
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)"));
}

TEST(BufferReader, AppendsNothingOfAJobWithAnSErrorAlone) {
  FakeLibrary library;
  Access access(library, Item::Int16({1, 2}));
  access.rw.SError = 1;
  Bytes data{9};
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, Bytes{9});
}

// Deliberate: a 16-bit character reads as a 32-bit zero, and nobody asks the library.
TEST(BufferReader, ReadsAWideCharacterAsFourZeroBytes) {
  FakeLibrary library;
  const Access access(library, Item::Char16({0x4142, 0x4344}));
  Bytes data;
  BufferReader::ReadChar16(access.rw, 0, data);
  EXPECT_EQ(data, (Bytes{0, 0, 0, 0}));
  EXPECT_THAT(library.log(), IsEmpty());
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, Bytes(12, 0));
  EXPECT_EQ(library.count("AGL_Symbolic_GetAccessBufferChar16"), 0);
}

TEST(BufferReader, AppendsOneValueInItsWidth) {
  Bytes data{9};
  BufferReader::SetupDataVector<unsigned char>(0x12, data);
  BufferReader::SetupDataVector<unsigned short>(0x3456, data);
  BufferReader::SetupDataVector<unsigned int>(0x789ABCDE, data);
  EXPECT_EQ(data, (Bytes{9, 0x12, 0x56, 0x34, 0xDE, 0xBC, 0x9A, 0x78}));
}

class UnreadableValueTypes : public ::testing::TestWithParam<int> {};
using UnreadableValueTypesDeathTest = UnreadableValueTypes;

TEST_P(UnreadableValueTypesDeathTest, AbortWithAFixedMessage) {
  FakeLibrary library;
  const auto type = static_cast<ValueType_t::enum_t>(GetParam());
  const Access access(library, Item::Untyped(type, SystemType_t::st_S7_Int));
  Bytes data;
  EXPECT_EXIT(
      BufferReader::GetBufferValue(access.rw, 0, data), KilledBySignal(SIGABRT),
      HasSubstr(": bufferreader.cpp:172: void BufferReader::GetBufferValue(const SymbolicRW_t&, const "
                "size_t&, std::vector<unsigned char>&): Assertion `false' failed."));
}

// Undefined, CHAR32, STRING32 and two that do not exist.
INSTANTIATE_TEST_SUITE_P(All, UnreadableValueTypesDeathTest, ::testing::Values(-1, 11, 14, 17, 1000));

TEST(BufferReaderDeathTest, AbortsWhenTheValueTypeCannotBeFetched) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_GetAccessElementValueType", -9);
  const Access access(library, Item::Int16(1));
  Bytes data;
  EXPECT_EXIT(BufferReader::GetBufferValues(access.rw, data), KilledBySignal(SIGABRT),
              HasSubstr("bufferreader.cpp:172: "));
}

class UnreadableSystemTypes : public ::testing::TestWithParam<SystemType_t::enum_t> {};
using UnreadableSystemTypesDeathTest = UnreadableSystemTypes;

TEST_P(UnreadableSystemTypesDeathTest, AbortWithAFixedMessage) {
  FakeLibrary library;
  const Access access(library, Item::Untyped(ValueType_t::vt_SYSTEM_SPECIFIC, GetParam()));
  Bytes data;
  EXPECT_EXIT(
      BufferReader::GetBufferValue(access.rw, 0, data), KilledBySignal(SIGABRT),
      HasSubstr(": bufferreader.cpp:484: void BufferReader::GetSystemSpecificBufferValue(const "
                "SymbolicRW_t&, const size_t&, std::vector<unsigned char>&): Assertion `false' failed."));
}

// Bool is not one of the four types that are read this way, although the writers know it.
INSTANTIATE_TEST_SUITE_P(All, UnreadableSystemTypesDeathTest,
                         ::testing::Values(SystemType_t::st_UNDEFINED, SystemType_t::st_UNKNOWN,
                                           SystemType_t::st_S7_UNKNOWN, SystemType_t::st_S7_Bool,
                                           SystemType_t::st_S7_Timer, SystemType_t::st_S7_LDT,
                                           SystemType_t::st_NCK840D_UNKNOWN));

TEST(BufferReaderDeathTest, AbortsWhenTheSystemTypeCannotBeFetched) {
  FakeLibrary library;
  // Even though the type arrives: here the result counts.
  library.failAfterwards("AGL_Symbolic_GetAccessElementSystemType", -9);
  const Access access(library, Item::Counter(1));
  Bytes data;
  EXPECT_EXIT(BufferReader::GetSystemSpecificBufferValue(access.rw, 0, data), KilledBySignal(SIGABRT),
              HasSubstr(": bufferreader.cpp:460: void BufferReader::GetSystemSpecificBufferValue(const "
                        "SymbolicRW_t&, const size_t&, std::vector<unsigned char>&): Assertion `res == "
                        "AGL40_SUCCESS' failed."));
}

}  // namespace
