// SPDX-License-Identifier: MIT
// Descriptions of several devices.
#include "host/config/description.h"

#include <gtest/gtest.h>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

std::string refusal(const std::string& text) {
  try {
    parse_description(text, "a.toml");
  } catch (const UserError& error) {
    return error.what();
  }
  return "taken";
}

TEST(Description, DefaultsHoldUntilADeviceSaysOtherwise) {
  const auto devices = parse_description(R"(
[defaults]
library = "lib/agl.so"
project = "line.project"
address = "10.0.0.1"

[[device]]
name = "press"
station = 2

[[device]]
name = "saw"
project = "/projects/saw.project"
address = "10.0.0.2"
offline = true
)",
                                         "plant/a.toml");
  ASSERT_EQ(devices.size(), 2U);
  EXPECT_EQ(devices[0].name, "press");
  EXPECT_EQ(devices[0].project, "plant/line.project") << "from the description's folder";
  EXPECT_EQ(devices[0].address, "10.0.0.1");
  EXPECT_EQ(devices[0].station, 2);
  EXPECT_FALSE(devices[0].offline);
  EXPECT_EQ(devices[0].library, "plant/lib/agl.so");
  EXPECT_EQ(devices[1].project, "/projects/saw.project");
  EXPECT_EQ(devices[1].address, "10.0.0.2");
  EXPECT_EQ(devices[1].station, 1);
  EXPECT_TRUE(devices[1].offline);
  EXPECT_EQ(devices[1].library, "plant/lib/agl.so");
}

TEST(Description, MistakesNameLineAndColumn) {
  const std::string two = "[[device]]\nname = \"a\"\nproject = \"p\"\n[[device]]\nproject = \"p\"\n";
  const std::vector<std::pair<std::string, std::string>> mistakes{
      {"", "a.toml:1:1: a description needs at least one [[device]]"},
      {"device = 1", "a.toml:1:10: a description needs at least one [[device]]"},
      {"device = [1]", "a.toml:1:11: [[device]] must be a table"},
      {"defaults = 1", "a.toml:1:12: [defaults] must be a table"},
      {"[devices]\n", "a.toml:1:2: unknown key 'devices'; known are defaults, device"},
      {"[defaults]\nname = \"x\"",
       "a.toml:2:1: unknown key 'name' in [defaults]; known are project, address, station, offline, driver, "
       "library"},
      {"[[device]]\nname = \"a\"\n  adress = \"10.0.0.1\"",
       "a.toml:3:3: unknown key 'adress' in [[device]]; known are name, project, address, station, offline, "
       "driver, library"},
      {"[[device]]\nproject = \"p\"",
       "a.toml:1:1: a device needs a name of letters, digits, '_', '-' and '.', as in name = \"press\""},
      {"[[device]]\nname = \"a/b\"",
       "a.toml:2:8: a device needs a name of letters, digits, '_', '-' and '.', as in name = \"press\""},
      {"[[device]]\nname = 5", "a.toml:2:8: name must be a text"},
      {"[[device]]\nname = \"a\"", "a.toml:1:1: device a needs a project, as in project = \"a.project\""},
      {"[[device]]\nname = \"a\"\naddress = \"plc\"",
       "a.toml:3:11: address 'plc' is no IPv4 address; write it like 192.168.0.1"},
      {"[[device]]\nname = \"a\"\nstation = 256", "a.toml:3:11: station 256 must be from 0 to 255"},
      {"[[device]]\nname = \"a\"\nstation = \"1\"", "a.toml:3:11: station must be a number from 0 to 255"},
      {"[[device]]\nname = \"a\"\noffline = 1", "a.toml:3:11: offline must be true or false"},
      {two + "name = \"a\"", "a.toml:6:8: there is a device a already; names must differ"},
      {two + "name = \"b\"",
       "a.toml:4:1: devices a and b both have station 1; the driver tells devices apart by it"},
      {two + "name = \"b\"\nstation = 2\nlibrary = \"other.so\"",
       "a.toml:4:1: device b needs the driver and library of a: all are in one process"},
  };
  for (const auto& [text, line] : mistakes) {
    EXPECT_EQ(refusal(text), line) << text;
  }
}

TEST(Description, TextThatIsNoTomlIsRefusedWithItsPlace) {
  const auto line = refusal("[[device]]\nname = press\n");
  EXPECT_TRUE(line.starts_with("a.toml:2:")) << line;
  EXPECT_EQ(line.find('\n'), std::string::npos) << line;
}

TEST(Description, DevicesOfOneStationMayBeSimulated) {
  EXPECT_EQ(
      refusal(
          "[defaults]\noffline = true\nproject = \"p\"\n[[device]]\nname = \"a\"\n[[device]]\nname = \"b\""),
      "taken");
}

}  // namespace
}  // namespace ostravel::host
