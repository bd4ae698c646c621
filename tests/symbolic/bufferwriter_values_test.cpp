// SPDX-License-Identifier: MIT
// How a value of fixed width is taken from the data and put into the access buffer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

#include "symbolic/bufferwriter.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using Writer = void (*)(SymbolicRW_t&, const size_t&, const Bytes&, size_t);

struct Case {
  const char* name;
  Item item;  // of three elements
  Bytes value;
  Writer writer;
  const char* function;
  const char* arguments;        // that stand for the value
  const char* first_byte_only;  // the same when only one byte of the value is there, and the rest is zero
  bool reports;
};

Item three(Item item) {
  item.values.resize(3, item.values.front());
  item.elementCount(3).bufferSize(3 * item.element_size);
  return item;
}

std::vector<Case> cases() {
  return {
      {"UInt8", three(Item::UInt8(0)), {0xFE}, BufferWriter::WriteUint8, "UInt8", "254", "254", true},
      {"UInt16",
       three(Item::UInt16(0)),
       {0x34, 0x12},
       BufferWriter::WriteUint16,
       "UInt16",
       "4660",
       "52",
       true},
      {"UInt32",
       three(Item::UInt32(0)),
       {0x01, 0x02, 0x03, 0xFF},
       BufferWriter::WriteUint32,
       "UInt32",
       "4278387201",
       "1",
       true},
      {"UInt64",
       three(Item::UInt64(0)),
       {0x01, 0, 0, 0, 0x02, 0, 0, 0x80},
       BufferWriter::WriteUint64,
       "UInt64",
       "9223372045444710401",
       "1",
       true},
      {"Int8", three(Item::Int8(0)), {0xFB}, BufferWriter::WriteInt8, "Int8", "-5", "-5", true},
      {"Int16", three(Item::Int16(0)), {0xFE, 0xFF}, BufferWriter::WriteInt16, "Int16", "-2", "254", false},
      {"Int32",
       three(Item::Int32(0)),
       {0xFE, 0xFF, 0xFF, 0xFF},
       BufferWriter::WriteInt32,
       "Int32",
       "-2",
       "254",
       true},
      {"Int64",
       three(Item::Int64(0)),
       {0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
       BufferWriter::WriteInt64,
       "Int64",
       "-2",
       "254",
       true},
      {"Float32",
       three(Item::Float32(0)),
       {0x00, 0x00, 0xC0, 0xBF},
       BufferWriter::WriteFloat32,
       "Float32",
       "-1.5",
       "0",
       false},
      {"Float64",
       three(Item::Float64(0)),
       {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF8, 0xBF},
       BufferWriter::WriteFloat64,
       "Float64",
       "-1.5",
       "0",
       false},
      {"Char8", three(Item::Char8(' ')), {0x41}, BufferWriter::WriteChar8, "Char8", "65", "65", true},
      {"Counter",
       three(Item::Counter(0)),
       {0xE7, 0x03},
       BufferWriter::WriteSystemSpecific,
       "S7_Counter",
       "999",
       "231",
       true},
      // The last argument rounds.
      {"S5Time",
       three(Item::S5Time(0)),
       {0x70, 0x6F, 0x98, 0x00},
       BufferWriter::WriteSystemSpecific,
       "S7_S5TimeMs",
       "9990000, 1",
       "112, 1",
       true},
      {"DateAndTime",
       three(Item::DateAndTime({})),
       {0xCF, 0x07, 0x0C, 0x1F, 0x06, 0x17, 0x3B, 0x3A, 0xDB, 0x03},
       BufferWriter::WriteSystemSpecific,
       "S7_Date_and_TimeParts",
       "1999, 12, 31, 6, 23, 59, 58, 987",
       "207, 0, 0, 0, 0, 0, 0, 0",
       true},
      {"Dtl",
       three(Item::Dtl({})),
       {0xE8, 0x07, 0x03, 0x05, 0x02, 0x0D, 0x0E, 0x0F, 0x15, 0xCD, 0x5B, 0x07},
       BufferWriter::WriteSystemSpecific,
       "S7_DTLParts",
       "2024, 3, 5, 2, 13, 14, 15, 123456789",
       "232, 0, 0, 0, 0, 0, 0, 0",
       true},
  };
}

std::string name_of(const Case& value) {
  return std::string("AGL_Symbolic_SetAccessBuffer") + value.function;
}

std::string call_of(const Case& value, int element, const std::string& arguments) {
  return name_of(value) + "(access:X, buffer, " + std::to_string(value.item.buffer_size) + ", " +
         std::to_string(element) + ", " + arguments + ")";
}

class FixedWidthWrites : public ::testing::TestWithParam<Case> {};

TEST_P(FixedWidthWrites, TakeTheValueAtTheByteOffset) {
  FakeLibrary library;
  Access access(library, GetParam().item);
  Bytes data{0x99, 0x98, 0x97};
  data.insert(data.end(), GetParam().value.begin(), GetParam().value.end());
  data.push_back(0x96);
  GetParam().writer(access.rw, 2, data, 3);
  EXPECT_THAT(library.log(name_of(GetParam())), ElementsAre(call_of(GetParam(), 2, GetParam().arguments)));
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 1);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST_P(FixedWidthWrites, AreFoundByTheirType) {
  FakeLibrary library;
  Access access(library, GetParam().item);
  BufferWriter::WriteBufferValue(access.rw, 1, GetParam().value, 0);
  EXPECT_EQ(library.log().front(), "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)");
  EXPECT_EQ(library.log().back(), call_of(GetParam(), 1, GetParam().arguments));
}

// Only the first byte of a value is checked; what lies past the end of the data counts as zero.
TEST_P(FixedWidthWrites, TakeBytesPastTheEndOfTheDataAsZero) {
  FakeLibrary library;
  Access access(library, GetParam().item);
  const Bytes data{0x55, GetParam().value.front()};
  GetParam().writer(access.rw, 0, data, 1);
  EXPECT_EQ(library.log().back(), call_of(GetParam(), 0, GetParam().first_byte_only));
}

TEST_P(FixedWidthWrites, RaiseOutOfRangeAtTheEndOfTheData) {
  FakeLibrary library;
  Access access(library, GetParam().item);
  const auto message =
      raised_by<std::out_of_range>([&] { GetParam().writer(access.rw, 0, GetParam().value, 20); });
  EXPECT_EQ(message, "vector::_M_range_check: __n (which is 20) >= this->size() (which is " +
                         std::to_string(GetParam().value.size()) + ")");
  EXPECT_THROW(GetParam().writer(access.rw, 0, {}, 0), std::out_of_range);
  EXPECT_THROW(GetParam().writer(access.rw, 0, GetParam().value, GetParam().value.size()), std::out_of_range);
  EXPECT_THROW(GetParam().writer(access.rw, 0, GetParam().value, std::numeric_limits<size_t>::max()),
               std::out_of_range);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
}

// Deliberate: INT16 and the two reals say nothing of a failure.
TEST_P(FixedWidthWrites, ReportAFailureOrKeepItToThemselves) {
  FakeLibrary library;
  library.fail(name_of(GetParam()), -9);
  Access access(library, GetParam().item);
  const auto printed = printed_by([&] { GetParam().writer(access.rw, 0, GetParam().value, 0); });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(library.count(name_of(GetParam())), 1);
  if (GetParam().reports) {
    EXPECT_THAT(library.log("AGL_GetErrorMsg"), ElementsAre("AGL_GetErrorMsg(-9, buffer, 256)"));
  } else {
    EXPECT_THAT(library.log("AGL_GetErrorMsg"), IsEmpty());
  }
}

TEST_P(FixedWidthWrites, HandOnTheLowHalfOfIndexAndLength) {
  FakeLibrary library;
  Access access(library, GetParam().item);
  access.rw.BufferLen = 0x7'0000'0000 + 2;
  GetParam().writer(access.rw, 0x3'0000'0001, GetParam().value, 0);
  EXPECT_THAT(library.log(name_of(GetParam()))[0], HasSubstr("(access:X, buffer, 2, 1, "));
}

INSTANTIATE_TEST_SUITE_P(All, FixedWidthWrites, ::testing::ValuesIn(cases()), case_name<Case>);

TEST(WriteUint8, WritesABoolFromTheFirstByteOfTheData) {
  FakeLibrary library;
  Access access(library, Item::Bool({false, false}));
  // Deliberate: byte 0 decides, not the byte at the element's offset.
  BufferWriter::WriteUint8(access.rw, 1, {0, 1}, 1);
  BufferWriter::WriteUint8(access.rw, 1, {1, 0}, 1);
  BufferWriter::WriteUint8(access.rw, 1, {0x80, 0}, 1);
  const auto stored = library.stored();
  ASSERT_EQ(stored.size(), 3U);
  EXPECT_EQ(stored[0].number, 0U);
  EXPECT_EQ(stored[1].number, 1U);
  EXPECT_EQ(stored[2].number, 1U);
  EXPECT_EQ(stored[2].element, 1);
}

TEST(WriteUint8, AsksTheSystemTypeFirst) {
  FakeLibrary library;
  Access access(library, Item::Bool(false));
  BufferWriter::WriteUint8(access.rw, 0, {1}, 0);
  ASSERT_EQ(library.calls().size(), 2U);
  EXPECT_EQ(library.calls()[0].function, "AGL_Symbolic_GetAccessElementSystemType");
  EXPECT_EQ(library.calls()[1].function, "AGL_Symbolic_SetAccessBufferUInt8");
}

TEST(WriteUint8, RaisesOutOfRangeForABoolWithoutData) {
  FakeLibrary library;
  Access access(library, Item::Bool(false));
  EXPECT_THROW(BufferWriter::WriteUint8(access.rw, 0, {}, 0), std::out_of_range);
}

TEST(WriteUint8, WritesOtherTypesThanBoolUnchanged) {
  FakeLibrary library;
  for (const auto type : {SystemType_t::st_S7_Byte, SystemType_t::st_S7_USInt, SystemType_t::st_UNKNOWN}) {
    Access access(library, Item::UInt8(0).systemType(type));
    library.clearLog();
    BufferWriter::WriteUint8(access.rw, 0, {0, 0x42}, 1);
    ASSERT_EQ(library.stored().size(), 1U);
    EXPECT_EQ(library.stored()[0].number, 0x42U);
  }
}

// Deliberate: the first two bytes of the data go straight into the access buffer, whatever the element.
TEST(WriteUint16, CopiesTheFirstTwoBytesIntoTheBufferBeforeTheLibraryCall) {
  FakeLibrary library;
  Access access(library, Item::UInt16({0, 0, 0}));
  BufferWriter::WriteUint16(access.rw, 2, {0x11, 0x22, 0x33, 0x44}, 2);
  ASSERT_EQ(library.stored().size(), 1U);
  EXPECT_EQ(library.stored()[0].bytes, (Bytes{0x11, 0x22, 0x77, 0x77, 0x77, 0x77}));
  EXPECT_EQ(library.stored()[0].number, 0x4433U);
  EXPECT_EQ(access.buffer, (Bytes{0x11, 0x22, 0x77, 0x77, 0x33, 0x44}));
}

TEST(WriteUint16, KeepsTheDirectCopyInsideTheAccessBuffer) {
  FakeLibrary library;
  for (const agl_int32_t size : {1, 0, -1, -1000}) {
    Access access(library, Item::UInt16(0).bufferSize(size));
    BufferWriter::WriteUint16(access.rw, 0, {0x11, 0x22}, 0);
    if (size == 1) {
      EXPECT_EQ(access.buffer, Bytes{0x11});
    }
  }
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBufferUInt16"), 4);
}

TEST(WriteUint16, ReadsNothingPastASingleByteOfData) {
  FakeLibrary library;
  Access access(library, Item::UInt16({0, 0}));
  BufferWriter::WriteUint16(access.rw, 1, {0x11}, 0);
  EXPECT_EQ(library.stored()[0].number, 0x11U);
  EXPECT_EQ(access.buffer[0], 0x11);
}

TEST(OtherWriters, LeaveTheAccessBufferToTheLibrary) {
  FakeLibrary library;
  Access access(library, Item::Int16({0, 0}));
  BufferWriter::WriteInt16(access.rw, 1, {0x11, 0x22, 0x33, 0x44}, 2);
  EXPECT_EQ(library.stored()[0].bytes, (Bytes{0x77, 0x77, 0x77, 0x77}));
}

TEST(WriteChar16, DoesNothingAtAll) {
  FakeLibrary library;
  Access access(library, Item::Char16({0x41, 0x42}));
  BufferWriter::WriteChar16(access.rw, 0, {0x43, 0x00}, 0);
  BufferWriter::WriteChar16(access.rw, 0, {}, 7);
  EXPECT_THAT(library.log(), IsEmpty());
  BufferWriter::WriteBufferValues(access.rw, {0x43, 0x00, 0x44, 0x00}, 0, 2);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
  EXPECT_EQ(access.buffer, Bytes(4, 0x77));
}

class UnwritableSystemTypes : public ::testing::TestWithParam<SystemType_t::enum_t> {};

TEST_P(UnwritableSystemTypes, AreSkippedSilently) {
  FakeLibrary library;
  Access access(library, Item::Untyped(ValueType_t::vt_SYSTEM_SPECIFIC, GetParam()));
  const auto printed = printed_by([&] {
    BufferWriter::WriteBufferValue(access.rw, 0, {1, 2, 3, 4}, 0);
    BufferWriter::WriteSystemSpecific(access.rw, 0, {1, 2, 3, 4}, 4);
  });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBuffer*"), 0);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

INSTANTIATE_TEST_SUITE_P(All, UnwritableSystemTypes,
                         ::testing::Values(SystemType_t::st_UNDEFINED, SystemType_t::st_UNKNOWN,
                                           SystemType_t::st_S7_Bool, SystemType_t::st_S7_Timer,
                                           SystemType_t::st_S7_LDT, SystemType_t::st_NCK840D_UNKNOWN));

}  // namespace
