// SPDX-License-Identifier: MIT
// Writes of strings, Booleans and bit arrays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

using testing::ElementsAre;

enum Row : DWORD { kPlain, kMatrix, kRegister, kBracket, kMember };

class TextWrites : public testing::Test {
 protected:
  void SetUp() override { device.connected(); }

  void write(const TagBlock& tag, const std::vector<WORD>& words) {
    device.output({RequestBuilder::WordWrite(tag, words)});
  }
  void write_bit(const TagBlock& tag, int value) { device.output({RequestBuilder::BitWrite(tag, value)}); }

  // The one text written, with path and count: "Texts[3]: AB (2)".
  std::string text() const {
    const auto list = library.stored();
    if (list.size() != 1 || list[0].function != "AGL_Symbolic_SetAccessBufferString8")
      return "(not one text)";
    return list[0].path + "#" + std::to_string(list[0].element) + ": " + list[0].text + " (" +
           std::to_string(list[0].char_count) + ")";
  }
  std::vector<std::string> stored() const {
    std::vector<std::string> list;
    for (const auto& s : library.stored())
      list.push_back(s.path + "#" + std::to_string(s.element) + "=" + std::to_string(s.number));
    return list;
  }

  FakeLibrary library;
  Device device{
      ProjectFile().tag("Plain").tag("Matrix[1,2]").tag("Line[INDEX]").tag("Texts[0]").tag("Line[2].Text")};
};

TagBlock string_tag(DWORD row = kPlain) {
  return TagBlock(DT_STRING).row(row);
}

}  // namespace

TEST_F(TextWrites, WordHoldsTwoCharactersLowByteFirst) {
  library.add("Plain", Item::String8("", 20));
  write(string_tag(), {0x4241});
  EXPECT_EQ(text(), "Plain#0: AB (2)");
  EXPECT_THAT(write_string_data, ElementsAre('A', 'B'));
}

TEST_F(TextWrites, ZeroBytesAreDroppedWhereverTheyStand) {
  library.add("Plain", Item::String8("", 20));
  write(string_tag(), {0x0041, 0x4200, 0x0000, 0x4443});
  EXPECT_EQ(text(), "Plain#0: ABCD (4)");
}

TEST_F(TextWrites, AlignedTextArrivesAsItsCharacters) {
  library.add("Plain", Item::String8("", 20));
  write(string_tag(), {0x0041, 0x0042, 0x00E4});
  EXPECT_EQ(text(), "Plain#0: AB\xE4 (3)");
}

TEST_F(TextWrites, EmptyTextIsTwoZeroBytesAndSoAnEmptyString) {
  library.add("Plain", Item::String8("old", 20));
  for (const auto& words : {std::vector<WORD>{}, {0}, {0, 0, 0}}) {
    library.clearLog();
    write(string_tag(), words);
    EXPECT_EQ(text(), "Plain#0:  (0)");
    EXPECT_THAT(write_string_data, ElementsAre(0, 0));
  }
}

TEST_F(TextWrites, EmptyTextToAnElementIsTwoZeroBytesToo) {
  library.add("Texts[3]", Item::String8("old", 20));
  write(string_tag(kBracket).index(3), {0});
  EXPECT_EQ(text(), "Texts[3]#0:  (0)");
}

TEST_F(TextWrites, DataOfAnEarlierStringIsGone) {
  library.add("Plain", Item::String8("", 20));
  write(string_tag(), {0x4241, 0x4443});
  library.clearLog();
  write(string_tag(), {0x5A59});
  EXPECT_EQ(text(), "Plain#0: YZ (2)");
  EXPECT_THAT(write_string_data, ElementsAre('Y', 'Z'));
}

TEST_F(TextWrites, ElementReplacesTheLastBracketGroup) {
  library.add("Texts[3]", Item::String8("", 20));
  write(string_tag(kBracket).index(3), {0x4241});
  EXPECT_EQ(text(), "Texts[3]#0: AB (2)");
}

TEST_F(TextWrites, NameWithoutABracketGetsTheIndexAppended) {
  library.add("Plain[3]", Item::String8("", 20));
  write(string_tag().index(3), {0x4241});
  EXPECT_EQ(text(), "Plain[3]#0: AB (2)");
}

TEST_F(TextWrites, IndexZeroNamesAnElementToo) {
  library.add("Plain[0]", Item::String8("", 20));
  write(string_tag().index(0), {0x4241, 0x4443});
  EXPECT_EQ(text(), "Plain[0]#0: ABCD (4)");
}

TEST_F(TextWrites, NameIsCutAtItsLastBracketWhateverFollows) {
  library.add("Line[3]", Item::String8("", 20));
  write(string_tag(kMember).index(3), {0x4241});
  EXPECT_EQ(text(), "Line[3]#0: AB (2)");
}

TEST_F(TextWrites, MultiDimensionalNameIsWrittenAsItStands) {
  library.add("Matrix[1,2]", Item::String8("", 20));
  write(string_tag(kMatrix).index(5), {0x4241});
  EXPECT_EQ(text(), "Matrix[1,2]#0: AB (2)");
}

TEST_F(TextWrites, MultiDimensionalNameWithoutIndexToo) {
  library.add("Matrix[1,2]", Item::String8("", 20));
  write(string_tag(kMatrix), {0x4241});
  EXPECT_EQ(text(), "Matrix[1,2]#0: AB (2)");
}

TEST_F(TextWrites, IndexRegisterGivesThePath) {
  library.add("Line[3]", Item::String8("", 20));
  write(string_tag(kRegister).index(3), {0x4241});
  EXPECT_EQ(text(), "Line[3]#0: AB (2)");
}

// A string's element index and width show only when the access behind the path is no string.
TEST_F(TextWrites, IndexIsPassedASecondTimeBesideThePath) {
  // The asymmetry with the other types, whose index becomes 0, is deliberate.
  library.add("Texts[3]", Item::Int16(std::vector<std::int16_t>(8)));
  write(string_tag(kBracket).index(3), {0x4241, 0x4443});
  EXPECT_THAT(stored(), ElementsAre("Texts[3]#3=16961", "Texts[3]#4=17475"));
}

TEST_F(TextWrites, PlainNameMatrixAndRegisterPassIndexZero) {
  library.add("Plain", Item::Int16(std::vector<std::int16_t>(8)));
  write(string_tag(), {0x4241, 0x4443});
  EXPECT_THAT(stored(), ElementsAre("Plain#0=16961", "Plain#1=17475"));
  library.clearLog();
  library.add("Matrix[1,2]", Item::Int16(std::vector<std::int16_t>(8)));
  write(string_tag(kMatrix).index(3), {0x4241});
  EXPECT_THAT(stored(), ElementsAre("Matrix[1,2]#0=16961"));
  library.clearLog();
  library.add("Line[3]", Item::Int16(std::vector<std::int16_t>(8)));
  write(string_tag(kRegister).index(3), {0x4241});
  EXPECT_THAT(stored(), ElementsAre("Line[3]#0=16961"));
}

TEST_F(TextWrites, WideTextIsHandedOverWithItsByteCount) {
  library.add("Plain", Item::String16(u"", 254));
  write(string_tag(), {0x4241, 0x4443});
  ASSERT_EQ(library.stored().size(), 1U);
  const auto s = library.stored()[0];
  EXPECT_EQ(s.function, "AGL_Symbolic_SetAccessBufferString16");
  EXPECT_EQ(s.char_count, 4);
  EXPECT_EQ(s.wide, std::u16string(u"\u4241\u4443\0\0", 4)) << "zero-padded to the count";
}

TEST_F(TextWrites, WordCountBeyondTheRecordStopsAtItsWords) {
  library.add("Plain", Item::String8("", 254));
  device.output({RequestBuilder::WordWrite(string_tag(), std::vector<WORD>(2048, 0x4141)).announce(65535)});
  ASSERT_EQ(library.stored().size(), 1U);
  EXPECT_EQ(library.stored()[0].char_count, 4096);
  EXPECT_EQ(library.stored()[0].text, std::string(4096, 'A'));
}

TEST_F(TextWrites, BooleanBitWriteIsOneOrZero) {
  library.add("Plain", Item::Bool(false));
  for (const auto& [byte, value] : {std::pair{1, 1}, {0, 0}, {2, 1}, {0x80, 1}, {255, 1}}) {
    library.clearLog();
    write_bit(TagBlock(DT_BOOL), byte);
    ASSERT_EQ(library.writes().size(), 1U);
    ASSERT_FALSE(library.stored().empty());
    EXPECT_EQ(library.stored()[0].path, "Plain");
    EXPECT_EQ(library.stored()[0].element, 0);
    EXPECT_EQ(library.stored()[0].number, static_cast<unsigned>(value)) << byte;
    EXPECT_TRUE(device.data().write_device_state);
  }
}

TEST_F(TextWrites, BooleanBitWriteHasNoIndexWhateverTheTagSays) {
  // Two bytes of one byte each from element 0 on; a Bool element takes its value from the first of them.
  library.add("Plain", Item::Bool(std::vector<bool>(8)));
  write_bit(TagBlock(DT_BOOL).index(5).bit(2), 1);
  EXPECT_THAT(stored(), ElementsAre("Plain#0=1", "Plain#1=1"));
}

TEST_F(TextWrites, BooleanBitWriteHandsOverTheBytesOneAndZero) {
  library.add("Plain", Item::UInt8(std::vector<std::uint8_t>(8)));
  write_bit(TagBlock(DT_BOOL), 77);
  EXPECT_THAT(stored(), ElementsAre("Plain#0=1", "Plain#1=0"));
}

TEST_F(TextWrites, BooleanBitWriteTakesTheIndexRegistersPath) {
  library.add("Line[3]", Item::Bool(false));
  write_bit(TagBlock(DT_BOOL).row(kRegister).index(3), 1);
  ASSERT_FALSE(library.stored().empty());
  EXPECT_EQ(library.stored()[0].path, "Line[3]");
}

TEST_F(TextWrites, BooleanBitWritePreparesTheFirstCommand) {
  library.add("Plain", Item::Bool(false));
  write_bit(TagBlock(DT_BOOL).index(5), 1);
  const auto& command = device.data().GCmdDesc[0];
  EXPECT_EQ(command.tag_name, "Plain");
  EXPECT_EQ(command.DataType, DT_BOOL);
  EXPECT_EQ(command.ResponseLength, 4);
}

TEST_F(TextWrites, FailedBooleanBitWriteIsKeptInTheDevice) {
  library.add("Plain", Item::Bool(false));
  library.fail("AGL_Symbolic_WriteMixEx", 1);
  device.data().write_device_state = true;
  write_bit(TagBlock(DT_BOOL), 1);
  EXPECT_FALSE(device.data().write_device_state);
  EXPECT_EQ(library.count("AGL_Symbolic_WriteMixEx"), 1) << "one write, not two";
}

TEST_F(TextWrites, BitArrayElementIsOneByteOfTheBitCommand) {
  library.add("Plain[5]", Item::UInt8(9));
  write_bit(TagBlock(DT_BITARY).index(5), 0x40);
  EXPECT_THAT(stored(), ElementsAre("Plain[5]#0=1"));
  library.clearLog();
  write_bit(TagBlock(DT_BITARY).index(5), 0);
  EXPECT_THAT(stored(), ElementsAre("Plain[5]#0=0"));
}

TEST_F(TextWrites, BitArrayWithoutIndexWritesThePlainName) {
  library.add("Plain", Item::UInt8({9, 9}));
  write_bit(TagBlock(DT_BITARY), 1);
  EXPECT_THAT(stored(), ElementsAre("Plain#0=1"));
}

TEST_F(TextWrites, BitArrayWordWriteReadsTheSameByteAndNoWord) {
  // The byte is the high byte of the word count, so no usual word write sets the bit.
  library.add("Plain", Item::UInt8(9));
  write(TagBlock(DT_BITARY), {0xFFFF, 0xFFFF});
  EXPECT_THAT(stored(), ElementsAre("Plain#0=0"));
  library.clearLog();
  device.output({RequestBuilder::WordWrite(TagBlock(DT_BITARY), {0}).announce(0x0100)});
  EXPECT_THAT(stored(), ElementsAre("Plain#0=1"));
}

TEST_F(TextWrites, BitWriteOfANumberTakesWordsLikeAWordWrite) {
  // Bit offset 1 and value 0 read as a count of one word.
  library.add("Plain", Item::Int16(0));
  auto batch = device.batch({RequestBuilder::BitWrite(TagBlock(DT_INT).bit(1), 0, 1)});
  batch[0].stCommand.stWORDWrite.wData[0] = 0x0102;
  device.output(batch);
  EXPECT_THAT(stored(), ElementsAre("Plain#0=258"));
}
