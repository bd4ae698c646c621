// SPDX-License-Identifier: MIT
// ostravel-host with a description of several devices, and its recovery from a lost connection.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/host/hostrun.h"

namespace ostravel::host {
namespace {

struct Plant : HostRun {
  Plant() : HostRun("Speed,INT,1,,1,1,1\nForce,INT,1,,1,1,2\n") {
    add_project("saw.project", "Speed,INT,1,,1,1,1\n");
    write("plant.toml",
          "[defaults]\nproject = \"a.project\"\n"
          "[[device]]\nname = \"press\"\naddress = \"10.0.0.1\"\n"
          "[[device]]\nname = \"saw\"\nproject = \"saw.project\"\naddress = \"10.0.0.2\"\nstation = 2\n");
    set("FAKE_DRIVER_WORDS", "0:7;1:8");
  }

  ToolResult run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--config", path("plant.toml")});
    return plain(std::move(arguments));
  }
};

TEST(HostDevices, ReadsTheTagsOfAll) {
  const auto result = Plant().run({"read"});
  EXPECT_EQ(result.out, "press/Speed = 7\npress/Force = 8\nsaw/Speed = 7\n");
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.code, 0);
}

TEST(HostDevices, TagsKeepTheOrderInWhichTheyAreNamed) {
  EXPECT_EQ(Plant().run({"read", "saw/Speed", "Force"}).out, "saw/Speed = 7\npress/Force = 8\n");
}

TEST(HostDevices, WriteNamesTheDevice) {
  EXPECT_EQ(Plant().run({"write", "saw/Speed=9"}).out, "saw/Speed reads back as 9 (0/5 ok)\n");
  const auto unclear = Plant().run({"write", "Speed=9"});
  EXPECT_EQ(unclear.error,
            "ostravel-host: Speed: devices press and saw both have it; write press/Speed or saw/Speed\n");
  EXPECT_EQ(unclear.code, 2);
  EXPECT_EQ(Plant().run({"write", "--dry-run", "saw/Speed=9"}).out,
            "saw/Speed: word write, type INT, row 0, elements 1, words 0009\n");
}

TEST(HostDevices, BrowseBeginsWithTheDevices) {
  Plant plant;
  plant.set("LC_ALL", "C");
  EXPECT_EQ(plant.run({"browse"}).out,
            "press\n"
            "|- Speed  INT  7\n"
            "`- Force  INT  8\n"
            "saw\n"
            "`- Speed  INT  7\n");
}

TEST(HostDevices, DescriptionExcludesTheOptionsOfOneDevice) {
  const auto result = Plant().run({"--address", "10.0.0.3", "read"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
}

TEST(HostDevices, MistakeInTheDescriptionNamesItsPlace) {
  const Plant plant;
  const auto file = plant.write("bad.toml", "[[device]]\nname = \"press\"\naddress = \"here\"\n");
  const auto result = plant.plain({"--config", file, "read"});
  EXPECT_EQ(result.error, "ostravel-host: " + file +
                              ":3:11: address 'here' is no IPv4 address; write it like 192.168.0.1\n");
  EXPECT_EQ(result.code, 2);
}

TEST(HostDevices, DescriptionThatIsNotThereIsNamed) {
  const Plant plant;
  const auto result = plant.plain({"--config", plant.path("none.toml"), "read"});
  EXPECT_EQ(result.error,
            "ostravel-host: " + plant.path("none.toml") + ": cannot be read: No such file or directory\n");
}

TEST(HostRecovery, LossDuringAReadIsToldAndOvercome) {
  HostRun host("Speed,INT,1,,1,1,1\n");
  host.set("FAKE_DRIVER_WORDS", "0:7");
  host.set("FAKE_DRIVER_LOST", "2,1");
  // The first read serves, the one after the write finds the connection lost.
  const auto result = host({"write", "Speed=9"});
  EXPECT_EQ(result.out, "Speed reads back as 9 (0/5 ok)\n");
  EXPECT_EQ(result.code, 0);
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < result.error.size();) {
    const auto end = result.error.find('\n', at);
    lines.push_back(result.error.substr(at, end - at));
    at = end + 1;
  }
  ASSERT_EQ(lines.size(), 4U) << result.error;
  EXPECT_EQ(lines[0], "ostravel-host: 127.0.0.1: connection lost");
  EXPECT_TRUE(
      lines[1].starts_with("ostravel-host: 127.0.0.1: still lost; trying again, attempt 1, the next in"))
      << lines[1];
  EXPECT_TRUE(
      lines[2].starts_with("ostravel-host: 127.0.0.1: still lost; trying again, attempt 2, the next in"))
      << lines[2];
  EXPECT_TRUE(lines[3].starts_with("ostravel-host: 127.0.0.1: online again after")) << lines[3];
  EXPECT_TRUE(lines[3].ends_with("and 2 attempts")) << lines[3];
}

}  // namespace
}  // namespace ostravel::host
