// SPDX-License-Identifier: MIT
#include "host/taglist.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostravel::host {
namespace {

using testing::ElementsAre;

struct Read {
  std::vector<TagRow> rows;
  std::vector<std::string> findings;  // "line:column: text", with "warning: " where it is one
  Project settings;
  char separator = '\0';
};

Read read(std::string_view text, std::optional<char> separator = std::nullopt) {
  Read read;
  TagListReader reader(text, "t.csv", separator, [&read](const Finding& finding) {
    read.findings.push_back(fmt::format("{}:{}: {}{}", finding.place.line, finding.place.column,
                                        finding.severity == Severity::Warning ? "warning: " : "",
                                        finding.text));
  });
  for (TagRow row; reader.next(row);) {
    read.rows.push_back(row);
  }
  read.settings = reader.settings();
  read.separator = reader.separator();
  return read;
}

std::vector<std::string> names(const Read& read) {
  std::vector<std::string> names;
  for (const auto& row : read.rows) {
    names.push_back(row.tag.name);
  }
  return names;
}

TEST(TagList, SeparatorIsFoundInTheHeaderLine) {
  for (const char separator : {',', ';', '\t'}) {
    std::string text = "# a comment, with; all\t of them\n\nname|type|count|device|id\nA|INT|1|1|1\n";
    std::replace(text.begin(), text.end(), '|', separator);
    const auto list = read(text);
    EXPECT_EQ(list.separator, separator);
    EXPECT_THAT(list.findings, ElementsAre());
    EXPECT_THAT(names(list), ElementsAre("A"));
  }
}

TEST(TagList, OtherSeparatorsInColumnsOfOnesOwnDoNotMislead) {
  const auto list = read("name;type;count;device;id;a,b,c,d,e,f,g\nA;INT;1;1;1;x\n");
  EXPECT_EQ(list.separator, ';');
  EXPECT_THAT(names(list), ElementsAre("A"));
}

TEST(TagList, HeaderMayStandInQuotes) {
  const auto list = read("\"Name\";\"type\";\"count\";\"device\";\"id\"\r\"A\";\"INT\";\"1\";\"1\";\"1\"\r");
  EXPECT_THAT(list.findings, ElementsAre());
  EXPECT_THAT(names(list), ElementsAre("A"));
}

TEST(TagList, SeparatorThatIsGivenStandsAboveTheOneFound) {
  EXPECT_THAT(names(read("sep=,\nname;type;count;device;id\nA,B;INT;1;1;1\n", ';')), ElementsAre("A,B"));
}

TEST(TagList, FirstLineMayNameTheSeparator) {
  const auto list = read("\xEF\xBB\xBFsep=;\r\nname;type;count;device;id\r\nA;INT;1;1;1\r\n");
  EXPECT_THAT(list.findings, ElementsAre());
  EXPECT_THAT(names(list), ElementsAre("A"));
  EXPECT_EQ(list.rows[0].place(TagField::Name), (Place{3, 1}));
  EXPECT_THAT(read("sep=|\nname|type|count|device|id\n").findings,
              testing::Contains("1:5: separator '|' is not known; use a comma, a semicolon or a tab"));
}

TEST(TagList, LinesThatASpreadsheetFilledUpAreCommentsAndBlankLinesStill) {
  const auto list = read(
      "# password: a;b;;;;\n;;;;\n\"# strings: "
      "char-paired\";;;;\nname;type;count;device;id\n;;;;\nA;INT;1;1;1\n");
  EXPECT_THAT(list.findings, ElementsAre());
  EXPECT_EQ(list.settings.password, "a;b");
  EXPECT_TRUE(list.settings.char_paired);
  EXPECT_THAT(names(list), ElementsAre("A"));
}

TEST(TagList, CommentsMayStandBetweenTags) {
  const auto list = read("name,type,count,device,id\n# pumps\nA,INT,1,1,1\n#B,INT,1,1,2\n\"#C\",INT,1,1,3\n");
  EXPECT_THAT(names(list), ElementsAre("A", "#C"));
  EXPECT_THAT(list.findings, ElementsAre());
}

TEST(TagList, SettingBelowTheHeaderIsWarnedOf) {
  const auto list = read("name,type,count,device,id\n# password: x\n");
  EXPECT_EQ(list.settings.password, std::nullopt);
  EXPECT_THAT(list.findings,
              ElementsAre("2:1: warning: a setting below the header line counts for nothing; move it above"));
}

TEST(TagList, ColumnsOfOnesOwnAreLeftOut) {
  const auto list = read("note,name,type,count,first,elements,device,id,,\nx,A,INT,1,,1,1,1,,\n");
  EXPECT_THAT(list.findings, ElementsAre());
  EXPECT_EQ(list.rows[0].place(TagField::Type), (Place{2, 5}));
}

// It may be one of those that need not be there, misspelt.
TEST(TagList, ForeignColumnIsWarnedOfWhenAColumnIsMissing) {
  const auto list = read("note,name,type,count,device,id,,\nx,A,INT,1,1,1,,\n");
  EXPECT_THAT(list.findings, ElementsAre("1:1: warning: column 'note' means nothing here; columns are name, "
                                         "type, count, first, elements, device, id"));
  EXPECT_EQ(list.rows[0].place(TagField::Type), (Place{2, 5}));
}

TEST(TagList, GoesOnAfterErrorsAndTellsThemAll) {
  const auto list = read("name,type,count,device,id\nA,FLOAT,0,1,x\n\"B\"x,INT,1,1,1\nC,INT\nD,INT,1,1,1\n");
  EXPECT_THAT(
      list.findings,
      ElementsAre(testing::StartsWith("2:3: type 'FLOAT' is not known"),
                  "2:9: count '0' is no whole number from 1 to 65535",
                  "2:13: id 'x' is no whole number from 0 to 4294967295",
                  "3:4: text after the closing quote; write a quote inside a field twice",
                  "4:3: 2 fields, and the header line has 5; put names with a separator in them in quotes"));
  EXPECT_THAT(names(list), ElementsAre("A", "C", "D"));
  EXPECT_FALSE(list.rows[0].whole);
  EXPECT_FALSE(list.rows[1].whole);
  EXPECT_TRUE(list.rows[2].whole);
}

TEST(TagList, HeaderThatCannotBeUsedGivesNoRows) {
  const auto list = read("name,type,count\nA,INT,1\n");
  EXPECT_THAT(list.findings, ElementsAre("1:1: column 'device' is missing from the header line; add it",
                                         "1:1: column 'id' is missing from the header line; add it"));
  EXPECT_TRUE(list.rows.empty());
}

TEST(TagList, SettingsErrorsHaveTheirPlace) {
  EXPECT_THAT(read("\n# strings: wide\nname,type,count,device,id\n").findings,
              ElementsAre("2:1: strings 'wide' is not known; write char-paired or word-aligned"));
}

TEST(TagList, SeparatorsHaveNames) {
  EXPECT_EQ(separator_from("semicolon"), ';');
  EXPECT_EQ(separator_from("TAB"), '\t');
  EXPECT_EQ(separator_from("\t"), '\t');
  EXPECT_EQ(separator_from("comma"), ',');
  EXPECT_EQ(separator_from("|"), std::nullopt);
  EXPECT_EQ(separator_from(""), std::nullopt);
}

}  // namespace
}  // namespace ostravel::host
