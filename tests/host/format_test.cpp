// SPDX-License-Identifier: MIT
// The same rows in each of the three forms.
#include "host/format.h"

#include <gtest/gtest.h>

#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

std::string written(Format format, const std::vector<std::vector<json>>& rows) {
  const Scratch scratch;
  std::FILE* out = std::fopen(scratch.path("out").c_str(), "w");
  RowWriter writer(out, format, {"tag", "last_value"});
  for (const auto& row : rows) {
    writer.write(row);
  }
  writer.finish();
  std::fclose(out);
  return scratch.read("out");
}

const std::vector<std::vector<json>> kRows{
    {"Plant.\"A,b\"", 5}, {"Name", "say \"x\""}, {"None", nullptr}, {"Row", json{1, true, "t"}}};

TEST(RowWriter, JsonIsAnObjectALine) {
  EXPECT_EQ(written(Format::Json, kRows),
            "{\"tag\":\"Plant.\\\"A,b\\\"\",\"last_value\":5}\n"
            "{\"tag\":\"Name\",\"last_value\":\"say \\\"x\\\"\"}\n"
            "{\"tag\":\"None\",\"last_value\":null}\n"
            "{\"tag\":\"Row\",\"last_value\":[1,true,\"t\"]}\n");
}

TEST(RowWriter, CsvHasAHeaderLineAndQuotesWhatNeedsIt) {
  EXPECT_EQ(written(Format::Csv, kRows),
            "tag,last_value\n"
            "\"Plant.\"\"A,b\"\"\",5\n"
            "Name,\"say \"\"x\"\"\"\n"
            "None,\n"
            "Row,\"[1,true,\"\"t\"\"]\"\n");
}

TEST(RowWriter, TableIsAsWideAsItsCells) {
  EXPECT_EQ(written(Format::Text, kRows),
            "TAG          LAST VALUE\n"
            "Plant.\"A,b\"  5\n"
            "Name         say \"x\"\n"
            "None         -\n"
            "Row          [1,true,\"t\"]\n");
}

TEST(RowWriter, WithoutRowsOnlyCsvSaysItsColumns) {
  EXPECT_EQ(written(Format::Text, {}), "");
  EXPECT_EQ(written(Format::Json, {}), "");
  EXPECT_EQ(written(Format::Csv, {}), "tag,last_value\n");
}

TEST(RowWriter, LineEndsAndControlCharactersDoNotBreakARow) {
  const std::vector<std::vector<json>> rows{{"a\nb", "\x1b[2J"}};
  EXPECT_EQ(written(Format::Text, rows),
            "TAG       LAST VALUE\n"
            "a\\u000ab  \\u001b[2J\n");
  EXPECT_EQ(written(Format::Json, rows), "{\"tag\":\"a\\nb\",\"last_value\":\"\\u001b[2J\"}\n");
  EXPECT_EQ(written(Format::Csv, {{"a\nb", 1}}), "tag,last_value\n\"a\nb\",1\n");
}

TEST(RowWriter, TextThatIsNoUtf8IsReplacedInsteadOfRefused) {
  EXPECT_EQ(written(Format::Json, {{"a\xff", 1}}), "{\"tag\":\"a\xef\xbf\xbd\",\"last_value\":1}\n");
}

TEST(RowWriter, RowOfAnotherWidthIsAMistakeOfTheCaller) {
  EXPECT_THROW(written(Format::Json, {{"a"}}), std::invalid_argument);
}

}  // namespace
}  // namespace ostravel::host
