// SPDX-License-Identifier: MIT
// ostravel-host with the driver, the stand-in library and simulated PLCs: what it writes is what a PLC then
// holds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "host/demo/plcprocess.h"
#include "host/project.h"
#include "host/tagscsv.h"
#include "tests/host/runtool.h"

namespace ostravel::host {
namespace {

using testing::HasSubstr;

constexpr const char* kValues = SAMPLES_PATH "/values.db";

struct World : Scratch {
  World() {
    options.program = PLC_PATH;
    options.sources = {kValues};
    add_project("values.project", {kValues});
  }

  void add_project(const std::string& name, const std::vector<std::string>& sources) const {
    write(name, encode_project(project_from_csv(export_tags(PLC_PATH, sources), "t")));
  }

  static ToolResult host(std::uint16_t port, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"OSTRAVEL_STANDIN_PORT=" + std::to_string(port), "LC_ALL=C",
                                         HOST_PATH, "--driver", DRIVER_PATH});
    return run_tool("/usr/bin/env", arguments);
  }

  PlcOptions options;
};

TEST(HostPlc, EveryFormOfValueArrivesAsItWasMeant) {
  World world;
  PlcProcess plc(world.options);
  const std::vector<std::array<std::string, 3>> values{
      {"Flag", "false", "false"},
      {"Octet", "2#1010_0001", "161"},
      {"Mask", "16#1234", "4660"},
      {"Tiny", "-128", "-128"},
      {"Small", "16#FFFF", "-1"},
      {"Large", "9223372036854775807", "9223372036854775807"},
      {"Ratio", "1.5e3", "1500.0"},
      {"Letter", "'Z'", "\"Z\""},
      {"Name", "'a$'b'", "\"a'b\""},
      {"Umlaut", "Gl\u00fcck", "\"Gl\u00fcck\""},
      {"Span", "T#-1m_2s", "-62000"},
      {"LongSpan", "LT#1us", "1000"},
      {"OldSpan", "S5T#1m10s", "70000"},
      {"Day", "D#2024-02-29", "\"D#2024-02-29\""},
      {"Clock", "TOD#1:02:03.5", "\"TOD#01:02:03.500\""},
      {"LongClock", "LTOD#6:7:8.000000009", "\"LTOD#06:07:08.000000009\""},
      {"OldStamp", "DT#2031-12-24-18:01:02.25", "\"DT#2031-12-24-18:01:02.250\""},
      {"LongStamp", "LDT#2031-12-24-18:01:02.5", "\"LDT#2031-12-24-18:01:02.500000000\""},
      {"Stamp", "DTL#2031-12-24-18:01:02.000000001", "\"DTL#2031-12-24-18:01:02.000000001\""},
  };
  std::vector<std::string> arguments{"--project", world.path("values.project"), "write"};
  for (const auto& [name, text, held] : values) {
    arguments.push_back("Values." + name + "=" + text);
  }
  const auto result = World::host(plc.port(), arguments);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.code, 0) << result.out;
  for (const auto& [name, text, held] : values) {
    EXPECT_EQ(plc.value("Values." + name).dump(), held) << text;
  }
}

TEST(HostPlc, DryRunLeavesThePlcAlone) {
  World world;
  PlcProcess plc(world.options);
  const auto result = World::host(
      plc.port(), {"--project", world.path("values.project"), "write", "--dry-run", "Values.Small=5"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(plc.value("Values.Small"), -12345);
}

TEST(HostPlc, SeveralPlcsAreReadAndWrittenAtOnce) {
  World world;
  PlcProcess first(world.options);
  const auto source = world.write(
      "second.db", "DATA_BLOCK \"Values\"\nVAR\nSmall : Int := 222;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n");
  world.add_project("second.project", {source});
  auto options = world.options;
  options.sources = {source};
  options.listen = "127.0.0.2";
  options.port = first.port();  // the stand-in has one port for all
  PlcProcess second(options);
  const auto config = world.write("plant.toml",
                                  "[[device]]\nname = \"a\"\nproject = \"values.project\"\n"
                                  "[[device]]\nname = \"b\"\nproject = \"second.project\"\n"
                                  "address = \"127.0.0.2\"\nstation = 2\n");
  const auto read =
      World::host(first.port(), {"--config", config, "read", "a/Values.Small", "b/Values.Small"});
  EXPECT_EQ(read.out, "a/Values.Small = -12345\nb/Values.Small = 222\n");
  EXPECT_EQ(read.code, 0);
  const auto written = World::host(first.port(), {"--config", config, "write", "b/Values.Small=16#10"});
  EXPECT_EQ(written.out, "b/Values.Small reads back as 16 (0/5 ok)\n");
  EXPECT_EQ(second.value("Values.Small"), 16);
  EXPECT_EQ(first.value("Values.Small"), -12345);
}

TEST(HostPlc, DescribeNamesTheLibraryThatTheDriverFound) {
  const auto result = World::host(1, {"describe"});
  EXPECT_THAT(result.out, HasSubstr("libAGLink40_x64.so, version 0.1\n"));
  EXPECT_THAT(result.out, HasSubstr(std::string("file ") + DRIVER_PATH + "\n"));
  EXPECT_EQ(result.code, 0);
}

TEST(HostPlc, OfflineBytesOfAMomentAreKeptOneByOne) {
  const World world;
  const auto result = World::host(1, {"--project", world.path("values.project"), "--offline", "write",
                                      "Values.Stamp=DTL#2024-03-05-13:14:15.5", "Values.Span=T#5s"});
  EXPECT_EQ(result.out,
            "Values.Stamp reads back as [232,7,3,5,3,13,14,15,0,101,205,29] (0/5 ok)\n"
            "Values.Span reads back as 5000 (0/5 ok)\n");
  EXPECT_EQ(result.code, 0);
}

}  // namespace
}  // namespace ostravel::host
