// SPDX-License-Identifier: MIT
// The offline rule for elements of string arrays: which key a name and an index lead to.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/driver/offline.h"

namespace {

using testing::ElementsAre;

enum Row : DWORD { kPlain, kOther, kTexts0, kTexts3, kMatrix, kRegister };

class OfflineStrings : public Offline {
 protected:
  static TagBlock text(DWORD row, int index) { return TagBlock(DT_STRING).row(row).index(index); }
  // The one key as "name row index".
  std::string key() {
    if (map().size() != 1) return "(" + std::to_string(map().size()) + " keys)";
    const auto& tag = map().begin()->first;
    return std::string(tag.pTagName) + " " + std::to_string(tag.TagIndex) + " " +
           std::to_string(tag.ArrayIndex);
  }
};

}  // namespace

TEST_F(OfflineStrings, NameOfTheSameElementStays) {
  write(text(kTexts0, 0), {0x4241});
  EXPECT_EQ(key(), "Texts[0] 2 0");
}

TEST_F(OfflineStrings, NameOfAnotherElementIsRebuiltAndLookedUp) {
  write(text(kTexts0, 3), {0x4241});
  EXPECT_EQ(key(), "Texts[3] 3 3");
}

TEST_F(OfflineStrings, RebuiltNameThatIsInNoRowHasRowMinusOne) {
  write(text(kTexts0, 5), {0x4241});
  EXPECT_EQ(key(), "Texts[5] -1 5");
}

TEST_F(OfflineStrings, ElementIsTheSameThroughEitherRow) {
  write(text(kTexts0, 3), {0x4241});
  EXPECT_THAT(words(text(kTexts3, 3), 1), ElementsAre(0x4241));
  EXPECT_EQ(map().size(), 1U);
}

TEST_F(OfflineStrings, NameWithoutABracketCountsAsElementZero) {
  write(text(kPlain, 0), {0x4241});
  EXPECT_EQ(key(), "Plain 0 0");
  map().clear();
  write(text(kPlain, 2), {0x4241});
  EXPECT_EQ(key(), "Plain[2] -1 2");
}

TEST_F(OfflineStrings, PlainNameWithoutAnIndexIsRebuiltToo) {
  // Index 0xFFFF differs from the name's 0 like any other.
  write(text(kPlain, 0xFFFF), {0x4241});
  EXPECT_EQ(key(), "Plain[65535] -1 65535");
  EXPECT_THAT(words(text(kPlain, 0xFFFF), 1), ElementsAre(0x4241));
}

TEST_F(OfflineStrings, BracketOf65535IsNeverRebuilt) {
  Device other(ProjectFile().tag("Texts[65535]"), Device::Simulated);
  other.output({RequestBuilder::WordWrite(text(0, 3), {0x4241})});
  ASSERT_EQ(other.data().GMap.size(), 1U);
  EXPECT_STREQ(other.data().GMap.begin()->first.pTagName, "Texts[65535]");
  EXPECT_EQ(other.data().GMap.begin()->first.TagIndex, 0);
}

TEST_F(OfflineStrings, TextInBracketsIsReadAsStrtolReadsIt) {
  // "INDEX" holds no number and counts as 0.
  write(text(kRegister, 0), {0x4241});
  EXPECT_EQ(key(), "Line[INDEX] 5 0");
  map().clear();
  write(text(kRegister, 4), {0x4241});
  EXPECT_EQ(key(), "Line[4] -1 4");
}

TEST_F(OfflineStrings, OpeningBracketAloneCountsAsZero) {
  Device other(ProjectFile().tag("Texts[7"), Device::Simulated);
  other.output({RequestBuilder::WordWrite(text(0, 0), {1})});
  EXPECT_STREQ(other.data().GMap.begin()->first.pTagName, "Texts[7");
  other.data().GMap.clear();
  other.output({RequestBuilder::WordWrite(text(0, 2), {1})});
  EXPECT_STREQ(other.data().GMap.begin()->first.pTagName, "Texts[2]");
}

TEST_F(OfflineStrings, NameIsCutAtItsLastBracketWhateverFollows) {
  Device other(ProjectFile().tag("Line[2].Text"), Device::Simulated);
  other.output({RequestBuilder::WordWrite(text(0, 3), {1})});
  EXPECT_STREQ(other.data().GMap.begin()->first.pTagName, "Line[3]");
}

TEST_F(OfflineStrings, ClosingBracketInFrontOfTheOpeningOneIsHarmless) {
  for (const char* name : {"a]b[3", "][", "]", "[", "[]"}) {
    Device other(ProjectFile().tag(name), Device::Simulated);
    try {
      other.output({RequestBuilder::WordWrite(text(0, 3), {1})});
    } catch (const std::out_of_range&) {
      // Taking a part of a name at an impossible position may raise; reading outside it may not happen.
    }
  }
}

TEST_F(OfflineStrings, MultiDimensionalNameStays) {
  write(text(kMatrix, 5), {0x4241});
  EXPECT_EQ(key(), "Matrix[1,2] 4 5");
}

TEST_F(OfflineStrings, OtherTypesKeepTheirName) {
  write(TagBlock(DT_INT).row(kTexts0).index(3), {1});
  EXPECT_EQ(key(), "Texts[0] 2 3");
}

TEST_F(OfflineStrings, SeveralWordsLieUnderConsecutiveIndexesOfOneName) {
  write(text(kTexts0, 3).count(3), {0x4241, 0x4443, 0x0045});
  EXPECT_EQ(map().size(), 3U);
  for (const auto& [tag, value] : map()) {
    EXPECT_STREQ(tag.pTagName, "Texts[3]");
    EXPECT_NE(value, 0U);
  }
  EXPECT_THAT(words(text(kTexts0, 3).count(3), 3), ElementsAre(0x4241, 0x4443, 0x0045));
  EXPECT_THAT(words(text(kTexts0, 4), 1), ElementsAre(0)) << "the next element is another name";
}

TEST_F(OfflineStrings, TwoCharactersShareAWord) {
  write(text(kTexts0, 0), {0x4241});
  EXPECT_EQ(map().begin()->second, 0x4241U);
}

TEST_F(OfflineStrings, RebuiltNamesOutliveTheCall) {
  for (int index = 10; index < 200; ++index) write(text(kTexts0, index), {static_cast<WORD>(index)});
  EXPECT_EQ(map().size(), 190U);
  for (const auto& [tag, value] : map())
    EXPECT_EQ(std::string(tag.pTagName), "Texts[" + std::to_string(tag.ArrayIndex) + "]");
  for (int index = 10; index < 200; ++index) EXPECT_THAT(words(text(kTexts0, index), 1), ElementsAre(index));
  EXPECT_EQ(map().size(), 190U);
}

TEST_F(OfflineStrings, BitWriteUsesTheNameAsFilled) {
  // The element rule belongs to whole values.
  write(text(kTexts0, 3).bit(2), {}, 1);
  EXPECT_EQ(key(), "Texts[0] 2 3");
}

TEST_F(OfflineStrings, BitReadAppliesTheElementRule) {
  // So a bit that was written into a string is not found again, unless the name says the index.
  write(text(kTexts0, 3).bit(2), {}, 1);
  EXPECT_THAT(words(text(kTexts0, 3).bit(2), 1), ElementsAre(0));
  write(text(kTexts3, 3).bit(2), {}, 1);
  EXPECT_THAT(words(text(kTexts3, 3).bit(2), 1), ElementsAre(0xFFFF));
}
