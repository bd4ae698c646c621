// SPDX-License-Identifier: MIT
#include "simulator/plc/console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
