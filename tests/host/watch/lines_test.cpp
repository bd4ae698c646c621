// SPDX-License-Identifier: MIT
// watch without a terminal: through the program, since the lines are what a pipe gets.
#include "host/watch/lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/hostrun.h"

namespace ostravel::host::watch {
namespace {

using testing::MatchesRegex;

constexpr const char* kTags = "Level,INT,1,,1,1,1\nSpeed,INT,1,,1,1,2\n";

TEST(WatchLines, UtcTimeWithMilliseconds) {
  using std::chrono::milliseconds;
  EXPECT_EQ(utc_text(std::chrono::system_clock::time_point(milliseconds(1709644455678))),
            "2024-03-05T13:14:15.678Z");
  EXPECT_EQ(utc_text(std::chrono::system_clock::time_point(milliseconds(5))), "1970-01-01T00:00:00.005Z");
}

TEST(WatchLines, EachChangeIsALine) {
  HostRun host(kTags);
  host.set("FAKE_DRIVER_WORDS", "0:5");
  const auto result = host({"watch", "--interval", "1", "--count", "4"});
  EXPECT_EQ(result.out, "# online\nLevel = 5 (0/5 ok)\nSpeed = - (2/5 no data)\n");
  EXPECT_EQ(result.code, 0);
}

TEST(WatchLines, LostConnectionIsSaidInBetween) {
  HostRun host("Level,INT,1,,1,1,1\n");
  host.set("FAKE_DRIVER_WORDS", "0:5");
  host.set("FAKE_DRIVER_LOST", "2,0");
  const auto result = host({"watch", "--interval", "1", "--count", "4"});
  EXPECT_EQ(result.out,
            "# online\nLevel = 5 (0/5 ok)\n"
            "# connection lost\nLevel = 5 (2/5 no data)\n"
            "# failed, initialising again\nLevel = 5 (2/0 no data)\n"
            "# online\nLevel = 5 (0/5 ok)\n");
}

TEST(WatchLines, JsonIsAnObjectALineWithTheTime) {
  HostRun host("Level,INT,1,,1,1,1\n");
  host.set("FAKE_DRIVER_WORDS", "0:5");
  const auto result = host({"watch", "--interval", "1", "--count", "2", "--json"});
  const auto row = nlohmann::json::parse(result.out);
  EXPECT_THAT(row["time"].get<std::string>(), MatchesRegex("20..-..-..T..:..:..[.]...Z"));
  EXPECT_EQ(row["tag"], "Level");
  EXPECT_EQ(row["type"], "INT");
  EXPECT_EQ(row["value"], 5);
  EXPECT_EQ(row["error"], 0);
}

TEST(WatchLines, CsvHasAHeaderAndALineForEachChange) {
  HostRun host("Level,INT,1,,1,1,1\n");
  host.set("FAKE_DRIVER_WORDS", "0:5");
  const auto result = host({"watch", "--interval", "1", "--count", "2", "--csv"});
  EXPECT_THAT(result.out,
              MatchesRegex("time,tag,type,value,error,status,meaning\n[^,]*Z,Level,INT,5,0,5,ok\n"));
}

TEST(WatchLines, DeviceThatNeverAnswersHasACode) {
  HostRun host("Level,INT,1,,1,1,1\n");
  host.set("FAKE_DRIVER_NOT_READY", "1000000");
  const auto result = host({"watch", "--interval", "1", "--count", "1"});
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(
      result.error,
      "ostravel-host: no answer from 127.0.0.1 (connecting); check the address and that the PLC runs\n");
}

TEST(WatchLines, WrongOptionsAreOneLine) {
  const HostRun host(kTags);
  const auto result = host({"watch", "--interval", "0"});
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.error, testing::HasSubstr("--interval"));
  EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1);
  EXPECT_THAT(host({"watch", "None"}).error, testing::HasSubstr("None: the project has no tag of that name"));
}

}  // namespace
}  // namespace ostravel::host::watch
