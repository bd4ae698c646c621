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

TEST(Csv, EveryLineEndEndsALine) {
  EXPECT_EQ(texts(parse_csv("a,b\rc,d\n\re,f\r\n\r\ng,", "t")),
            (Rows{{"a", "b"}, {"c", "d"}, {"e", "f"}, {"g", ""}}));
}

TEST(Csv, SeparatorIsTheOneThatIsGiven) {
  EXPECT_EQ(texts(parse_csv("a,b;\"c;d\"\n", "t", ';')), (Rows{{"a,b", "c;d"}}));
  EXPECT_EQ(texts(parse_csv("a;b\tc\n", "t", '\t')), (Rows{{"a;b", "c"}}));
}

TEST(Csv, ColumnsAreCountedInCharactersAndLinesByEachKindOfEnd) {
  const auto table = parse_csv("\xEF\xBB\xBF\xC3\x84\xE2\x82\xAC,x\r\"1\r2\r\n3\n4\",y", "t");
  EXPECT_EQ(table.rows[0][1].place(), (Place{1, 4}));
  EXPECT_EQ(table.rows[1][0].place(), (Place{2, 1}));
  EXPECT_EQ(table.rows[1][1].place(), (Place{5, 4}));
}

TEST(Csv, FieldSaysWhetherItStoodInQuotes) {
  const auto table = parse_csv("\"a\",a, \"a\"\n", "t");
  EXPECT_TRUE(table.rows[0][0].quoted);
  EXPECT_FALSE(table.rows[0][1].quoted);
  EXPECT_EQ(table.rows[0][2].text, " \"a\"");
}

TEST(Csv, ReaderGoesOnBehindALineInError) {
  const std::string text = "\"a\"b,c\nd\n";
  CsvReader reader(text, "t");
  CsvRow row;
  EXPECT_THROW(reader.next(row), PlacedError);
  ASSERT_TRUE(reader.next(row));
  EXPECT_EQ(row.front().text, "d");
  EXPECT_EQ(row.front().place(), (Place{2, 1}));
  EXPECT_FALSE(reader.next(row));
}

TEST(Csv, Utf16IsNamedWithWhatToDo) {
  const std::string line =
      "t.csv:1:1: is UTF-16; save the list as UTF-8, which spreadsheets call \"CSV UTF-8\"";
  EXPECT_EQ(failure("\xFF\xFEn"), line);
  EXPECT_EQ(failure("\xFE\xFFn"), line);
  EXPECT_EQ(failure(std::string_view("n\0a\0", 4)), line);
  EXPECT_EQ(failure(std::string_view("\0n\0a", 4)), line);
}

TEST(Csv, FieldIsQuotedOnlyWhenItMustBe) {
  EXPECT_EQ(csv_field("a,b", ';'), "a,b");
  EXPECT_EQ(csv_field("a;b", ';'), "\"a;b\"");
  EXPECT_EQ(csv_field("a\rb"), "\"a\rb\"");
  EXPECT_EQ(csv_field("Plant.Level"), "Plant.Level");
  EXPECT_EQ(csv_field("M[1,2]"), "\"M[1,2]\"");
  EXPECT_EQ(csv_field("\"a\""), "\"\"\"a\"\"\"");
  EXPECT_EQ(csv_field("#a"), "\"#a\"");
}

}  // namespace
}  // namespace ostravel::host
