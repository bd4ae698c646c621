// SPDX-License-Identifier: MIT
// ostravel-host write: what is sent, what is read back, what is refused.
#include <gtest/gtest.h>

#include "tests/host/hostrun.h"

namespace ostravel::host {
namespace {

struct Sample : HostRun {
  Sample()
      : HostRun(
            "Level,INT,1,,1,1,1\n"
            "Levels,INT,3,0,1,1,2\n"
            "Low,INT,2,-3,1,1,3\n"
            "Run,BOOL,1,,1,1,4\n"
            "Span,DINT,1,,1,1,5\n"
            "Stamp,BYTE,12,0,1,1,6\n"
            "\"Plant.\"\"a=b\"\"\",INT,1,,1,1,7\n") {
    set("FAKE_DRIVER_WORDS", "0:0;1:0,0,0");
  }
};

TEST(HostWrite, WritesAndReadsBack) {
  const auto result = Sample()({"write", "Level=-5", "Levels=[1, 16#FF, 3]"});
  EXPECT_EQ(result.out, "Level reads back as -5 (0/5 ok)\nLevels reads back as [1,255,3] (0/5 ok)\n");
  EXPECT_EQ(result.code, 0);
}

TEST(HostWrite, ReadsBackInEachForm) {
  EXPECT_EQ(Sample()({"write", "--json", "Level=7"}).out,
            "{\"tag\":\"Level\",\"type\":\"INT\",\"value\":7,\"error\":0,\"status\":5,\"meaning\":\"ok\"}\n");
  EXPECT_EQ(Sample()({"write", "--csv", "Level=7"}).out,
            "tag,type,value,error,status,meaning\nLevel,INT,7,0,5,ok\n");
}

TEST(HostWrite, WhatCannotBeReadBackIsAFailure) {
  const auto result = Sample()({"write", "Span=T#5s"});
  EXPECT_EQ(result.out, "Span reads back as - (2/5 no data)\n");
  EXPECT_EQ(result.code, 1);
}

// The driver answers a failed write like a good one: only the value tells.
TEST(HostWrite, ValueThatDidNotArriveIsAFailure) {
  // The fake driver takes bits and does not keep them.
  HostRun host("Run,BOOL,1,,1,1,1\nLevel,INT,1,,1,1,2\n");
  host.set("FAKE_DRIVER_WORDS", "0:0;1:0");
  const auto result = host({"write", "Run=true", "Level=3"});
  EXPECT_EQ(result.out, "Run reads back as false (0/5 ok)\nLevel reads back as 3 (0/5 ok)\n");
  EXPECT_EQ(
      result.error,
      "ostravel-host: Run: reads back as another value; the write failed, or the PLC's program changed it\n");
  EXPECT_EQ(result.code, 1);
}

TEST(HostWrite, DryRunShowsTheRequestsAndNeedsNoDriver) {
  const Sample host;
  const auto shown =
      run_tool(HOST_PATH, {"--driver", "/nowhere/none.so", "--project", host.path("a.project"), "write",
                           "--dry-run", "Level=-5", "Levels=[1,2,3]", "Low=[7,8]", "Run=true", "Span=T#5s",
                           "Stamp=DTL#2024-03-05-13:14:15.5", "Plant.\"a=b\"=1"});
  EXPECT_EQ(shown.out,
            "Level: word write, type INT, row 0, elements 1, words FFFB\n"
            "Levels: word write, type INT, row 1, index 0, elements 3, words 0001 0002 0003\n"
            "Low: word write, type INT, row 2, index -3, elements 1, words 0007\n"
            "Low: word write, type INT, row 2, index -2, elements 1, words 0008\n"
            "Run: bit write, type BOOL, row 3, bit 1\n"
            "Span: word write, type DINT, row 4, elements 1, words 1388 0000\n"
            "Stamp: word write, type BYTE, row 5, index 0, elements 12, words 07E8 0503 0D03 0F0E 6500 1DCD\n"
            "Plant.\"a=b\": word write, type INT, row 6, elements 1, words 0001\n");
  EXPECT_EQ(shown.code, 0);
}

TEST(HostWrite, DryRunHasTheOtherForms) {
  EXPECT_EQ(Sample()({"write", "--dry-run", "--json", "Span=1", "Run=0"}).out,
            "{\"tag\":\"Span\",\"request\":\"word write\",\"type\":\"DINT\",\"row\":4,\"index\":null,"
            "\"elements\":1,\"bit\":null,\"words\":[\"0001\",\"0000\"]}\n"
            "{\"tag\":\"Run\",\"request\":\"bit write\",\"type\":\"BOOL\",\"row\":3,\"index\":null,"
            "\"elements\":1,\"bit\":false,\"words\":null}\n");
  EXPECT_EQ(Sample()({"write", "--dry-run", "--csv", "Level=1"}).out,
            "tag,request,type,row,index,elements,bit,words\n"
            "Level,word write,INT,0,,1,,\"[\"\"0001\"\"]\"\n");
}

TEST(HostWrite, NothingIsSentWhenOneValueIsWrong) {
  const Sample host;
  const std::vector<std::pair<std::string, std::string>> mistakes{
      {"Level=70000", "Level: 70000 does not fit INT (-32768 to 32767)"},
      {"Run=2", "Run: \"2\" does not fit BOOL (true or false)"},
      {"Levels=[1,2]", "Levels: takes an array of 3 values, and 2 are given"},
      {"Levels=[1,2,x]", "Levels: element 2: \"x\" does not fit INT (-32768 to 32767)"},
      {"Levels[1]=1.5", "Levels[1]: 1.5 does not fit INT (-32768 to 32767)"},
      {"Span=T#30d", "Span: T#30d does not fit DINT (-2147483648 to 2147483647 ms)"},
      {"Level", "'Level' is no assignment; write NAME=VALUE"},
  };
  for (const auto& [text, line] : mistakes) {
    for (const bool dry : {false, true}) {
      std::vector<std::string> arguments{"write", "Level=1", text};
      if (dry) {
        arguments.emplace_back("--dry-run");
      }
      const auto result = host(arguments);
      EXPECT_EQ(result.error, "ostravel-host: " + line + "\n");
      EXPECT_EQ(result.out, "");
      EXPECT_EQ(result.code, 2);
    }
  }
}

}  // namespace
}  // namespace ostravel::host
