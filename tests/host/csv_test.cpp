// SPDX-License-Identifier: MIT
#include "host/csv.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

std::vector<std::vector<std::string>> texts(const CsvTable& table) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& row : table.rows) {
    rows.emplace_back();
    for (const auto& field : row) {
      rows.back().push_back(field.text);
    }
  }
  return rows;
}

std::string failure(std::string_view text) {
  try {
    parse_csv(text, "t.csv");
  } catch (const UserError& error) {
    return error.what();
  }
  return "none";
}

using Rows = std::vector<std::vector<std::string>>;

TEST(Csv, FieldsAndLinesAreCut) {
  EXPECT_EQ(texts(parse_csv("a,b\nc,\n", "t")), (Rows{{"a", "b"}, {"c", ""}}));
}

TEST(Csv, LastLineNeedsNoEnd) {
  EXPECT_EQ(texts(parse_csv("a,b\nc,d", "t")), (Rows{{"a", "b"}, {"c", "d"}}));
}

TEST(Csv, CarriageReturnBelongsToTheLineEnd) {
  EXPECT_EQ(texts(parse_csv("a,b\r\nc,d\r\n", "t")), (Rows{{"a", "b"}, {"c", "d"}}));
}

TEST(Csv, QuotedFieldHoldsCommasQuotesAndLineEnds) {
  EXPECT_EQ(texts(parse_csv("\"M[1,2]\",\"say \"\"so\"\"\",\"x\ny\"\n", "t")),
            (Rows{{"M[1,2]", "say \"so\"", "x\ny"}}));
}

TEST(Csv, ByteOrderMarkAndBlankLinesAreSkipped) {
  EXPECT_EQ(texts(parse_csv("\xEF\xBB\xBF\n\na\n\nb\n", "t")), (Rows{{"a"}, {"b"}}));
}

TEST(Csv, LinesBeforeTheFirstRowMayBeComments) {
  const auto table = parse_csv("# one\n#two\na\n#b\n", "t");
  EXPECT_THAT(table.comments, testing::ElementsAre(" one", "two"));
  EXPECT_EQ(texts(table), (Rows{{"a"}, {"#b"}}));
}

TEST(Csv, PlaceOfEachFieldIsKept) {
  const auto table = parse_csv("a,bb,c\n\"x\ny\",z\nw\n", "t");
  EXPECT_EQ(table.rows[0][2].column, 6U);
  EXPECT_EQ(table.rows[1][0].line, 2U);
  EXPECT_EQ(table.rows[1][1].line, 3U);
  EXPECT_EQ(table.rows[1][1].column, 4U);
  EXPECT_EQ(table.rows[2][0].line, 4U);
}

TEST(Csv, OpenQuoteIsAnErrorWhereItBegins) {
  EXPECT_EQ(failure("a\nb,\"c\n"), "t.csv:2:3: the quote is never closed; add one at the end of the field");
}

TEST(Csv, TextBehindAQuotedFieldIsAnError) {
  EXPECT_EQ(failure("\"a\"b\n"),
            "t.csv:1:4: text after the closing quote; write a quote inside a field twice");
}

TEST(Csv, FieldIsQuotedOnlyWhenItMustBe) {
  EXPECT_EQ(csv_field("Plant.Level"), "Plant.Level");
  EXPECT_EQ(csv_field("M[1,2]"), "\"M[1,2]\"");
  EXPECT_EQ(csv_field("\"a\""), "\"\"\"a\"\"\"");
  EXPECT_EQ(csv_field("#a"), "\"#a\"");
}

}  // namespace
}  // namespace ostravel::host
