// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <stdexcept>

#include "symbolic/bufferreader.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::KilledBySignal;

TEST(ReadString8, SizesTheVectorToTheDeclaredLengthAndTerminator) {
  FakeLibrary library;
  const Access access(library, Item::String8("abc", 10));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{0x61, 0x62, 0x63, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)",
                          "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                          "AGL_Symbolic_GetAccessStringSize(access:X, &0)",
                          "AGL_Symbolic_GetAccessBufferString8(access:X, buffer, 12, 0, buffer, 11, &0)"));
}

TEST(ReadString8, ReadsAFullAndAnEmptyString) {
  FakeLibrary library;
  const Access full(library, Item::String8("abc", 3));
  Bytes data;
  BufferReader::ReadString8(full.rw, 0, data);
  EXPECT_EQ(data, (Bytes{0x61, 0x62, 0x63, 0}));
  const Access empty(library, Item::String8("", 3));
  data.clear();
  BufferReader::ReadString8(empty.rw, 0, data);
  EXPECT_EQ(data, (Bytes{0, 0, 0, 0}));
}

TEST(ReadString8, ReadsADeclaredSizeOfZeroAsItsTerminator) {
  FakeLibrary library;
  const Access access(library, Item::String8("", 0));
  Bytes data;
  BufferReader::ReadString8(access.rw, 0, data);
  EXPECT_EQ(data, Bytes{0});
}

// Deliberate: a string takes the whole vector instead of being appended to it.
TEST(ReadString8, ReplacesTheVectorsStartAndCutsItsTail) {
  FakeLibrary library;
  const Access access(library, Item::String8("abc", 10));
  Bytes data(20, 0x55);
  BufferReader::ReadString8(access.rw, 0, data);
  EXPECT_EQ(data, (Bytes{0x61, 0x62, 0x63, 0, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}));
}

TEST(ReadString8, LeavesTheLastElementOverTheRestOfLongerOnes) {
  FakeLibrary library;
  const Access access(library, Item::Strings8({"abcdef", "xy"}, 8));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{'x', 'y', 0, 'd', 'e', 'f', 0, 0, 0}));
}

TEST(ReadString8, LeavesTheVectorAloneWhenTheDeclaredSizeCannotBeFetched) {
  FakeLibrary library;
  library.failAfterwards("AGL_Symbolic_GetAccessStringSize", -9);
  const Access access(library, Item::String8("abc", 10));
  Bytes data{1, 2};
  BufferReader::ReadString8(access.rw, 0, data);
  EXPECT_EQ(data, (Bytes{1, 2}));
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessStringSize(access:X, &0)",
                                         "AGL_GetErrorMsg(-9, buffer, 256)"));
}

TEST(ReadString8, LeavesTheVectorAloneWhenTheTextCannotBeFetched) {
  FakeLibrary library;
  library.failAfterwards("AGL_Symbolic_GetAccessBufferString8", -9);
  const Access access(library, Item::String8("abc", 10));
  Bytes data{1, 2};
  BufferReader::ReadString8(access.rw, 0, data);
  EXPECT_EQ(data, (Bytes{1, 2}));
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-9, buffer, 256)");
}

TEST(ReadString16, SizesTheVectorToTwoBytesACharacterAndTerminator) {
  FakeLibrary library;
  const Access access(library, Item::String16(u"a\u20AC", 4));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{0x61, 0x00, 0xAC, 0x20, 0, 0, 0, 0, 0, 0}));
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)",
                          "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                          "AGL_Symbolic_GetAccessStringSize(access:X, &0)",
                          "AGL_Symbolic_GetAccessBufferString16(access:X, buffer, 12, 0, buffer, 10, &0)"));
}

// Only the low byte of the terminator is copied; the high one is whatever stood there.
TEST(ReadString16, LeavesTheSecondByteOfTheTerminatorAsItWas) {
  FakeLibrary library;
  const Access access(library, Item::String16(u"ab", 4));
  Bytes data(14, 0x55);
  BufferReader::ReadString16(access.rw, 0, data);
  EXPECT_EQ(data, (Bytes{0x61, 0x00, 0x62, 0x00, 0x00, 0x55, 0x55, 0x55, 0x55, 0x55}));
}

TEST(ReadString16, LeavesTheLastElementOverTheRestOfLongerOnes) {
  FakeLibrary library;
  const Access access(library, Item::Strings16({u"abc", u"x"}, 3));
  Bytes data;
  BufferReader::GetBufferValues(access.rw, data);
  EXPECT_EQ(data, (Bytes{'x', 0, 0, 0, 'c', 0, 0, 0}));
}

TEST(ReadString16DeathTest, AbortsWhenTheDeclaredSizeCannotBeFetched) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_GetAccessStringSize", -9);
  const Access access(library, Item::String16(u"abc", 10));
  Bytes data;
  EXPECT_EXIT(BufferReader::ReadString16(access.rw, 0, data), KilledBySignal(SIGABRT),
              HasSubstr(": bufferreader.cpp:414: void BufferReader::ReadString16(const SymbolicRW_t&, const "
                        "size_t&, std::vector<unsigned char>&): Assertion `res == AGL40_SUCCESS' failed."));
}

TEST(ReadString16, LeavesTheVectorAloneWhenTheTextCannotBeFetched) {
  FakeLibrary library;
  library.failAfterwards("AGL_Symbolic_GetAccessBufferString16", -9);
  const Access access(library, Item::String16(u"abc", 10));
  Bytes data{1, 2};
  BufferReader::ReadString16(access.rw, 0, data);
  EXPECT_EQ(data, (Bytes{1, 2}));
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-9, buffer, 256)");
}

TEST(Strings, PassTheElementOn) {
  FakeLibrary library;
  const Access narrow(library, Item::Strings8({"a", "b", "c"}, 1));
  Bytes data;
  BufferReader::ReadString8(narrow.rw, 2, data);
  EXPECT_EQ(data, (Bytes{'c', 0}));
  const Access wide(library, Item::Strings16({u"a", u"b", u"c"}, 1));
  data.clear();
  BufferReader::ReadString16(wide.rw, 1, data);
  EXPECT_EQ(data, (Bytes{'b', 0, 0, 0}));
}

// What the library says must never lead outside of a buffer.
class CharCountLies : public ::testing::TestWithParam<agl_int32_t> {};

TEST_P(CharCountLies, StayInsideANarrowString) {
  FakeLibrary library;
  const Access access(library, Item::String8("abc", 10).charCount(GetParam()));
  Bytes data;
  BufferReader::ReadString8(access.rw, 0, data);
  ASSERT_EQ(data.size(), 11U);
  if (GetParam() >= 3) {
    EXPECT_EQ(Bytes(data.begin(), data.begin() + 4), (Bytes{'a', 'b', 'c', 0}));
  } else {
    EXPECT_EQ(data, Bytes(11, 0));
  }
}

TEST_P(CharCountLies, StayInsideAWideString) {
  FakeLibrary library;
  const Access access(library, Item::String16(u"abc", 4).charCount(GetParam()));
  Bytes data;
  BufferReader::ReadString16(access.rw, 0, data);
  EXPECT_EQ(data.size(), 10U);
}

INSTANTIATE_TEST_SUITE_P(All, CharCountLies,
                         ::testing::Values(-1, -2, -1000, std::numeric_limits<agl_int32_t>::min(), 11, 12,
                                           5000, 0x40000000, std::numeric_limits<agl_int32_t>::max()));

TEST(Strings, LongerThanDeclaredAreCut) {
  FakeLibrary library;
  const Access narrow(library, Item::String8("abcdefgh", 3));
  Bytes data;
  BufferReader::ReadString8(narrow.rw, 0, data);
  EXPECT_EQ(data.size(), 4U);
  const Access wide(library, Item::String16(u"abcdefgh", 3));
  data.clear();
  BufferReader::ReadString16(wide.rw, 0, data);
  EXPECT_EQ(data, (Bytes{'a', 0, 'b', 0, 'c', 0, 'd', 0}));
}

class NegativeStringSizes : public ::testing::TestWithParam<agl_int32_t> {};

TEST_P(NegativeStringSizes, RaiseOutOfRangeAndOfferTheLibraryNoRoom) {
  FakeLibrary library;
  const Access narrow(library, Item::String8("abc", 10).stringSize(GetParam()));
  Bytes data{1, 2};
  EXPECT_THROW(BufferReader::ReadString8(narrow.rw, 0, data), std::out_of_range);
  const Access wide(library, Item::String16(u"abc", 10).stringSize(GetParam()));
  EXPECT_THROW(BufferReader::ReadString16(wide.rw, 0, data), std::out_of_range);
  constexpr std::size_t kMaxCharCount = 5;
  for (const auto& call : library.calls()) {
    if (call.function.starts_with("AGL_Symbolic_GetAccessBufferString")) {
      EXPECT_LE(std::stoll(call.arguments.at(kMaxCharCount)), 0) << call.text();
    }
  }
}

// Twice the last three wraps to 2, 4 and 2147483646 in 32 bits.
INSTANTIATE_TEST_SUITE_P(All, NegativeStringSizes,
                         ::testing::Values(-1, -2, -1000, std::numeric_limits<agl_int32_t>::min(),
                                           std::numeric_limits<agl_int32_t>::min() + 1, -1073741826));

TEST(Strings, OfAMillionCharactersAreReadAsDeclared) {
  FakeLibrary library;
  const Access access(library, Item::String8("abc", 1000000));
  Bytes data;
  BufferReader::ReadString8(access.rw, 0, data);
  ASSERT_EQ(data.size(), 1000001U);
  EXPECT_EQ(data[2], 'c');
  EXPECT_EQ(data[3], 0);
}

TEST(Strings, OfAnAbsurdDeclaredSizeTakeTheMemoryOfAMillionCharacters) {
  FakeLibrary library;
  constexpr auto kHuge = std::numeric_limits<agl_int32_t>::max();
  Bytes data;
  const Access narrow(library, Item::String8("abc", 10).stringSize(kHuge));
  BufferReader::ReadString8(narrow.rw, 0, data);
  ASSERT_EQ(data.size(), (1U << 20) + 1);
  EXPECT_EQ(Bytes(data.begin(), data.begin() + 4), (Bytes{'a', 'b', 'c', 0}));
  const Access wide(library, Item::String16(u"abc", 10).stringSize(kHuge));
  BufferReader::ReadString16(wide.rw, 0, data);
  ASSERT_EQ(data.size(), 2 * ((1U << 20) + 1));
  EXPECT_EQ(Bytes(data.begin(), data.begin() + 7), (Bytes{'a', 0, 'b', 0, 'c', 0, 0}));
}

}  // namespace
