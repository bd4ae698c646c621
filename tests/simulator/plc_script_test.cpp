// SPDX-License-Identifier: MIT
#include "simulator/plc/script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/simulator/plc_program.h"

namespace ostravel::plc {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::string parse_error(std::string_view text) {
  try {
    parse_script(text, "test.txt");
  } catch (const ScriptError& error) {
    return error.what();
  }
  return "no error";
}

std::string rehearsal_error(std::string_view text, const PlcOptions& options = {}) {
  try {
    rehearse(parse_script(text, "test.txt"), test_program(), options);
  } catch (const ScriptError& error) {
    return error.what();
  }
  return "no error";
}

// The commands that are due at each of the times when the script is asked, "" between the askings.
std::vector<std::string> run(std::string_view text, const std::vector<std::chrono::milliseconds>& times) {
  ScriptRunner runner(parse_script(text, "test.txt"));
  std::vector<std::string> commands;
  for (const auto now : times) {
    runner.run_due(now, [&](const ScriptLine& line) {
      commands.push_back(line.command);
      return true;
    });
    commands.emplace_back();
  }
  return commands;
}

TEST(Script, LinesHaveTheTimesTheySay) {
  const auto script = parse_script(
      "late\n"
      "at 10s freeze\n"
      "+2s thaw\n"
      "delay 500ms\n"
      "every 5s cut\n"
      "+1s run\n"
      "at 1s hold\n",
      "test.txt");
  ASSERT_EQ(script.lines.size(), 7U);
  const std::vector<std::chrono::milliseconds> times{0s, 10s, 12s, 12s, 17s, 13s, 1s};
  for (std::size_t i = 0; i < times.size(); ++i) {
    EXPECT_EQ(script.lines[i].at, times[i]) << script.lines[i].command;
    EXPECT_EQ(script.lines[i].every, i == 4 ? 5s : 0s);
    EXPECT_EQ(script.lines[i].number, i + 1);
  }
  EXPECT_EQ(script.lines[3].command, "delay 500ms");
}

TEST(Script, CommentsAreLeftOutAndNumbersAndTextsAreNoComments) {
  const auto script = parse_script(
      "\xEF\xBB\xBF# from a colleague\r\n"
      "\r\n"
      "   # indented\r\n"
      "write Plant.aWord 16#FF   # hexadecimal\r\n"
      "write Plant.Text \"a # b\"# c\r\n"
      "write Plant.Text 'a # b' # c\n"
      "write Plant.Text 'it$'s # 1' # c\n"
      "write Plant.Text \"\\\" # 1\" # c",
      "test.txt");
  ASSERT_EQ(script.lines.size(), 5U);
  EXPECT_EQ(script.lines[0].command, "write Plant.aWord 16#FF");
  EXPECT_EQ(script.lines[0].number, 4U);
  EXPECT_EQ(script.lines[1].command, "write Plant.Text \"a # b\"# c");
  EXPECT_EQ(script.lines[2].command, "write Plant.Text 'a # b'");
  EXPECT_EQ(script.lines[3].command, "write Plant.Text 'it$'s # 1'");
  EXPECT_EQ(script.lines[4].command, "write Plant.Text \"\\\" # 1\"");
}

TEST(Script, WrongTimesAreRefusedWithTheirPlace) {
  EXPECT_EQ(parse_error("cut\n  +2 cut\n"),
            "test.txt:2:4: time such as 500ms, 2s or 1min expected instead of '2'");
  EXPECT_THAT(parse_error("at soon cut"), StartsWith("test.txt:1:4: "));
  EXPECT_THAT(parse_error("at"), StartsWith("test.txt:1:3: "));
  EXPECT_THAT(parse_error("every 0s cut"), StartsWith("test.txt:1:10: repeat it after 1ms or more"));
  EXPECT_EQ(parse_error("+2s   # nothing"), "test.txt:1:4: command expected behind the time");
}

TEST(Script, WrongCommandsAreRefusedWithTheirPlace) {
  EXPECT_THAT(rehearsal_error("cut\n\n+1s jump"), StartsWith("test.txt:3:5: unknown command 'jump'"));
  EXPECT_THAT(rehearsal_error("every 1s delay soon"), StartsWith("test.txt:1:16: milliseconds"));
  EXPECT_THAT(rehearsal_error("  read Plant.Nowhere"), StartsWith("test.txt:1:14: no variable"));
  EXPECT_THAT(rehearsal_error("write Plant.aInt 40000"), StartsWith("test.txt:1:18: "));
  EXPECT_THAT(rehearsal_error("freeze it"), StartsWith("test.txt:1:8: nothing more"));
  EXPECT_THAT(rehearsal_error("download none.db"),
              StartsWith("test.txt:1:10: none.db:1:1: there is no such file"));
  EXPECT_THAT(rehearsal_error("generate Plant.aInt spiral"), StartsWith("test.txt:1:21: generator rule"));
}

TEST(Script, ColumnsCountCharacters) {
  EXPECT_THAT(rehearsal_error("read Plant.Kühlgerät"), StartsWith("test.txt:1:12: "));
  EXPECT_THAT(rehearsal_error("write Plant.\"Ölstände\" 5"), StartsWith("test.txt:1:13: "));
  EXPECT_THAT(rehearsal_error("write Plant.Text \"ÄÖÜ\" 5"), StartsWith("test.txt:1:18: "));
}

TEST(Script, RightCommandsAreAccepted) {
  EXPECT_EQ(
      rehearsal_error("cut\nfreeze\nthaw\ndelay 5\nlate\nfail Plant.aInt\nheal\npassword a\npassword\n"
                      "restart 2s\nstats\nlist\nhelp\nhold\nstep\nrun\ncycle\ngenerate Plant.aInt ramp\n"
                      "constant Plant.aInt\nread Plant.aInt\nwrite Plant.aInt 5\n+1s quit"),
      "no error");
}

TEST(Script, WhatDependsOnTheMomentIsNotRefusedBefore) {
  EXPECT_EQ(rehearsal_error("at 10s read Plant.aInt @50"), "no error");
  EXPECT_THAT(rehearsal_error("at 10s read Plant.aInt @x"), HasSubstr("number of a cycle"));
}

TEST(Script, GeneratorsOfTheCommandLineAreKnownToIt) {
  PlcOptions options;
  options.generator_rules = {"Plant.aInt=ramp"};
  EXPECT_EQ(rehearsal_error("constant Plant.aInt", options), "no error");
  EXPECT_THAT(rehearsal_error("constant Plant.aInt"), HasSubstr("no generator"));
}

class ScriptDownload : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "ostravel-script-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    other = (folder / "other program.db").string();
    std::ofstream(other) << "DATA_BLOCK \"Other\"\nVAR\n  New : Int;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n";
  }
  void TearDown() override { std::filesystem::remove_all(folder); }
  std::filesystem::path folder;
  std::string other;
};

TEST_F(ScriptDownload, CommandsBehindItAreHeldAgainstTheNewProgram) {
  const auto download = "at 5s download \"" + other + "\"\n";
  EXPECT_EQ(rehearsal_error(download + "+1s read Other.New\nat 1s read Plant.aInt"), "no error");
  EXPECT_THAT(rehearsal_error(download + "+1s read Plant.aInt"), StartsWith("test.txt:2:10: no variable"));
  EXPECT_THAT(rehearsal_error(download + "at 1s read Other.New"), StartsWith("test.txt:2:12: no variable"));
}

TEST(ScriptRunner, HandsOutWhatIsDueInTheOrderOfTimesThenLines) {
  EXPECT_THAT(run("at 2s run\nat 1s hold\ncut\n", {0ms, 999ms, 1000ms, 5000ms, 9000ms}),
              ElementsAre("", "", "hold", "cut", "", "run", "", ""));
}

TEST(ScriptRunner, RepeatsAndHandsOutAMissedRepetitionOnce) {
  EXPECT_THAT(run("+1s cut\nevery 2s late", {1s, 2999ms, 3s, 4s, 12s, 13s}),
              ElementsAre("cut", "", "", "late", "", "", "late", "", "late", ""));
}

TEST(ScriptRunner, SaysWhenTheNextCommandIsDue) {
  ScriptRunner runner(parse_script("at 3s cut\nat 1s late", "test.txt"));
  const auto all = [](const ScriptLine&) { return true; };
  EXPECT_EQ(runner.next(), 1s);
  runner.run_due(1s, all);
  EXPECT_EQ(runner.next(), 3s);
  runner.run_due(3s, all);
  EXPECT_EQ(runner.next(), std::nullopt);
}

TEST(ScriptRunner, StopsWhereItIsTold) {
  ScriptRunner runner(parse_script("cut\nquit\nlate", "test.txt"));
  std::vector<std::string> commands;
  EXPECT_FALSE(runner.run_due(0s, [&](const ScriptLine& line) {
    commands.push_back(line.command);
    return line.command != "quit";
  }));
  EXPECT_THAT(commands, ElementsAre("cut", "quit"));
}

}  // namespace
}  // namespace ostravel::plc
