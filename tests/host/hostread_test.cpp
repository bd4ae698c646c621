// SPDX-License-Identifier: MIT
// ostravel-host read: values, forms of output, exit codes.
#include <gtest/gtest.h>

#include "tests/host/hostrun.h"

namespace ostravel::host {
namespace {

struct Sample : HostRun {
  Sample()
      : HostRun(
            "Level,INT,1,,1,1,1\n"
            "Levels,INT,3,0,1,1,2\n"
            "Name,STRING,8,,1,1,3\n"
            "None,REAL,1,,1,1,4\n") {
    set("FAKE_DRIVER_WORDS", "0:65531;1:1,2,3;2:97,44,34");
  }
};

TEST(HostRead, PrintsALineATag) {
  const auto result = Sample()({"read", "Level", "Levels", "Name"});
  EXPECT_EQ(result.out, "Level = -5\nLevels = [1,2,3]\nName = \"a,\\\"\"\n");
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.code, 0);
}

TEST(HostRead, JsonIsAnObjectALineWithTheStatus) {
  const auto result = Sample()({"--json", "read"});
  EXPECT_EQ(
      result.out,
      "{\"tag\":\"Level\",\"type\":\"INT\",\"value\":-5,\"error\":0,\"status\":5,\"meaning\":\"ok\"}\n"
      "{\"tag\":\"Levels\",\"type\":\"INT\",\"value\":[1,2,3],\"error\":0,\"status\":5,\"meaning\":\"ok\"}\n"
      "{\"tag\":\"Name\",\"type\":\"STRING\",\"value\":\"a,\\\"\",\"error\":0,\"status\":5,\"meaning\":"
      "\"ok\"}\n"
      "{\"tag\":\"None\",\"type\":\"REAL\",\"value\":null,\"error\":2,\"status\":5,\"meaning\":\"no "
      "data\"}\n");
  EXPECT_EQ(result.code, 1) << "a tag has no value";
}

TEST(HostRead, CsvHasAHeaderAndQuotes) {
  const auto result = Sample()({"read", "--csv", "Name", "Levels", "None"});
  EXPECT_EQ(result.out,
            "tag,type,value,error,status,meaning\n"
            "Name,STRING,\"a,\"\"\",0,5,ok\n"
            "Levels,INT,\"[1,2,3]\",0,5,ok\n"
            "None,REAL,,2,5,no data\n");
}

TEST(HostRead, NamesCannotSteerTheTerminal) {
  HostRun sample("\"Level\x1B[31m\",INT,1,,1,1,1\n");
  sample.set("FAKE_DRIVER_WORDS", "0:65531");
  const std::string shown = "Level\\u001b[31m";
  EXPECT_EQ(sample({"read"}).out, shown + " = -5\n");
  EXPECT_NE(sample({"browse"}).out.find("Level\\u001b"), std::string::npos);
  EXPECT_EQ(sample({"browse"}).out.find('\x1B'), std::string::npos);
  EXPECT_EQ(sample({"watch", "--plain", "--count", "1"}).out, "# online\n" + shown + " = -5 (0/5 ok)\n");
  EXPECT_EQ(sample({"read", "None\x1B[2J"}).error.find('\x1B'), std::string::npos);
}

TEST(HostRead, JsonAndCsvExcludeEachOther) {
  const auto result = Sample()({"--json", "--csv", "read"});
  EXPECT_EQ(result.error, "ostravel-host: --json excludes --csv; see ostravel-host --help\n");
  EXPECT_EQ(result.code, 2);
}

TEST(HostRead, WithoutAnswerInTimeSaysSo) {
  Sample host;
  host.set("FAKE_DRIVER_NOT_READY", "1000000");
  const auto result = host({"--address", "10.1.2.3", "--timeout", "20", "read"});
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(
      result.error,
      "ostravel-host: no answer from 10.1.2.3 in 20 ms (connecting); check the address and that the PLC "
      "runs\n");
  EXPECT_EQ(result.code, 4);
}

TEST(HostRead, WaitOfMoreThanASecondIsTold) {
  Sample host;
  host.set("FAKE_DRIVER_NOT_READY", "1000000");
  const auto result = host({"--timeout", "2000", "read"});
  EXPECT_EQ(
      result.error,
      "ostravel-host: no answer from 127.0.0.1 yet (connecting)\n"
      "ostravel-host: no answer from 127.0.0.1 in 2000 ms (connecting); check the address and that the PLC "
      "runs\n");
  EXPECT_EQ(result.code, 4);
}

}  // namespace
}  // namespace ostravel::host
