// SPDX-License-Identifier: MIT
// ostravel-tags as a user has it: arguments in; text, files and exit code out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/process.h"
#include "tests/host/scratch.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

struct Result {
  int code = 0;
  std::string out;
  std::string error;
};

// Runs in the scratch folder, so that files have short names.
Result run(const Scratch& scratch, const std::vector<std::string>& arguments) {
  std::vector<std::string> words{"-c", "cd \"$1\" && shift && exec \"$0\" \"$@\" 2>stderr", TAGS_PATH,
                                 scratch.folder()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  ostravel::host::Process process("/bin/sh", words);
  process.close_input();
  Result result;
  result.out = process.read_all();
  result.code = process.wait();
  result.error = scratch.read("stderr");
  std::filesystem::remove(scratch.path("stderr"));
  return result;
}

std::vector<json> json_lines(const std::string& text) {
  std::vector<json> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const auto end = std::min(text.find('\n', begin), text.size());
    lines.push_back(json::parse(text.substr(begin, end - begin)));
    begin = end + 1;
  }
  return lines;
}

const std::string kHeader = "name,type,count,first,elements,device,id\n";
const std::string kSpreadsheet =
    "\xEF\xBB\xBFsep=;\r\n# password: "
    "x;;;;;\r\nName;TYPE;count;device;id;Remark\r\n\"A.\"\"B\"\"\";int;01;1;1;\"a;b\"\r\n"
    ";;;;;\r\n# C is off;;;;;\r\nD;REAL;1;1;2;";

TEST(TagsPack, GivesBackByteForByteWhatWasPacked) {
  const Scratch scratch;
  scratch.write("a.csv", kSpreadsheet);
  const auto packed = run(scratch, {"pack", "a.csv", "a.project"});
  EXPECT_EQ(packed.code, 0);
  EXPECT_EQ(packed.out, "a.project: 2 tags, with password\n");
  const auto dumped = run(scratch, {"dump", "a.project"});
  EXPECT_EQ(dumped.code, 0);
  EXPECT_EQ(dumped.out, kSpreadsheet);
  EXPECT_EQ(run(scratch, {"dump", "a.project", "--canonical"}).out,
            "# password: x\n" + kHeader + "\"A.\"\"B\"\"\",INT,1,,1,1,1\nD,REAL,1,,1,1,2\n");
}

TEST(TagsCommands, NamesInAFileCannotSteerTheTerminal) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader + "\"A\x1B[31m\",INT,1,,1,1,1\n");
  scratch.write("b.csv", kHeader + "\"A\x1B[31m\",X\x1B[2J,1,,1,1,1\n");
  scratch.write("c.csv", kHeader);
  for (const std::vector<std::string>& words : {std::vector<std::string>{"check", "a.csv"},
                                                {"check", "b.csv"},
                                                {"diff", "a.csv", "c.csv"},
                                                {"pack", "b.csv", "b.project"}}) {
    const auto result = run(scratch, words);
    EXPECT_THAT(result.out + result.error, HasSubstr("\\u001b")) << words.front();
    EXPECT_EQ((result.out + result.error).find('\x1B'), std::string::npos) << words.front();
  }
}

TEST(TagsPack, ColumnThatMayBeMisspeltIsWarnedOf) {
  const Scratch scratch;
  scratch.write("a.csv", kSpreadsheet);
  EXPECT_EQ(run(scratch, {"pack", "a.csv", "a.project"}).error,
            "ostravel-tags: a.csv:3:27: warning: column 'Remark' means nothing here; columns are name, type, "
            "count, first, elements, device, id\n");
}

TEST(TagsPack, SettingsOnTheCommandLineAreInTheListThatComesBack) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader);
  EXPECT_EQ(run(scratch, {"pack", "a.csv", "a.project", "--password", "y", "--char-paired"}).out,
            "a.project: 0 tags, with password, strings char-paired\n");
  EXPECT_EQ(run(scratch, {"dump", "a.project"}).out, "# password: y\n# strings: char-paired\n" + kHeader);
}

TEST(TagsPack, SeparatorCanBeForced) {
  const Scratch scratch;
  scratch.write("a.csv", "sep=,\nname;type;count;device;id\nA,B;INT;1;1;1\n");
  EXPECT_EQ(run(scratch, {"pack", "a.csv", "a.project", "--separator", "semicolon"}).code, 0);
  EXPECT_EQ(run(scratch, {"dump", "a.project"}).out, scratch.read("a.csv"));
  EXPECT_EQ(run(scratch, {"dump", "a.project", "--csv"}).out, kHeader + "\"A,B\",INT,1,,1,1,1\n");
}

TEST(TagsPack, FileIsReplacedOnlyWhenForcedAndNeverByHalf) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader + "A,INT,1,,1,1,1\n");
  scratch.write("bad.csv", kHeader + "A,INT,x,,1,1,1\n");
  scratch.write("a.project", "mine");
  const auto refused = run(scratch, {"pack", "a.csv", "a.project"});
  EXPECT_EQ(refused.code, 2);
  EXPECT_EQ(refused.error, "ostravel-tags: a.project: exists already; give --force to replace it\n");
  EXPECT_EQ(run(scratch, {"pack", "bad.csv", "a.project", "--force"}).code, 2);
  EXPECT_EQ(scratch.read("a.project"), "mine");
  EXPECT_EQ(run(scratch, {"pack", "a.csv", "a.project", "--force"}).code, 0);
  EXPECT_THAT(scratch.read("a.project"), StartsWith("OSTRAVEL"));
  EXPECT_EQ(scratch.files(), 3U);
}

TEST(TagsPack, WhatCannotBePackedIsOneLineWithItsPlace) {
  const std::vector<std::pair<std::string, std::string>> lists{
      {"", "a.csv:1:1: has no header line; begin it with: name,type,count,first,elements,device,id"},
      {kHeader + "A,INT,x,,1,1,1\n", "a.csv:2:7: count 'x' is no whole number from 1 to 65535"},
      {kHeader + "A,INT,1,,1,1,1,\n",
       "a.csv:2:16: 8 fields, and the header line has 7; put names with a separator in them in quotes"},
      {kHeader + "\"A\"\"\n", "a.csv:2:1: the quote is never closed; add one at the end of the field"},
      {"\xFF\xFEn", "a.csv:1:1: is UTF-16; save the list as UTF-8, which spreadsheets call \"CSV UTF-8\""},
      {"sep=|\n" + kHeader, "a.csv:1:5: separator '|' is not known; use a comma, a semicolon or a tab"},
      {"OSTRAVEL", "a.csv: is a project file already; pack takes a list of tags"}};
  for (const auto& [list, line] : lists) {
    const Scratch scratch;
    scratch.write("a.csv", list);
    const auto result = run(scratch, {"pack", "a.csv", "a.project"});
    EXPECT_EQ(result.code, 2) << line;
    EXPECT_EQ(result.error, "ostravel-tags: " + line + "\n");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(scratch.files(), 1U);
  }
}

TEST(TagsDump, WritesToAFileWhole) {
  const Scratch scratch;
  scratch.write("a.csv", kSpreadsheet);
  run(scratch, {"pack", "a.csv", "a.project"});
  EXPECT_EQ(run(scratch, {"dump", "a.project", "-o", "a.csv"}).error,
            "ostravel-tags: a.csv: exists already; give --force to replace it\n");
  const auto written = run(scratch, {"dump", "a.project", "-o", "b.csv"});
  EXPECT_EQ(written.code, 0);
  EXPECT_EQ(written.out, "");
  EXPECT_EQ(scratch.read("b.csv"), kSpreadsheet);
}

TEST(TagsDump, ShowsTagsAsJson) {
  const Scratch scratch;
  scratch.write("a.csv",
                "# password: x\n" + kHeader + "\"A.\"\"B\"\"\",INT,3,-1,1,1,7\nF\xFCll,REAL,1,,1,2,8\n");
  run(scratch, {"pack", "a.csv", "a.project"});
  const auto lines = json_lines(run(scratch, {"dump", "a.project", "--json"}).out);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], (json{{"settings", {{"password", "x"}, {"strings", "word-aligned"}}}}));
  EXPECT_EQ(
      lines[1],
      json::parse(R"({"name":"A.\"B\"","type":"INT","count":3,"first":-1,"elements":1,"device":1,"id":7})"));
  EXPECT_EQ(lines[2]["name"], "F\xEF\xBF\xBDll");
  EXPECT_EQ(lines[2]["first"], nullptr);
}

TEST(TagsDump, ListThatIsNotThatOfTheTagsIsNotShown) {
  const Scratch scratch;
  scratch.write("a.csv", "name;type;count;device;id\nA;INT;1;1;1\n");
  run(scratch, {"pack", "a.csv", "a.project"});
  auto bytes = scratch.read("a.project");
  bytes[bytes.rfind("A;INT")] = 'B';
  scratch.write("a.project", bytes);
  const auto result = run(scratch, {"dump", "a.project"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, kHeader + "A,INT,1,,1,1,1\n");
  EXPECT_EQ(
      result.error,
      "ostravel-tags: a.project: warning: the list kept in it is not that of its tags; this is the normal "
      "form of the tags\n");
  EXPECT_THAT(run(scratch, {"check", "a.project"}).out,
              StartsWith("a.project:1:1: warning: the list kept in the file is not that of its tags\n"));
}

TEST(TagsDump, FileThatIsNoProjectIsNamed) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader);
  const auto result = run(scratch, {"dump", "a.csv"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(
      result.error,
      "ostravel-tags: a.csv: is no project file of this host; make one with: ostravel-tags pack TAGS.csv "
      "a.csv\n");
}

TEST(TagsMerge, MakesAProjectOrAListOfBoth) {
  const Scratch scratch;
  scratch.write("a.csv", kSpreadsheet);
  scratch.write("b.csv", kHeader + "D,REAL,1,,1,1,2\nE,LREAL,1,,1,1,3\n");
  run(scratch, {"pack", "a.csv", "a.project"});
  const auto merged = run(scratch, {"merge", "a.project", "b.csv", "-o", "m.csv"});
  EXPECT_EQ(merged.code, 0);
  EXPECT_EQ(merged.out, "m.csv: 3 tags from 2 files\n");
  const auto expected =
      "# password: x\n" + kHeader + "\"A.\"\"B\"\"\",INT,1,,1,1,1\nD,REAL,1,,1,1,2\nE,LREAL,1,,1,1,3\n";
  EXPECT_EQ(scratch.read("m.csv"), expected);
  EXPECT_EQ(run(scratch, {"merge", "m.csv", "-o", "m.project"}).code, 0);
  EXPECT_EQ(run(scratch, {"dump", "m.project"}).out, expected);
  EXPECT_EQ(run(scratch, {"merge", "m.csv", "-o", "m.project"}).code, 2);
}

TEST(TagsMerge, DifferenceIsAnErrorUnlessOneIsPreferred) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader + "A,INT,1,,1,1,1\n");
  scratch.write("b.csv", "# note\n" + kHeader + "A,REAL,1,,1,1,1\n");
  const auto refused = run(scratch, {"merge", "a.csv", "b.csv", "-o", "m.csv"});
  EXPECT_EQ(refused.code, 2);
  EXPECT_EQ(
      refused.error,
      "ostravel-tags: b.csv:3:1: A is not as at a.csv:2:1: type REAL and INT; make them the same, or give "
      "--prefer first or --prefer last\n");
  EXPECT_EQ(scratch.files(), 2U);
  EXPECT_EQ(run(scratch, {"merge", "a.csv", "b.csv", "-o", "m.csv", "--prefer", "last"}).code, 0);
  EXPECT_EQ(scratch.read("m.csv"), kHeader + "A,REAL,1,,1,1,1\n");
  EXPECT_EQ(run(scratch, {"merge", "a.csv", "b.csv", "-o", "m.csv", "--prefer", "first", "--force"}).code, 0);
  EXPECT_EQ(scratch.read("m.csv"), kHeader + "A,INT,1,,1,1,1\n");
}

TEST(TagsCheck, FindingsHaveTheirPlaceAndTheSummaryComesLast) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader + "A..B,INT,x,,1,1,1\nC,WORD,2,0,1,1,2\n");
  const auto result = run(scratch, {"check", "a.csv"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(
      result.out,
      "a.csv:2:3: error: a part of the path is empty; remove a dot\n"
      "a.csv:2:10: error: count 'x' is no whole number from 1 to 65535\n"
      "a.csv:3:3: warning: a write of several elements of a WORD array swaps the bytes of the first one; "
      "write that one once more\n"
      "a.csv: 2 tags, 2 errors, 1 warning\n");
  EXPECT_THAT(run(scratch, {"check", "a.csv", "--errors-only"}).out, testing::Not(HasSubstr("warning: ")));
}

TEST(TagsCheck, WarningsFailOnlyWhenStrict) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader + "C,WORD,2,0,1,1,2\n");
  scratch.write("b.csv", kHeader);
  EXPECT_EQ(run(scratch, {"check", "a.csv"}).code, 0);
  EXPECT_EQ(run(scratch, {"check", "--strict", "a.csv", "b.csv"}).code, 1);
  EXPECT_EQ(run(scratch, {"check", "--strict", "b.csv"}).out, "b.csv: 0 tags, 0 errors, 0 warnings\n");
}

TEST(TagsCheck, PlacesInAProjectAreThoseOfItsList) {
  const Scratch scratch;
  scratch.write("a.csv", "# note\nid;name;type;count;device\n1;A-B;INT;1;1\n");
  run(scratch, {"pack", "a.csv", "a.project"});
  const auto result = run(scratch, {"check", "a.project"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(
      result.out,
      "a.project:3:4: error: a name with '-' in it goes in quotes: \"A-B\"\na.project: 1 tag, 1 error, 0 "
      "warnings\n");
}

TEST(TagsCheck, ProjectWithTagsThatCannotBeUsedIsStillChecked) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader + "A,INT,3,,1,1,1\nB,INT,5,,1,1,2\n");
  run(scratch, {"pack", "a.csv", "a.project"});
  auto bytes = scratch.read("a.project");
  bytes[bytes.size() - 17] = '\x7F';  // the high byte of A's count
  bytes[bytes.size() - 7] = '\x7F';   // of B's
  scratch.write("a.project", bytes);
  const auto result = run(scratch, {"check", "a.project"});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, HasSubstr("a.project:2:7: error: 32515 x INT needs 32515 words"));
  EXPECT_THAT(result.out, HasSubstr("a.project:3:7: error: 32517 x INT needs 32517 words"));
}

TEST(TagsCheck, ShowsFindingsAsJsonAndCsv) {
  const Scratch scratch;
  scratch.write("a.csv", kHeader + "\"A,B\",INT,1,,1,1,1\n");
  const auto lines = json_lines(run(scratch, {"check", "--json", "a.csv"}).out);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], json::parse(R"({"file":"a.csv","line":2,"column":3,"severity":"error","tag":"A,B",
                                      "finding":"a name with ',' in it goes in quotes: \"A,B\""})"));
  EXPECT_EQ(lines[1], json::parse(R"({"file":"a.csv","tags":1,"errors":1,"warnings":0})"));
  const auto csv = run(scratch, {"check", "--csv", "a.csv"});
  EXPECT_EQ(csv.code, 1);
  EXPECT_EQ(csv.out,
            "file,line,column,severity,tag,finding\n"
            "a.csv,2,3,error,\"A,B\",\"a name with ',' in it goes in quotes: \"\"A,B\"\"\"\n");
  EXPECT_EQ(csv.error, "a.csv: 1 tag, 1 error, 0 warnings\n");
}

TEST(TagsDiff, ListAndItsProjectAreTheSame) {
  const Scratch scratch;
  scratch.write("a.csv", kSpreadsheet);
  run(scratch, {"pack", "a.csv", "a.project"});
  const auto result = run(scratch, {"diff", "a.csv", "a.project"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "0 added, 0 removed, 0 changed: the same\n");
}

struct TwoLists : Scratch {
  TwoLists() {
    write("a.csv",
          "# password: x\n" + kHeader + "A,INT,1,,1,1,1\nB,INT,1,,1,1,2\nC,INT,1,,1,1,3\nE,INT,1,,1,1,5\n");
    write("b.csv", "# strings: char-paired\n" + kHeader +
                       "C,INT,1,,1,1,3\nA,REAL,4,0,1,1,1\nD,STRING,8,1,2,1,4\nE,INT,1,,1,1,5\n");
  }
};

TEST(TagsDiff, TellsWhatDiffers) {
  const TwoLists lists;
  const auto result = run(lists, {"diff", "a.csv", "b.csv"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out,
            "~ password: set -> none\n~ strings: word-aligned -> char-paired\n"
            "- B: type INT, count 1, elements 1, device 1, id 2\n"
            "~ A: type INT -> REAL, count 1 -> 4, first none -> 0\n"
            "+ D: type STRING, count 8, first 1, elements 2, device 1, id 4\n"
            "~ order: A is the first that stands further up\n"
            "1 added, 1 removed, 1 changed\n");
}

TEST(TagsDiff, ShowsDifferencesAsJsonAndCsv) {
  const TwoLists lists;
  const auto lines = json_lines(run(lists, {"diff", "--json", "a.csv", "b.csv"}).out);
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[0],
            json::parse(R"({"change":"setting","setting":"password","before":"set","after":"none"})"));
  EXPECT_EQ(lines[2],
            json::parse(R"({"change":"removed","tag":{"name":"B","type":"INT","count":1,"first":null,
                                      "elements":1,"device":1,"id":2}})"));
  EXPECT_EQ(lines[3],
            json::parse(R"({"change":"changed","name":"A","fields":{"type":{"before":"INT","after":"REAL"},
                                      "count":{"before":1,"after":4},"first":{"before":null,"after":0}}})"));
  EXPECT_EQ(lines[4]["tag"]["name"], "D");
  EXPECT_EQ(lines[5], json::parse(R"({"change":"order","name":"A"})"));
  const auto csv = run(lists, {"diff", "--csv", "a.csv", "b.csv"});
  EXPECT_EQ(csv.code, 1);
  EXPECT_EQ(csv.out,
            "change,name,field,before,after\nsetting,,password,set,none\nsetting,,strings,word-aligned,char-"
            "paired\n"
            "removed,B,,,\nchanged,A,type,INT,REAL\nchanged,A,count,1,4\nchanged,A,first,,0\nadded,D,,,"
            "\norder,A,,,\n");
}

TEST(TagsDiff, PasswordsAreComparedAndNotShown) {
  const Scratch scratch;
  scratch.write("a.csv", "# password: hush\n" + kHeader);
  scratch.write("b.csv", "# password: quiet\n" + kHeader);
  const auto result = run(scratch, {"diff", "a.csv", "b.csv"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "~ password: another\n0 added, 0 removed, 0 changed\n");
}

TEST(TagsHelp, EveryCommandHasExamples) {
  const Scratch scratch;
  for (const auto* command : {"pack", "dump", "merge", "check", "diff"}) {
    const auto help = run(scratch, {command, "--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_THAT(help.out, HasSubstr(std::string("Examples:\n  ostravel-"))) << command;
  }
}

TEST(TagsHelp, WrongCommandLineIsOneLine) {
  const Scratch scratch;
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"other"},
                                             {"pack", "a"},
                                             {"merge", "a"},
                                             {"merge", "a", "-o", "b", "--prefer", "both"},
                                             {"diff", "a"},
                                             {"check"},
                                             {"check", "a", "--json", "--csv"},
                                             {"check", "a", "--separator", "x"},
                                             {"check", "none"},
                                             {"diff", "none", "none"}}) {
    const auto result = run(scratch, arguments);
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.error, StartsWith("ostravel-tags: "));
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
  }
}

}  // namespace
