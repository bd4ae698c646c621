// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "symbolic/bufferwriter.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(WriteString8, TakesTheWholeOfTheDataForElementZero) {
  FakeLibrary library;
  Access access(library, Item::String8("", 10));
  // Neither the source index nor the unit matters to a string.
  BufferWriter::WriteBufferValues(access.rw, {'a', 'b', 'c'}, 5, 0);
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)",
                          "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                          "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
                          "AGL_Symbolic_GetAccessStringSize(access:X, &0)",
                          "AGL_Symbolic_SetAccessBufferString8(access:X, buffer, 12, 0, \"abc\", 3)"));
}

TEST(WriteString8, DoesNotUseTheByteOffset) {
  FakeLibrary library;
  Access access(library, Item::Strings8({"", "", ""}, 10));
  BufferWriter::WriteString8(access.rw, 2, {'a', 'b', 'c'}, 1000);
  EXPECT_EQ(library.log().back(), "AGL_Symbolic_SetAccessBufferString8(access:X, buffer, 36, 2, \"abc\", 3)");
}

TEST(WriteString8, CountsTheDataNotTheTextUpToAZero) {
  FakeLibrary library;
  Access access(library, Item::String8("", 10));
  BufferWriter::WriteString8(access.rw, 0, {'a', 0, 'c', 0}, 0);
  ASSERT_EQ(library.stored().size(), 1U);
  EXPECT_EQ(library.stored()[0].char_count, 4);
  EXPECT_EQ(library.stored()[0].text, std::string("a\0c\0", 4));
}

// Deliberate: what the library makes of more characters than declared is its own affair.
TEST(WriteString8, DoesNotLimitTheCountToTheDeclaredSize) {
  FakeLibrary library;
  Access access(library, Item::String8("", 10));
  BufferWriter::WriteString8(access.rw, 0, Bytes(300, 'x'), 0);
  ASSERT_EQ(library.stored().size(), 1U);
  EXPECT_EQ(library.stored()[0].char_count, 300);
  EXPECT_EQ(library.stored()[0].text, std::string(300, 'x'));
}

TEST(WriteString8, WritesAnEmptyStringForTwoZeroBytes) {
  FakeLibrary library;
  Access access(library, Item::String8("abc", 10));
  BufferWriter::WriteString8(access.rw, 0, {0, 0}, 0);
  EXPECT_EQ(library.log().back(), "AGL_Symbolic_SetAccessBufferString8(access:X, buffer, 12, 0, \"\", 0)");
}

TEST(WriteString8, WritesThreeZeroBytesAsThreeCharacters) {
  FakeLibrary library;
  Access access(library, Item::String8("abc", 10));
  BufferWriter::WriteString8(access.rw, 0, {0, 0, 0}, 0);
  EXPECT_EQ(library.log().back(),
            "AGL_Symbolic_SetAccessBufferString8(access:X, buffer, 12, 0, \"\\x00\\x00\\x00\", 3)");
}

TEST(WriteString8, WritesAZeroBeforeACharacterAsTwoCharacters) {
  FakeLibrary library;
  Access access(library, Item::String8("abc", 10));
  BufferWriter::WriteString8(access.rw, 0, {0, 'b'}, 0);
  EXPECT_EQ(library.log().back(),
            "AGL_Symbolic_SetAccessBufferString8(access:X, buffer, 12, 0, \"\\x00b\", 2)");
}

// Deliberately unguarded: the second character of a single zero byte is looked at.
TEST(WriteString8, RaisesOutOfRangeForASingleZeroByte) {
  FakeLibrary library;
  Access access(library, Item::String8("abc", 10));
  EXPECT_THROW(BufferWriter::WriteString8(access.rw, 0, {0}, 0), std::out_of_range);
  EXPECT_EQ(library.count("AGL_Symbolic_SetAccessBufferString8"), 0);
}

TEST(WriteString8, WritesASingleCharacter) {
  FakeLibrary library;
  Access access(library, Item::String8("abc", 10));
  BufferWriter::WriteString8(access.rw, 0, {'z'}, 0);
  EXPECT_EQ(library.log().back(), "AGL_Symbolic_SetAccessBufferString8(access:X, buffer, 12, 0, \"z\", 1)");
}

TEST(WriteString8, RaisesOutOfRangeForNoData) {
  FakeLibrary library;
  Access access(library, Item::String8("abc", 10));
  EXPECT_THROW(BufferWriter::WriteString8(access.rw, 0, {}, 0), std::out_of_range);
  EXPECT_THROW(BufferWriter::WriteBufferValues(access.rw, {}, 0, 1), std::out_of_range);
}

TEST(WriteString8, ReportsAFailure) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_SetAccessBufferString8", -9);
  Access access(library, Item::String8("abc", 10));
  BufferWriter::WriteString8(access.rw, 0, {'z'}, 0);
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-9, buffer, 256)");
}

TEST(WriteString16, CountsBytesWhereTheLibraryCountsCharacters) {
  FakeLibrary library;
  Access access(library, Item::String16(u"", 10));
  BufferWriter::WriteBufferValues(access.rw, {'a', 0, 0xAC, 0x20}, 5, 0);
  // Deliberate: 4 for two characters. The text is as long as that says, with zeros behind.
  EXPECT_THAT(
      library.log(),
      ElementsAre(
          "AGL_Symbolic_GetAccessBufferElementCount(access:X, &0)",
          "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
          "AGL_Symbolic_GetAccessElementValueType(access:X, &-1)",
          "AGL_Symbolic_GetAccessStringSize(access:X, &0)",
          "AGL_Symbolic_SetAccessBufferString16(access:X, buffer, 24, 0, u\"a\\x20AC\\x0000\\x0000\", 4)"));
}

TEST(WriteString16, TakesAnOddByteAsTheLowHalfOfACharacter) {
  FakeLibrary library;
  Access access(library, Item::String16(u"", 10));
  BufferWriter::WriteString16(access.rw, 2, {'a', 0, 'b'}, 77);
  ASSERT_EQ(library.stored().size(), 1U);
  EXPECT_EQ(library.stored()[0].element, 2);
  EXPECT_EQ(library.stored()[0].char_count, 3);
  EXPECT_EQ(library.stored()[0].wide, std::u16string(u"ab\0", 3));
}

TEST(WriteString16, WritesTwoZeroBytesAsTheyAre) {
  FakeLibrary library;
  Access access(library, Item::String16(u"", 10));
  BufferWriter::WriteString16(access.rw, 0, {0, 0}, 0);
  EXPECT_EQ(library.stored()[0].char_count, 2);
  EXPECT_EQ(library.stored()[0].wide, std::u16string(u"\0\0", 2));
  EXPECT_NO_THROW(BufferWriter::WriteString16(access.rw, 0, {0}, 0));
}

TEST(WriteString16, RaisesOutOfRangeForNoData) {
  FakeLibrary library;
  Access access(library, Item::String16(u"", 10));
  EXPECT_THROW(BufferWriter::WriteString16(access.rw, 0, {}, 0), std::out_of_range);
}

TEST(WriteString16, ReportsAFailure) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_SetAccessBufferString16", -9);
  Access access(library, Item::String16(u"", 10));
  BufferWriter::WriteString16(access.rw, 0, {'z', 0}, 0);
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-9, buffer, 256)");
}

using Writer = void (*)(SymbolicRW_t&, const size_t&, const Bytes&, size_t);

struct Width {
  const char* name;
  Item item;
  Writer writer;
};

class StringWrites : public ::testing::TestWithParam<Width> {};

TEST_P(StringWrites, WriteNothingWithoutADeclaredSize) {
  FakeLibrary library;
  for (const agl_int32_t size : {0, -1, -2147483647}) {
    Access access(library, Item(GetParam().item).stringSize(size));
    GetParam().writer(access.rw, 0, {'a', 0}, 0);
    // The size is asked before the data is looked at.
    EXPECT_NO_THROW(GetParam().writer(access.rw, 0, {}, 0));
  }
  EXPECT_THAT(library.stored(), IsEmpty());
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 0);
}

TEST_P(StringWrites, ReportADeclaredSizeThatCannotBeFetchedAndWriteNothing) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_GetAccessStringSize", -9);
  Access access(library, GetParam().item);
  GetParam().writer(access.rw, 0, {'a', 0}, 0);
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_GetAccessStringSize(access:X, &0)",
                                         "AGL_GetErrorMsg(-9, buffer, 256)"));
}

TEST_P(StringWrites, GoOnWithADeclaredSizeThatArrivedDespiteAFailure) {
  FakeLibrary library;
  library.failAfterwards("AGL_Symbolic_GetAccessStringSize", -9);
  Access access(library, GetParam().item);
  GetParam().writer(access.rw, 0, {'a', 0}, 0);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 1);
  EXPECT_EQ(library.stored().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(All, StringWrites,
                         ::testing::Values(Width{"Narrow", Item::String8("", 10), BufferWriter::WriteString8},
                                           Width{"Wide", Item::String16(u"", 10),
                                                 BufferWriter::WriteString16}),
                         case_name<Width>);

}  // namespace
