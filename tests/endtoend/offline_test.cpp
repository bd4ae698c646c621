// SPDX-License-Identifier: MIT
// The shipped driver simulating a device by itself.
#include <gtest/gtest.h>

#include "host/files.h"
#include "host/tagscsv.h"
#include "tests/endtoend/world.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

TEST(Offline, ValuesWrittenAreReadBackAndNoLibraryIsNeeded) {
  const Scratch scratch;
  const auto project = project_from_csv(
      "name,type,count,first,elements,device,id\nB,BOOL,1,,1,1,1\nI,INT,1,,1,1,2\nR,LREAL,3,1,1,1,3\n"
      "S,STRING,10,,1,1,4\nW,WORD,1,,1,1,5\n",
      "t");
  const auto file = scratch.path("t.project");
  write_file(file, encode_project(project), false);
  const DriverLibrary driver(DRIVER_PATH);
  DeviceSettings settings;
  settings.project_file = file;
  settings.table_position = load_project(file).table_position;
  settings.offline = true;
  Session session(driver, settings);
  const auto write = [&](const char* tag, const json& value) {
    for (const auto& access : write_accesses(select(project, tag), false, true, value)) {
      EXPECT_EQ(session.write(access).outcome, Outcome::Served);
    }
  };
  const auto read = [&](const char* tag) {
    Poller poller(session, {select(project, tag)}, false);
    EXPECT_EQ(poller.poll(), LinkState::Online);
    return poller.state(0).value;
  };
  for (const auto& [tag, value] : std::vector<std::pair<const char*, json>>{
           {"B", true}, {"I", -7}, {"R", {0.5, -1e99, 3.0}}, {"S", "Öl"}, {"W", 0}}) {
    write(tag, value);
    EXPECT_EQ(read(tag), value) << tag;
  }
  write("W.%X3", true);
  EXPECT_EQ(read("W"), 8);
  EXPECT_EQ(read("W.%X3"), true);
  EXPECT_EQ(read("W.%X2"), false);
}

}  // namespace
}  // namespace ostravel::host
