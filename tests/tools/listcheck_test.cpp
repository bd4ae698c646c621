// SPDX-License-Identifier: MIT
#include "tools/listcheck.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostravel::tags {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kHeader = "name,type,count,first,elements,device,id\n";

// "line:column: text", warnings with "warning: ", of the rows below a header.
std::vector<std::string> findings(const std::string& rows, const std::string& head = {}) {
  std::vector<std::string> texts;
  const auto check = check_list({head + kHeader + rows, std::nullopt});
  for (const auto& [finding, tag] : check.findings) {
    texts.push_back(fmt::format("{}:{}: {}{}", finding.place.line, finding.place.column,
                                finding.severity == host::Severity::Warning ? "warning: " : "",
                                finding.text));
  }
  return texts;
}

TEST(ListCheck, ListInOrderHasNoFindings) {
  EXPECT_THAT(findings("A,INT,1,,1,1,1\nB,DINT,10,0,1,1,2\nC,STRING,254,0,5,1,3\nD,BitArray,9,0,1,1,4\n"),
              IsEmpty());
}

TEST(ListCheck, EveryFieldAndFaultIsToldWithItsPlace) {
  EXPECT_THAT(findings("A,FLOAT,x,,1,1,1\nB,BOOL,3000,,2,1,2\nC,INT,1\n"),
              ElementsAre(testing::StartsWith("2:3: type 'FLOAT' is not known"),
                          "2:9: count 'x' is no whole number from 1 to 65535",
                          "3:3: an array of Bool has the type BitArray; change the type",
                          "3:8: 3000 x BOOL needs 3000 words, and a record holds 2048; split the tag",
                          "3:14: elements belongs to arrays of texts; leave it 1, or give first",
                          "4:7: 3 fields, and the header line has 7; put names with a separator in them in "
                          "quotes"));
}

TEST(ListCheck, FindingsKnowTheirTag) {
  const auto check = check_list({std::string(kHeader) + "\"x\"y\nA,INT,0,,1,1,1\n", std::nullopt});
  ASSERT_EQ(check.findings.size(), 2U);
  EXPECT_EQ(check.findings[0].tag, "");
  EXPECT_EQ(check.findings[1].tag, "A");
  EXPECT_EQ(check.tags, 1U);
  EXPECT_EQ(check.count(host::Severity::Error), 2U);
}

TEST(ListCheck, ColumnInANameCountsQuotesAsTheListHasThem) {
  EXPECT_THAT(findings("Ä.b-c,INT,1,,1,1,1\n\"\"\"Ä\"\".d-e\",INT,1,,1,1,2\n"),
              ElementsAre("2:4: a name with '-' in it goes in quotes: \"b-c\"",
                          "3:9: a name with '-' in it goes in quotes: \"d-e\""));
}

TEST(ListCheck, TextThatCannotBeReadIsOneFinding) {
  const auto check = check_list({"\xFF\xFEn", std::nullopt});
  ASSERT_EQ(check.findings.size(), 1U);
  EXPECT_EQ(check.findings[0].finding.place, (host::Place{1, 1}));
}

TEST(ListCheck, TagListedTwiceIsAnError) {
  EXPECT_THAT(findings("A,INT,1,,1,1,1\nA,INT,1,,1,1,2\nA,INT,1,,1,2,3\n"),
              ElementsAre("3:1: A stands in line 2 already; remove one"));
}

TEST(ListCheck, TheSameVariableInAnotherFormIsAWarning) {
  EXPECT_THAT(
      findings("A.B,INT,1,,1,1,1\na.b,INT,1,,1,1,2\nA.B,WORD,1,,1,1,3\n"),
      ElementsAre("3:1: warning: a.b is the variable that line 2 has as A.B",
                  "4:1: warning: A.B stands in line 2 already, as 1 INT; by name only that one is found"));
}

TEST(ListCheck, PartsOfAnArrayAreNoDuplicates) {
  EXPECT_THAT(findings("A,DINT,10,0,1,1,1\nA,DINT,10,20,1,1,2\nA,DINT,10,10,1,1,3\n"), IsEmpty());
  EXPECT_THAT(findings("A,DINT,10,0,1,1,1\nA,DINT,10,20,1,1,2\nA,DINT,10,11,1,1,3\nA,DINT,2,9,1,1,4\n"),
              ElementsAre(testing::HasSubstr("4:1: warning: A stands in line 3 already"),
                          testing::HasSubstr("5:1: warning: A stands in line 2 already")));
}

TEST(ListCheck, StringsLongerThanAPlcHasThemAreErrors) {
  EXPECT_THAT(findings("A,STRING,255,,1,1,1\n"),
              ElementsAre("2:10: a STRING has at most 254 characters in a PLC"));
}

TEST(ListCheck, WideTextsAreWarnedOf) {
  EXPECT_THAT(
      findings("A,WSTRING,254,,1,1,1\nB,WSTRING,20,,1,1,2\nC,STRING,20,,1,1,3\n"),
      ElementsAre("2:3: warning: plain letters written to a WSTRING arrive two to a character; write "
                  "texts to a STRING",
                  "2:3: warning: a STRING polled where this one stood in a batch comes paired; poll the "
                  "two apart",
                  "3:11: warning: a WSTRING of 20 characters comes a byte a word; declare it "
                  "WString[254]"));
  EXPECT_THAT(findings("A,WSTRING,20,,1,1,1\nC,STRING,20,,1,1,3\n", "# strings: char-paired\n"),
              ElementsAre(testing::HasSubstr("3:3: warning: plain letters")));
}

TEST(ListCheck, ArraysThatDoNotStartAtZeroAreWarnedOf) {
  EXPECT_THAT(
      findings(
          "A,INT,3,-1,1,1,1\nB,INT,3,2,1,1,2\nC,STRING,9,1,3,1,3\n\"B[3]\",INT,1,,1,1,4\nD,INT,1,1,1,1,5\n"),
      ElementsAre(
          "2:9: warning: an array with a negative lower bound reads as zeros; start it at 0 in the PLC",
          "3:9: warning: a write of several elements starts 2 too far on; write one at a time",
          "4:12: warning: texts of an array that does not start at 0 read as empty; start it at 0 in the "
          "PLC",
          "5:1: warning: an element of an array that does not start at 0 reads as zero by itself; read "
          "B with an index"));
}

TEST(ListCheck, RestOfAnArrayFromZeroIsNotWarnedOf) {
  EXPECT_THAT(findings("A,DINT,10,10,1,1,1\nA,DINT,10,0,1,1,2\nA[3],DINT,1,,1,1,3\n"), IsEmpty());
}

TEST(ListCheck, ArraysWhoseFirstElementIsSwappedAreWarnedOf) {
  EXPECT_THAT(
      findings("A,WORD,2,0,1,1,1\nB,UINT,1,0,1,1,2\nC,UINT,6,,1,1,3\n"),
      ElementsAre("2:3: warning: a write of several elements of a WORD array swaps the bytes of the first "
                  "one; write that one once more",
                  "4:3: warning: a write of several elements of a UINT array swaps the bytes of the first "
                  "one; write that one once more"));
}

}  // namespace
}  // namespace ostravel::tags
