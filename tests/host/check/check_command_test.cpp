// SPDX-License-Identifier: MIT
// check as a user has it: the real driver with the stand-in, and a simulated PLC in this process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "host/tagscsv.h"
#include "simulator/plc/server.h"
#include "simulator/program/source.h"
#include "tests/host/runtool.h"
#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::string_view kSource = R"(
DATA_BLOCK "Plant"
VERSION : 0.1
  VAR
    Speed : Int;
    Levels : Array[0..9] of Int;
    Count : UInt;
  END_VAR
BEGIN
END_DATA_BLOCK
)";

constexpr const char* kTags =
    "name,type,count,first,elements,device,id\n"
    "Plant.Speed,INT,1,,1,1,1\n"
    "Plant.Levels,INT,11,0,1,1,2\n"
    "Plant.Count,INT,1,,1,1,3\n"
    "Plant.Sped,INT,1,,1,1,4\n";

plc::ServerOptions server_options() {
  plc::ServerOptions options;
  options.port = 0;
  options.cycle = std::chrono::microseconds(0);
  return options;
}

struct CommandWorld : Scratch {
  plc::Server server{plc::load_text(kSource, "plant.db"), server_options()};
  std::string project = path("line.project");

  CommandWorld() {
    write("line.project", encode_project(project_from_csv(kTags, "tags")));
    setenv("OSTRAVEL_STANDIN_PORT", std::to_string(server.port()).c_str(), 1);
    setenv("LD_LIBRARY_PATH", std::filesystem::path(STANDIN_PATH).parent_path().c_str(), 1);
  }

  ToolResult check(std::vector<std::string> arguments, const std::string& driver = DRIVER_PATH) const {
    arguments.insert(arguments.begin(), {"--driver", driver, "--project", project, "check"});
    return run_tool(HOST_PATH, std::move(arguments));
  }
};

TEST(CheckCommand, NamesWhatDoesNotFitAndSumsUp) {
  const CommandWorld world;
  const auto result = world.check({});
  EXPECT_EQ(
      result.out,
      "bad       Plant.Levels: index 10 is outside 0..9; what is beyond reads as 0\n"
      "doubtful  Plant.Count: the PLC has UInt, the project INT: the same bytes with another sign\n"
      "bad       Plant.Sped: unknown path, stops after 'Plant.' at 'Sped' (character 7): path leads to no "
      "symbol (0xFFE10041)\n"
      "4 tags: 1 good, 2 bad, 1 doubtful\n");
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.code, 1);
}

TEST(CheckCommand, ListsTheGoodOnesAsWellAndEndsWellWhenNoneIsBad) {
  const CommandWorld world;
  const auto result = world.check({"--all", "Plant.Speed", "Plant.Count"});
  EXPECT_THAT(result.out, StartsWith("good      Plant.Speed: INT reads Int\n"));
  EXPECT_THAT(result.out, EndsWith("2 tags: 1 good, 0 bad, 1 doubtful\n"));
  EXPECT_EQ(result.code, 0);
}

TEST(CheckCommand, JsonIsAnObjectALine) {
  const CommandWorld world;
  const auto result = world.check({"--json", "Plant.Levels"});
  EXPECT_EQ(
      result.out,
      "{\"tag\":\"Plant.Levels\",\"type\":\"INT\",\"plc_type\":\"Array[0..9] of Int\",\"verdict\":\"bad\","
      "\"reason\":\"index\",\"text\":\"index 10 is outside 0..9; what is beyond reads as 0\"}\n"
      "{\"tags\":1,\"good\":0,\"bad\":1,\"doubtful\":0,\"not_checked\":0}\n");
}

TEST(CheckCommand, CsvKeepsItsShapeAndTheSummaryGoesElsewhere) {
  const CommandWorld world;
  const auto result = world.check({"--csv", "--all", "Plant.Speed", "Plant.Levels"});
  EXPECT_EQ(
      result.out,
      "tag,type,plc_type,verdict,reason,text\n"
      "Plant.Speed,INT,Int,good,,\n"
      "Plant.Levels,INT,Array[0..9] of Int,bad,index,index 10 is outside 0..9; what is beyond reads as 0\n");
  EXPECT_EQ(result.error, "2 tags: 1 good, 1 bad, 0 doubtful\n");
}

TEST(CheckCommand, MistakesAreOneLineAndACode) {
  const CommandWorld world;
  const auto offline = world.check({"--offline"});
  EXPECT_EQ(offline.error, "ostravel-host: check compares with a PLC; leave out --offline\n");
  EXPECT_EQ(offline.code, 2);
  const auto other = world.check({}, NO_DRIVER_PATH);
  EXPECT_EQ(other.error,
            std::string("ostravel-host: ") + NO_DRIVER_PATH +
                ": has no AGL_GetErrorMsg; check needs a driver that shows the library's functions\n");
  EXPECT_EQ(other.code, 3);
}

TEST(CheckCommand, AMissingLibraryIsSaidInOneLine) {
  const CommandWorld world;
  setenv("LD_LIBRARY_PATH", world.folder().c_str(), 1);
  const auto result = world.check({});
  EXPECT_THAT(result.error,
              HasSubstr("AGL_PLCConnectEx: the communication library, or this function of it, is missing"));
  EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1);
  EXPECT_EQ(result.code, 3);
}

TEST(CheckCommand, NoAnswerHasTheLibrarysWordsAndACode) {
  const CommandWorld world;
  setenv("OSTRAVEL_STANDIN_PORT", "0", 1);
  const auto result = world.check({});
  EXPECT_THAT(result.error, StartsWith("ostravel-host: 127.0.0.1: AGL_PLCConnectEx: OSTRAVEL_STANDIN_PORT"));
  EXPECT_EQ(result.out, "0 tags: 0 good, 0 bad, 0 doubtful; 4 not checked\n");
  EXPECT_EQ(result.code, 4);
}

}  // namespace
}  // namespace ostravel::host
