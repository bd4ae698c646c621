// SPDX-License-Identifier: MIT
#include "simulator/plc/console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/simulator/plc_program.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Console : public testing::Test {
 protected:
  json command(std::string_view line) { return json::parse(server.command(line)); }
  std::string error(std::string_view line) { return command(line).value("error", "no error"); }
  Server server{test_program(), test_options()};
};

TEST_F(Console, ReadsAScalar) {
  EXPECT_EQ(command("read Plant.\"Odd.Name 1\""),
            (json{{"path", "Plant.\"Odd.Name 1\""}, {"cycle", 0}, {"value", 77}}));
}

TEST_F(Console, ReadsAnArrayRowMajor) {
  command("write Plant.Matrix[2,-1] 4");
  EXPECT_EQ(command("read Plant.Matrix")["value"], (json{0, 0, 0, 4, 0, 0}));
}

TEST_F(Console, WritesEveryKindOfValue) {
  for (const auto* line :
       {"Plant.Flag true", "Plant.aSInt -5", "Plant.aULInt 18446744073709551615", "Plant.aReal 1.5",
        "Plant.Text \"Grüße\"", "Plant.Wide \"日本\"", "Plant.aDtl \"DTL#2024-03-05-13:14:15.123456789\"",
        "Plant.Numbers [1,2,3,4,5,6,7,8]", "Plant.Tanks[2].Level -0.25", "Plant.Numbers[ 4 ] 9"}) {
    const std::string text(line);
    const auto blank = text.rfind(' ') == text.find(' ') ? text.find(' ') : text.rfind(' ');
    const auto path = text.substr(0, blank);
    const auto value = json::parse(text.substr(blank + 1));
    EXPECT_EQ(command("write " + text).value("error", ""), "") << text;
    EXPECT_EQ(command("read " + path)["value"], value) << text;
  }
}

TEST_F(Console, RefusesAValueNestedWithoutEnd) {
  const std::string nested = std::string(100'000, '[') + std::string(100'000, ']');
  EXPECT_THAT(error("write Plant.aInt " + nested), HasSubstr("nested too deeply"));
}

TEST_F(Console, ReadsWhatAPastCycleHeld) {
  command("write Plant.aInt 1");
  command("step");
  command("write Plant.aInt 2");
  EXPECT_EQ(command("read Plant.aInt @0")["value"], 1);
  EXPECT_EQ(command("read Plant.aInt @1")["value"], 2);
  EXPECT_EQ(command("read Plant.aInt")["cycle"], 1);
  EXPECT_EQ(command("read Simulation.Cycle @0")["value"], 0);
  EXPECT_THAT(error("read Plant.aInt @2"), HasSubstr("cycle 2 is not kept"));
}

TEST_F(Console, ListsVariablesWithTypeAndElements) {
  const auto list = command("list")["variables"];
  EXPECT_THAT(list, testing::Contains(json{{"path", "Plant.Six"}, {"type", "Byte"}, {"elements", 64}}));
  EXPECT_THAT(list,
              testing::Contains(json{{"path", "Plant.Tanks[2].Level"}, {"type", "Real"}, {"elements", 1}}));
  EXPECT_THAT(list,
              testing::Contains(json{{"path", "Simulation.Cycle"}, {"type", "UDInt"}, {"elements", 1}}));
}

TEST_F(Console, CountsCycles) {
  EXPECT_EQ(command("cycle")["cycle"], 0);
  EXPECT_EQ(command("step")["cycle"], 1);
  EXPECT_EQ(command("cycle")["cycle"], 1);
}

TEST_F(Console, WritesLiteralsAsPlcProgrammersWriteThem) {
  EXPECT_EQ(error("write Plant.aWord 16#BEEF"), "no error");
  EXPECT_EQ(command("read Plant.aWord")["value"], 0xBEEF);
  EXPECT_EQ(error("write Plant.aTime T#5s"), "no error");
  EXPECT_EQ(command("read Plant.aTime")["value"], 5000);
  EXPECT_EQ(error("write Plant.Text 'it$'s'"), "no error");
  EXPECT_EQ(command("read Plant.Text")["value"], "it's");
  EXPECT_EQ(error("write Plant.Numbers[3] 16#7F"), "no error");
  EXPECT_EQ(command("read Plant.Numbers[3]")["value"], 127);
  EXPECT_THAT(error("write Plant.Numbers 16#7F"), HasSubstr("no JSON value: '16#7F'"));
}

TEST_F(Console, GeneratorMovesAVariableFromTheNextCycleOn) {
  EXPECT_EQ(command("generate Plant.aInt counter"),
            (json{{"path", "Plant.aInt"}, {"generator", "counter"}, {"cycle", 0}}));
  EXPECT_EQ(command("read Plant.aInt")["value"], 0);
  command("step");
  command("step");
  EXPECT_EQ(command("read Plant.aInt")["value"], 2);
}

TEST_F(Console, ConstantKeepsTheValueThatTheGeneratorLeft) {
  command("generate Plant.aInt counter");
  command("step");
  command("step");
  EXPECT_EQ(command("constant Plant.aInt")["generator"], "none");
  command("step");
  EXPECT_EQ(command("read Plant.aInt")["value"], 2);
  EXPECT_THAT(error("constant Plant.aInt"), HasSubstr("no generator drives"));
}

TEST_F(Console, GeneratorsAreRefusedWithTheReason) {
  EXPECT_THAT(error("generate Plant.aInt spiral"), HasSubstr("'spiral' is none of ramp"));
  EXPECT_THAT(error("generate Plant.Text sine"), HasSubstr("cannot drive"));
  EXPECT_THAT(error("generate Plant.Nowhere sine"), HasSubstr("no variable"));
  EXPECT_THAT(error("generate Simulation.Cycle sine"), HasSubstr("counts by itself"));
}

TEST_F(Console, HelpNamesEveryWordWithItsArguments) {
  const auto help = command("help")["help"];
  const auto has = [&help](const std::string& word, const std::string& arguments) {
    return std::any_of(help.begin(), help.end(), [&](const json& line) {
      return line["word"] == word && line["arguments"] == arguments && line["does"] != "";
    });
  };
  for (const auto& [word, arguments] :
       std::vector<std::pair<std::string, std::string>>{{"list", ""},
                                                        {"read", "PATH [@CYCLE]"},
                                                        {"write", "PATH VALUE"},
                                                        {"generate", "PATH RULE"},
                                                        {"constant", "PATH"},
                                                        {"cycle", ""},
                                                        {"hold", ""},
                                                        {"run", ""},
                                                        {"step", ""},
                                                        {"cut", ""},
                                                        {"freeze", ""},
                                                        {"thaw", ""},
                                                        {"delay", "TIME"},
                                                        {"late", ""},
                                                        {"fail", "PATH"},
                                                        {"heal", "[PATH]"},
                                                        {"download", "FILE..."},
                                                        {"password", "[TEXT]"},
                                                        {"restart", "[PAUSE]"},
                                                        {"stats", ""},
                                                        {"help", "[WORD]"},
                                                        {"quit", ""}}) {
    EXPECT_TRUE(has(word, arguments)) << word;
  }
  EXPECT_EQ(help.size(), 22U);
  EXPECT_EQ(command("help cut")["help"].size(), 1U);
  EXPECT_THAT(error("help nonsense"), HasSubstr("unknown command 'nonsense'"));
}

TEST_F(Console, DelayTakesUnits) {
  EXPECT_EQ(command("delay 500ms")["delay"], 500);
  EXPECT_EQ(command("delay 1.5s")["delay"], 1500);
  EXPECT_EQ(command("delay 20")["delay"], 20);
  EXPECT_EQ(command("delay 0")["delay"], 0);
}

TEST_F(Console, FailAndHealNameTheVariable) {
  EXPECT_EQ(command("fail Plant.aInt"), (json{{"failing", "Plant.aInt"}}));
  EXPECT_EQ(command("heal Plant.aInt"), (json{{"healed", "Plant.aInt"}}));
  EXPECT_EQ(command("heal"), (json{{"healed", ""}}));
}

TEST_F(Console, SaysWhatItDoesNotUnderstand) {
  EXPECT_THAT(error("jump"), HasSubstr("unknown command 'jump'"));
  EXPECT_THAT(error(""), HasSubstr("unknown command ''"));
  EXPECT_THAT(error("read"), HasSubstr("path"));
  EXPECT_THAT(error("read Plant.Nowhere"), HasSubstr("wrong from character 7 on"));
  EXPECT_THAT(error("read Plant.aInt 5"), HasSubstr("@CYCLE"));
  EXPECT_THAT(error("read Plant.aInt @x"), HasSubstr("number of a cycle"));
  EXPECT_THAT(error("write Plant.aInt {"), HasSubstr("no JSON"));
  EXPECT_THAT(error("write Plant.aInt 40000"), testing::Ne("no error"));
  EXPECT_THAT(error("delay soon"), HasSubstr("milliseconds"));
  EXPECT_THAT(error("delay 600001"), HasSubstr("at most"));
  EXPECT_THAT(error("delay 700s"), HasSubstr("at most 600000"));
  EXPECT_THAT(error("delay"), HasSubstr("milliseconds or a time such as 500ms"));
  EXPECT_THAT(error("delay 1s 2s"), HasSubstr("nothing more"));
  EXPECT_THAT(error("download"), HasSubstr("name of a file expected"));
  EXPECT_THAT(error("download \"a b.db"), HasSubstr("quote is not closed"));
  EXPECT_THAT(error("restart now"), HasSubstr("time such as"));
  EXPECT_THAT(error("write Plant.aInt"), HasSubstr("value expected"));
  EXPECT_THAT(error("quit"), HasSubstr("ends the program"));
  for (const auto* word :
       {"hold", "run", "step", "cycle", "list", "cut", "freeze", "thaw", "late", "stats"}) {
    EXPECT_THAT(error(std::string(word) + " it"), HasSubstr("nothing more expected: 'it'")) << word;
  }
  EXPECT_THAT(error("constant Plant.aInt it"), HasSubstr("nothing more"));
  EXPECT_THAT(error("fail Plant.aInt it"), HasSubstr("nothing more"));
  EXPECT_THAT(error("hold on"), HasSubstr("nothing more"));
  EXPECT_THAT(error("fail Nowhere"), HasSubstr("no variable"));
}

TEST_F(Console, AnswersPathsThatAreNoTextInValidJson) {
  EXPECT_THAT(error("read \xFF\xFE"), HasSubstr("no variable"));
}

TEST_F(Console, CycleNumberCannotBeWritten) {
  EXPECT_THAT(error("write Simulation.Cycle 5"), HasSubstr("cannot"));
}

TEST_F(Console, RefusedWriteLeavesTheValue) {
  command("write Plant.Numbers [1,2,3,4,5,6,7,8]");
  EXPECT_NE(error("write Plant.Numbers [9,9,9,9,9,9,9,99999]"), "no error");
  EXPECT_EQ(command("read Plant.Numbers[3]")["value"], 1);
}

}  // namespace
}  // namespace ostravel::plc
