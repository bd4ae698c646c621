// SPDX-License-Identifier: MIT
// Strings: a character a word, two characters a word, wide, and the path of an element.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

using testing::Each;
using testing::ElementsAre;

enum Row : DWORD { kPlain, kMatrix, kRegister, kBracket, kMember, kOther };

ProjectFile project(std::uint32_t version) {
  return ProjectFile(version)
      .tag("Plain")
      .tag("Matrix[1,2]")
      .tag("Line[INDEX]")
      .tag("Texts[0]")
      .tag("Line[2].Text")
      .tag("Other");
}

class Strings : public testing::Test {
 protected:
  static constexpr std::uint32_t kAligned = 0;
  static constexpr std::uint32_t kPaired = 1;

  std::vector<INPUT_DATA> read(Device& device, std::vector<RequestBuilder> requests) {
    device.connected();
    return device.read(std::move(requests));
  }
  static RequestBuilder text(int count, DWORD row = kPlain, int index = 0xFFFF) {
    return RequestBuilder::Read(TagBlock(DT_STRING).row(row).index(index).count(count));
  }
  std::vector<std::string> paths_read() const {
    std::vector<std::string> list;
    for (const auto& job : library.reads())
      for (const auto& access : job.accesses) list.push_back(access.path);
    return list;
  }

  FakeLibrary library;
  Device aligned{project(kAligned)};
  Device paired{project(kPaired)};
};

}  // namespace

TEST_F(Strings, AlignedLayoutHasACharacterAWord) {
  library.add("Plain", Item::String8("abc", 10));
  const auto record = read(aligned, {text(5)}).at(0);
  EXPECT_EQ(status_of(record), "0/5");
  EXPECT_THAT(words_of(record, 6), ElementsAre('a', 'b', 'c', 0, 0, kUntouchedWord));
}

TEST_F(Strings, AlignedCharactersAreSignExtended) {
  library.add("Plain", Item::String8("\x7F\x80\xE4", 10));
  EXPECT_THAT(words_of(read(aligned, {text(4)}).at(0), 4), ElementsAre(0x7F, 0xFF80, 0xFFE4, 0));
}

TEST_F(Strings, PairedLayoutHasTwoCharactersAWordAndNoSign) {
  library.add("Plain", Item::String8("abc\xE4\x80", 10));
  EXPECT_THAT(words_of(read(paired, {text(5)}).at(0), 6),
              ElementsAre(0x6261, 0xE463, 0x0080, 0, 0, kUntouchedWord));
}

TEST_F(Strings, BitZeroOfTheVersionAloneDecides) {
  library.add("Plain", Item::String8("ab", 10));
  Device other(project(0xFFFFFFFCU));
  EXPECT_THAT(words_of(read(other, {text(2)}).at(0), 2), ElementsAre('a', 'b'));
  Device odd(project(0x80000001U));
  EXPECT_THAT(words_of(read(odd, {text(2)}).at(0), 2), ElementsAre(0x6261, 0));
}

TEST_F(Strings, FiveHundredTenBytesAreWideAndPairedWhateverTheVersion) {
  library.add("Plain", Item::String16(u"A\u20AC", 254));
  const auto record = read(aligned, {text(4)}).at(0);
  EXPECT_TRUE(aligned.data().GCmdDesc[0].is_wstring);
  EXPECT_THAT(words_of(record, 5), ElementsAre(0x0041, 0x20AC, 0, 0, kUntouchedWord));
  EXPECT_THAT(words_of(read(paired, {text(2)}).at(0), 2), ElementsAre(0x0041, 0x20AC));
}

TEST_F(Strings, WideTextOfAnotherSizeIsTakenByteByByte) {
  library.add("Plain", Item::String16(u"A\u20AC", 10));
  const auto record = read(aligned, {text(4)}).at(0);
  EXPECT_FALSE(aligned.data().GCmdDesc[0].is_wstring);
  EXPECT_THAT(words_of(record, 4), ElementsAre(0x41, 0, 0xFFAC, 0x20));
}

TEST_F(Strings, NarrowTextOf510BytesIsTakenForAWideOne) {
  library.add("Plain", Item::String8("abcd", 509));
  EXPECT_THAT(words_of(read(aligned, {text(2)}).at(0), 2), ElementsAre(0x6261, 0x6463));
}

TEST_F(Strings, WideMarkIsForgottenWhenTheStringStandsInFront) {
  library.add("Plain", Item::String16(u"AB", 254));
  read(aligned, {text(2)});
  library.add("Plain", Item::String8("ab", 10));
  EXPECT_THAT(words_of(read(aligned, {text(2)}).at(0), 2), ElementsAre('a', 'b'));
}

TEST_F(Strings, WideMarkOfALaterCommandStays) {
  // Only the head's mark is cleared; the second string goes on paired.
  library.add("Plain", Item::String8("ab", 10));
  library.add("Other", Item::String16(u"AB", 254));
  read(aligned, {text(1), text(1, kOther)});
  library.add("Other", Item::String8("cd", 10));
  const auto records = read(aligned, {text(1), text(1, kOther)});
  EXPECT_EQ(records[0].wData[0], 'a');
  EXPECT_EQ(records[1].wData[0], 0x6463);
}

TEST_F(Strings, SignExtensionReaches270Words) {
  library.add("Plain", Item::String8(std::string(300, '\xE4'), 400));
  const auto list = words_of(read(aligned, {text(300)}).at(0), 300);
  for (std::size_t i = 0; i < 300; ++i) ASSERT_EQ(list[i], i < 270 ? 0xFFE4 : 0x00E4) << i;
}

TEST_F(Strings, CountBeyondTheTextDeliversZeros) {
  library.add("Plain", Item::String8("ab", 4));
  const auto list = words_of(read(aligned, {text(20)}).at(0), 20);
  EXPECT_EQ(list[0], 'a');
  EXPECT_THAT(std::vector<WORD>(list.begin() + 2, list.end()), Each(0));
}

TEST_F(Strings, ArrayElementIsReadByItsOwnPath) {
  library.add("Texts[3]", Item::String8("three", 10));
  const auto record = read(aligned, {text(6, kBracket, 3)}).at(0);
  EXPECT_THAT(paths_read(), ElementsAre("Texts[3]"));
  EXPECT_THAT(words_of(record, 6), ElementsAre('t', 'h', 'r', 'e', 'e', 0));
  EXPECT_EQ(aligned.data().GCmdDesc[0].tag_name, "Texts[3]");
}

TEST_F(Strings, NameWithoutABracketGetsTheIndexAppended) {
  library.add("Plain[2]", Item::String8("two", 10));
  EXPECT_EQ(read(aligned, {text(3, kPlain, 2)}).at(0).wData[0], 't');
  EXPECT_THAT(paths_read(), ElementsAre("Plain[2]"));
}

TEST_F(Strings, IndexZeroIsAnElementToo) {
  library.add("Plain[0]", Item::String8("zero", 10));
  EXPECT_EQ(read(aligned, {text(4, kPlain, 0)}).at(0).wData[0], 'z');
  EXPECT_THAT(paths_read(), ElementsAre("Plain[0]"));
}

TEST_F(Strings, NameIsCutAtItsLastBracketWhateverFollows) {
  library.add("Line[7]", Item::String8("x", 10));
  EXPECT_EQ(read(aligned, {text(1, kMember, 7)}).at(0).wData[0], 'x');
  EXPECT_THAT(paths_read(), ElementsAre("Line[7]"));
}

TEST_F(Strings, MultiDimensionalNameIsReadAsItStands) {
  library.add("Matrix[1,2]", Item::String8("x", 10));
  EXPECT_EQ(read(aligned, {text(1, kMatrix, 7)}).at(0).wData[0], 'x');
  EXPECT_THAT(paths_read(), ElementsAre("Matrix[1,2]"));
}

TEST_F(Strings, IndexRegisterIsReadAsSubstituted) {
  library.add("Line[5]", Item::String8("x", 10));
  EXPECT_EQ(read(aligned, {text(1, kRegister, 5)}).at(0).wData[0], 'x');
  EXPECT_THAT(paths_read(), ElementsAre("Line[5]"));
}

TEST_F(Strings, IndexFFFFIsReadAsItStands) {
  library.add("Texts[0]", Item::String8("x", 10));
  EXPECT_EQ(read(aligned, {text(1, kBracket)}).at(0).wData[0], 'x');
  EXPECT_THAT(paths_read(), ElementsAre("Texts[0]"));
}

TEST_F(Strings, ElementsOfOneArrayAreOnePathEach) {
  library.add("Texts[1]", Item::String8("a", 10));
  library.add("Texts[2]", Item::String8("b", 10));
  const auto records = read(aligned, {text(1, kBracket, 1), text(1, kBracket, 2), text(1, kBracket, 1)});
  EXPECT_THAT(paths_read(), ElementsAre("Texts[1]", "Texts[2]"));
  EXPECT_EQ(records[0].wData[0], 'a');
  EXPECT_EQ(records[1].wData[0], 'b');
  EXPECT_EQ(records[2].wData[0], 'a');
}

TEST_F(Strings, TextLongerThanTheBufferStaysInsideIt) {
  library.add("Plain", Item::String8(std::string(6000, 'x'), 6000));
  for (Device* device : {&aligned, &paired}) {
    const auto record = read(*device, {text(65535)}).at(0);
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[0] & 0xFF, 'x');
    EXPECT_EQ(record.wData[2047] & 0xFF, 'x');
    EXPECT_EQ(device->data().GCmdDesc[0].WordCount, 65535U) << "the field behind the buffer";
  }
}
