// SPDX-License-Identifier: MIT
// Scripts of the program ostravel-plc, and its console with a person in front of it.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/simulator/plc_process.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

class PlcTerminal : public PlcProcess {};

TEST_F(PlcTerminal, ScriptRunsAndSaysWhereEachAnswerComesFrom) {
  const auto script =
      write_source("script.txt", "# test\nhold\n+20ms write Plant.aInt 5\nread Plant.aInt\n+10ms quit\n");
  Process plc({"--port", "0", "--cycle", "0", "--script", script, source});
  EXPECT_THAT(plc.line(), StartsWith("listening on "));
  EXPECT_EQ(json::parse(plc.line()), (json{{"script", script + ":2"}, {"command", "hold"}, {"cycle", 0}}));
  EXPECT_EQ(json::parse(plc.line())["script"], script + ":3");
  EXPECT_EQ(json::parse(plc.line()), (json{{"script", script + ":4"},
                                           {"command", "read Plant.aInt"},
                                           {"path", "Plant.aInt"},
                                           {"cycle", 0},
                                           {"value", 5}}));
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcTerminal, ConsoleGoesOnBesideAndAfterAScript) {
  const auto script = write_source("script.txt", "write Plant.aInt 5");
  Process plc({"--port", "0", "--cycle", "0", "--script", script, source});
  plc.line();
  EXPECT_EQ(json::parse(plc.line())["script"], script + ":1");
  EXPECT_EQ(plc.command("read Plant.aInt")["value"], 5);
}

TEST_F(PlcTerminal, ScriptMayComeFromStandardInput) {
  Process plc({"--port", "0", "--cycle", "0", "--script", "-", source});
  plc.send("cycle\n+10ms quit");
  plc.close_input();
  EXPECT_THAT(plc.line(), StartsWith("listening on "));
  EXPECT_EQ(json::parse(plc.line()),
            (json{{"script", "standard input:1"}, {"command", "cycle"}, {"cycle", 0}}));
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcTerminal, BadScriptIsOneLineWithThePlaceAndThePlcDoesNotStart) {
  for (const auto& [text, place] : std::vector<std::pair<std::string, std::string>>{
           {"cut\n+2s jump\n", ":2:5: unknown command 'jump'"},
           {"at soon cut", ":1:4: time such as"},
           {"read Plant.Nowhere", ":1:12: no variable"},
           {"download none.db", ":1:10: none.db:1:1: there is no such file"}}) {
    const auto script = write_source("script.txt", text);
    Process plc({"--port", "0", "--script", script, source});
    EXPECT_EQ(plc.wait(), 2);
    const auto errors = plc.rest_of_errors();
    EXPECT_THAT(errors, StartsWith(script + place));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    EXPECT_EQ(plc.line(), "");
  }
}

TEST_F(PlcTerminal, MissingScriptIsOneLine) {
  const auto script = (folder / "none.txt").string();
  Process plc({"--port", "0", "--script", script, source});
  EXPECT_EQ(plc.wait(), 2);
  EXPECT_THAT(plc.rest_of_errors(), StartsWith(script + ":1:1: there is no such file"));
}

TEST_F(PlcTerminal, PersonGetsReadableHelpAndJsonOtherwise) {
  Process plc({"--port", "0", "--cycle", "0", source}, true);
  EXPECT_THAT(plc.line(), StartsWith("listening on "));
  EXPECT_EQ(plc.error_line(), "type 'help' for the commands, 'quit' to end");
  plc.send("help\n");
  EXPECT_EQ(plc.line(), "  list                  all variables with their types and numbers of elements");
  EXPECT_THAT(plc.line(), StartsWith("  read PATH [@CYCLE]    a value, now or"));
  for (int i = 2; i < 21; ++i) EXPECT_THAT(plc.line(), StartsWith("  "));
  EXPECT_THAT(plc.line(), StartsWith("  quit "));
  EXPECT_EQ(plc.command("cycle"), (json{{"cycle", 0}}));
  plc.send("quit\n");
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcTerminal, PipeGetsHelpAsJson) {
  Process plc({"--port", "0", source});
  plc.line();
  EXPECT_EQ(plc.command("help")["help"].size(), 22U);
}

}  // namespace
}  // namespace ostravel::plc
