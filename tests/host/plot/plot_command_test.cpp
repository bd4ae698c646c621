// SPDX-License-Identifier: MIT
// plot as a user has it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/tagscsv.h"
#include "tests/host/plot/xml.h"
#include "tests/host/runtool.h"
#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kRecording =
    "time,status,Speed,Running\n"
    "2024-03-05T13:14:15.000Z,ok,0,false\n"
    "2024-03-05T13:14:16.000Z,ok,50,true\n"
    "2024-03-05T13:14:17.000Z,ok,100,true\n";

struct PlotWorld : Scratch {
  std::string file = write("a.csv", kRecording);

  PlotWorld() {
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
  }
  static ToolResult plot(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "plot");
    return run_tool(HOST_PATH, arguments);
  }
};

TEST(PlotCommand, DrawsARecording) {
  const PlotWorld world;
  const auto result = world.plot({world.file, "Speed", "--ascii", "--width", "40", "--height", "5"});
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "A Speed  100  (0 to 100)\n"
            "100+                            ***** A\n"
            "   |                    ********\n"
            " 50+            ********\n"
            "   |    ********\n"
            "  0+****\n"
            "   +----------------+----------------\n"
            "                13:14:16\n"
            "    time, UTC\n");
}

TEST(PlotCommand, FollowsTheLocale) {
  const PlotWorld world;
  EXPECT_THAT(world.plot({world.file, "Speed"}).out, HasSubstr("⠤"));
  setenv("LC_ALL", "C", 1);
  const auto plain = world.plot({world.file, "Speed"}).out;
  EXPECT_TRUE(
      std::all_of(plain.begin(), plain.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
}

TEST(PlotCommand, WritesAnSvgFile) {
  const PlotWorld world;
  const auto svg = world.path("a.svg");
  const auto result = world.plot({world.file, "--svg", svg, "--title", "Line 1", "--unit", "mm"});
  EXPECT_EQ(result.out, svg + ": 2 tags, 6 values\n");
  const auto elements = parse_xml(world.read("a.svg"));
  EXPECT_EQ(elements[0].name, "svg");
  EXPECT_EQ(elements[1].text, "Line 1");
}

TEST(PlotCommand, DoesNotReplaceAnSvgFileUnasked) {
  const PlotWorld world;
  const auto svg = world.write("a.svg", "mine");
  const auto result = world.plot({world.file, "--svg", svg});
  EXPECT_EQ(result.error, "ostravel-host: " + svg + ": exists already; give --force to replace it\n");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(world.read("a.svg"), "mine");
  EXPECT_EQ(world.plot({world.file, "--svg", svg, "--force"}).code, 0);
  EXPECT_THAT(world.read("a.svg"), StartsWith("<?xml"));
}

TEST(PlotCommand, PrintsItsPointsAsRows) {
  const PlotWorld world;
  EXPECT_EQ(world.plot({world.file, "Speed", "--csv", "--from", "2024-03-05T13:14:16Z"}).out,
            "time,tag,value\n2024-03-05T13:14:16.000Z,Speed,50.0\n2024-03-05T13:14:17.000Z,Speed,100.0\n");
  EXPECT_THAT(world.plot({world.file, "Running", "--json"}).out,
              StartsWith("{\"time\":\"2024-03-05T13:14:15.000Z\",\"tag\":\"Running\",\"value\":0.0}\n"));
}

TEST(PlotCommand, MistakesAreOneLineAndACode) {
  const PlotWorld world;
  const auto texts = world.write("texts.csv", "time,status,Name\n2024-03-05T13:14:15.000Z,ok,a\n");
  const std::vector<std::pair<std::vector<std::string>, std::string>> mistakes{
      {{}, "name a recording, or tags with --live; see ostravel-host plot --help"},
      {{"--live"}, "name the tags to plot"},
      {{world.path("none.csv")}, world.path("none.csv") + ": cannot be read: No such file or directory"},
      {{world.file, "Sped"}, world.file + ": has no tag Sped; it has Speed, Running"},
      {{texts}, texts + ": has no tag with numbers to plot"},
      {{texts, "Name"}, texts + ":2:29: 'a' of Name is no number"},
      {{world.file, "--from", "noon"}, "--from 'noon' is no time; write it like 2024-03-05T13:14:15Z"},
      {{world.file, "--from", "2024-03-05T13:14:16Z", "--to", "2024-03-05T13:14:15Z"},
       "--from must be earlier than --to"},
      {{world.file, "--from", "2025-01-01T00:00:00Z", "--to", "2025-01-02T00:00:00Z"},
       "there is no value to plot in the time asked for"},
      {{world.file, "--window", "1s"}, "--window requires --live; see ostravel-host --help"},
  };
  for (const auto& [arguments, line] : mistakes) {
    const auto result = world.plot(arguments);
    EXPECT_EQ(result.error, "ostravel-host: " + line + "\n");
    EXPECT_EQ(result.code, 2) << line;
    EXPECT_EQ(result.out, "");
  }
}

struct LiveWorld : PlotWorld {
  std::string project =
      write("a.project", encode_project(project_from_csv("name,type,count,first,elements,device,id\n"
                                                         "Level,INT,1,,1,1,1\nName,STRING,8,,1,1,2\n",
                                                         "tags")));
  ToolResult live(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--live", "--driver", FAKE_DRIVER_PATH, "--project", project});
    return plot(std::move(arguments));
  }
};

TEST(PlotCommand, LiveTextsAreRefusedAtOnce) {
  const LiveWorld world;
  const auto result = world.live({"Name"});
  EXPECT_EQ(result.error, "ostravel-host: Name is a text; plot shows numbers\n");
  EXPECT_EQ(result.code, 2);
}

// The fake driver has data for no tag.
TEST(PlotCommand, LiveWithoutAnyValueSaysSo) {
  const LiveWorld world;
  const auto result = world.live({"Level", "--count", "2", "--interval", "1ms"});
  EXPECT_EQ(result.error, "ostravel-host: there is no value to plot in the time asked for\n");
  EXPECT_EQ(result.code, 2);
  const auto rows = world.live({"Level", "--count", "2", "--interval", "1ms", "--csv"});
  EXPECT_THAT(rows.out, testing::MatchesRegex("time,tag,value\n[^\n]*,Level,\n[^\n]*,Level,\n"));
}

}  // namespace
}  // namespace ostravel::host
