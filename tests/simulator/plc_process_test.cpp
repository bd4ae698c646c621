// SPDX-License-Identifier: MIT
// The program ostravel-plc as a process: options, first line, console, ends.
#include "tests/simulator/plc_process.h"

#include <gmock/gmock.h>

#include "simulator/wire/client.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(PlcProcess, SaysFirstWhereItListensAndServesThere) {
  Process plc({"--port", "0", source});
  const auto first = plc.line();
  ASSERT_THAT(first, StartsWith("listening on 127.0.0.1:"));
  const auto port = static_cast<std::uint16_t>(std::stoi(first.substr(first.rfind(':') + 1)));
  wire::Client client("127.0.0.1", port, std::chrono::seconds(10));
  EXPECT_NO_THROW(client.ask(wire::HelloRequest{}, std::chrono::seconds(10)));
}

TEST_F(PlcProcess, AnswersItsConsole) {
  Process plc({"--port", "0", "--cycle", "0", source});
  plc.line();
  EXPECT_EQ(plc.command("write Plant.aInt -7").value("error", ""), "");
  EXPECT_EQ(plc.command("read Plant.aInt")["value"], -7);
  EXPECT_THAT(plc.command("nonsense").value("error", ""), HasSubstr("unknown command"));
}

TEST_F(PlcProcess, QuitEndsIt) {
  Process plc({"--port", "0", source});
  plc.line();
  EXPECT_EQ(plc.command("cycle").count("cycle"), 1U);
  EXPECT_THROW(plc.command("quit"), json::parse_error);  // no answer any more
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, TerminationSignalEndsItCleanly) {
  Process plc({"--port", "0", source});
  plc.line();
  plc.signal(SIGTERM);
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, GoesOnWithoutStandardInput) {
  Process plc({"--port", "0", source});
  const auto first = plc.line();
  plc.close_input();
  wire::Client client("127.0.0.1", static_cast<std::uint16_t>(std::stoi(first.substr(first.rfind(':') + 1))),
                      std::chrono::seconds(10));
  EXPECT_NO_THROW(client.ask(wire::HelloRequest{}, std::chrono::seconds(10)));
  plc.signal(SIGTERM);
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, EndsWithStandardInputWhenAskedTo) {
  Process plc({"--port", "0", "--exit-with-stdin", source});
  plc.line();
  plc.close_input();
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, ExportsTagsWithoutListening) {
  Process plc({"--export-tags", source});
  EXPECT_EQ(plc.line(), "name,type,count,first,elements,device,id");
  EXPECT_EQ(plc.line(), "Plant.Flag,BOOL,1,,1,1,1");
  plc.close_input();
}

TEST_F(PlcProcess, TakesConstants) {
  const auto file =
      write_source("constant.db",
                   "DATA_BLOCK \"B\"\nVAR\na : Array[0..\"LAST\"] of Int;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n");
  Process plc({"--port", "0", "--constant", "LAST=2", file});
  plc.line();
  EXPECT_EQ(plc.command("read B.a")["value"], (json{0, 0, 0}));
}

TEST_F(PlcProcess, HelpHasExamplesAndVersionIsOneLine) {
  Process help({"--help"});
  std::string text;
  for (int i = 0; i < 60; ++i) text += help.line() + "\n";
  EXPECT_EQ(help.wait(), 0);
  EXPECT_THAT(text, HasSubstr("Examples:\n  ostravel-plc --port 1102 line.db types.udt"));
  EXPECT_THAT(text, HasSubstr("Exit codes:"));
  Process version({"--version"});
  EXPECT_THAT(version.line(), testing::MatchesRegex("ostravel-plc [0-9]+\\.[0-9]+\\.[0-9]+"));
  EXPECT_EQ(version.wait(), 0);
}

TEST_F(PlcProcess, InstancesGiveTypesVariables) {
  const auto types =
      write_source("t.udt", "TYPE \"T\"\nVERSION : 0.1\nSTRUCT\n  x : Int := 3;\nEND_STRUCT;\nEND_TYPE\n");
  Process plc({"--port", "0", "--instances", types});
  plc.line();
  EXPECT_EQ(plc.command("read T_DB.x")["value"], 3);
}

TEST_F(PlcProcess, BadSourceIsOneLineWithThePlace) {
  const auto file = write_source("bad.db", "DATA_BLOCK \"B\"\nVAR\n  a : Nonsense_;\nEND_VAR\n");
  Process plc({"--port", "0", file});
  EXPECT_EQ(plc.wait(), 2);
  const auto errors = plc.rest_of_errors();
  EXPECT_THAT(errors, StartsWith(file + ":"));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

TEST_F(PlcProcess, MissingFileIsOneLine) {
  Process plc({"--port", "0", (folder / "none.db").string()});
  EXPECT_EQ(plc.wait(), 2);
  const auto errors = plc.rest_of_errors();
  EXPECT_THAT(errors, HasSubstr("none.db"));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

TEST_F(PlcProcess, BusyPortIsOneLine) {
  Server other(test_program(), test_options());
  Process plc({"--port", std::to_string(other.port()), source});
  EXPECT_EQ(plc.wait(), 2);
  const auto errors = plc.rest_of_errors();
  EXPECT_THAT(errors, HasSubstr("another program uses this port"));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

TEST_F(PlcProcess, BadOptionsAreOneLineAndCodeTwo) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"--port", "70000", source},
                                                    {"--cycle", "soon", source},
                                                    {"--constant", "NOVALUE", source},
                                                    {"--script", "-", "--exit-with-stdin", source},
                                                    {"--frobnicate", source}}) {
    Process plc(arguments);
    EXPECT_EQ(plc.wait(), 2);
    const auto errors = plc.rest_of_errors();
    EXPECT_THAT(errors, StartsWith("ostravel-plc: "));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
  }
}

TEST_F(PlcProcess, BadGeneratorRuleIsOneLine) {
  Process plc({"--port", "0", "--generate", "Plant.Nowhere=ramp", source});
  EXPECT_EQ(plc.wait(), 2);
  EXPECT_THAT(plc.rest_of_errors(), HasSubstr("Nowhere"));
}

}  // namespace
}  // namespace ostravel::plc
