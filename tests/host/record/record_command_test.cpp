// SPDX-License-Identifier: MIT
// record as a user has it, with the fake driver, which has data for no tag.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include "host/process.h"
#include "host/tagscsv.h"
#include "tests/host/runtool.h"
#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr const char* kTags = "name,type,count,first,elements,device,id\nLevel,INT,1,,1,1,1\n";
constexpr const char* kRow = "....-..-..T..:..:..\\....Z,1 without data,\n";

struct RecordWorld : Scratch {
  std::string project = write("a.project", encode_project(project_from_csv(kTags, "tags")));
  std::string file = path("out.csv");

  std::vector<std::string> words(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--driver", FAKE_DRIVER_PATH, "--project", project, "record"});
    return arguments;
  }
  ToolResult record(std::vector<std::string> arguments) const {
    return run_tool(HOST_PATH, words(std::move(arguments)));
  }
};

TEST(RecordCommand, WritesRowsAndSumsUp) {
  const RecordWorld world;
  const auto result = world.record({world.file, "--interval", "1ms", "--count", "2"});
  EXPECT_EQ(result.out, world.file + ": 2 rows, 0 gaps\n");
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(world.read("out.csv"), MatchesRegex(std::string("time,status,Level\n") + kRow + kRow));
}

TEST(RecordCommand, WritesToStandardOutput) {
  const RecordWorld world;
  const auto result = world.record({"-", "Level", "--interval", "1ms", "--count", "1", "--long"});
  EXPECT_THAT(result.out, MatchesRegex("time,tag,value,status\n....-..-..T..:..:..\\....Z,Level,,no data\n"));
}

TEST(RecordCommand, SumsUpInJson) {
  const RecordWorld world;
  const auto result = world.record({world.file, "--json", "--count", "1"});
  EXPECT_EQ(result.out, "{\"file\":\"" + world.file + "\",\"rows\":1,\"gaps\":0}\n");
}

TEST(RecordCommand, MistakesAreOneLineAndACodeAndLeaveNoFile) {
  const RecordWorld world;
  const auto old = world.write("old.csv", "mine");
  const std::vector<std::pair<std::vector<std::string>, std::string>> mistakes{
      {{old, "--count", "1"},
       old + ": exists already; give --append to go on with it, or --force to replace it"},
      {{old, "--append", "--count", "1"},
       old + ": has other columns than this recording; record to another file, or replace it with --force"},
      {{world.file, "--for", "soon"},
       "--for: 'soon' is no length of time from 1ms to 365d; write it like 500ms, 10s, 5m, 1h; see "
       "ostravel-host "
       "--help"},
      {{world.path("none/a.csv")},
       world.path("none/a.csv") + ": cannot be written: No such file or directory"},
  };
  for (const auto& [arguments, line] : mistakes) {
    const auto result = world.record(arguments);
    EXPECT_EQ(result.error, "ostravel-host: " + line + "\n");
    EXPECT_EQ(result.code, 2) << line;
  }
  EXPECT_EQ(world.record({world.file, "None"}).code, 2);
  EXPECT_EQ(world.read("old.csv"), "mine");
  EXPECT_EQ(world.files(), 2U);
}

TEST(RecordCommand, CtrlCEndsItAfterAWholeRow) {
  const RecordWorld world;
  Process process(HOST_PATH, world.words({world.file, "--interval", "5ms"}));
  process.close_input();
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (world.read("out.csv").find("without data") == std::string::npos &&
         std::chrono::steady_clock::now() < until) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  process.kill(SIGINT);
  EXPECT_THAT(process.read_all(), ContainsRegex("out.csv: [0-9]+ rows, 0 gaps\n$"));
  EXPECT_EQ(process.wait(), 0);
  EXPECT_TRUE(world.read("out.csv").ends_with(",1 without data,\n"));
}

TEST(RecordCommand, HelpHasExamples) {
  const auto result = run_tool(HOST_PATH, {"record", "--help"});
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, HasSubstr("Examples:\n  ostravel-host --project line.project record line.csv"));
}

}  // namespace
}  // namespace ostravel::host
