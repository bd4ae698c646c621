// SPDX-License-Identifier: MIT
// ostravel-host browse and describe.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/hostrun.h"

namespace ostravel::host {
namespace {

using testing::HasSubstr;

struct Sample : HostRun {
  Sample()
      : HostRun(
            "Plant.Level,INT,1,,1,1,1\n"
            "Plant.Motors[1].Speed,REAL,1,,1,1,2\n"
            "Plant.Motors[2].Speed,REAL,1,,1,1,3\n"
            "\"\"\"Tank.1\"\".Rows\",INT,3,1,1,1,4\n"
            "Names,STRING,8,0,2,1,5\n") {
    set("FAKE_DRIVER_WORDS", "0:65531;1:0,16464;3:1,2,3;4:97");
    set("LC_ALL", "C");
  }
};

TEST(HostBrowse, ShowsTheTreeWithTypesAndValues) {
  const auto result = Sample()({"browse"});
  EXPECT_EQ(result.out,
            "Plant\n"
            "|- Level        INT              -5\n"
            "`- Motors\n"
            "   |- [1]\n"
            "   |  `- Speed  REAL             3.25\n"
            "   `- [2]\n"
            "      `- Speed  REAL             2/5 no data\n"
            "\"Tank.1\"\n"
            "`- Rows         INT[1..3]        [1,2,3]\n"
            "Names           STRING(8)[0..1]  [\"a\",\"a\"]\n");
  EXPECT_EQ(result.code, 1) << "a tag has no value";
}

TEST(HostBrowse, WithoutValuesNeedsNeitherDriverNorPlc) {
  const Sample host;
  const auto result =
      run_tool("/usr/bin/env", {"LC_ALL=C", HOST_PATH, "--driver", "/nowhere/none.so", "--project",
                                host.path("a.project"), "browse", "--no-values", "--depth", "2"});
  EXPECT_EQ(result.out,
            "Plant\n"
            "|- Level   INT\n"
            "`- Motors                   (2 tags below)\n"
            "\"Tank.1\"\n"
            "`- Rows    INT[1..3]\n"
            "Names      STRING(8)[0..1]\n");
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.code, 0);
}

TEST(HostBrowse, LinesOfTheTreeFollowTheLocale) {
  Sample host;
  host.set("LC_ALL", "C.UTF-8");
  EXPECT_EQ(host({"browse", "--no-values", "rows"}).out, "\"Tank.1\"\n└─ Rows   INT[1..3]\n");
}

TEST(HostBrowse, FilterIsPartOfANameOrAPattern) {
  const Sample host;
  EXPECT_EQ(host({"browse", "--no-values", "--csv", "Plant.*.speed"}).out,
            "tag,type,first,elements,characters\n"
            "Plant.Motors[1].Speed,REAL,,1,\n"
            "Plant.Motors[2].Speed,REAL,,1,\n");
  const auto none = host({"browse", "--no-values", "Valve"});
  EXPECT_EQ(none.error,
            "ostravel-host: no tag fits 'Valve'; give a part of a name, or a pattern with * and ?\n");
  EXPECT_EQ(none.code, 2);
}

TEST(HostBrowse, JsonHasTheSameTags) {
  EXPECT_EQ(Sample()({"browse", "--json", "Names"}).out,
            "{\"tag\":\"Names\",\"type\":\"STRING\",\"first\":0,\"elements\":2,\"characters\":8,"
            "\"value\":[\"a\",\"a\"],\"error\":0,\"status\":5,\"meaning\":\"ok\"}\n");
  EXPECT_EQ(
      Sample()({"browse", "--json", "--no-values", "Rows"}).out,
      "{\"tag\":\"\\\"Tank.1\\\".Rows\",\"type\":\"INT\",\"first\":1,\"elements\":3,\"characters\":null}\n");
}

TEST(HostBrowse, WithoutAnswerSaysSo) {
  Sample host;
  host.set("FAKE_DRIVER_NOT_READY", "1000000");
  const auto result = host({"browse", "--timeout", "20"});
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(
      result.error,
      "ostravel-host: no answer from 127.0.0.1 in 20 ms (connecting); check the address and that the PLC "
      "runs\n");
  EXPECT_EQ(result.code, 4);
}

TEST(HostDescribe, ShowsDriverFileLibraryAndTypes) {
  const auto result = run_tool(HOST_PATH, {"--driver", FAKE_DRIVER_PATH, "describe"});
  EXPECT_EQ(result.out,
            std::string("Fake 1.07, driver 42\nfile ") + FAKE_DRIVER_PATH +
                "\ntime-out at least 0 ms, 0 initialisation and 0 close commands\n"
                "communication library: none found; give --library FILE or put it on the library path\n\n"
                "TYPE  CODE  DEVICE  RUNTIME TYPE  ELEMENTS  WORDS EACH\n"
                "INT   195   word    9             256       1\n");
  EXPECT_EQ(result.code, 0);
}

TEST(HostDescribe, JsonHasAnObjectForEachAndCsvTheTypes) {
  EXPECT_EQ(run_tool(HOST_PATH, {"--driver", FAKE_DRIVER_PATH, "describe", "--json"}).out,
            std::string("{\"kind\":\"driver\",\"name\":\"Fake\",\"version\":\"1.07\",\"id\":42,\"file\":\"") +
                FAKE_DRIVER_PATH +
                "\",\"min_timeout_ms\":0,\"init_commands\":0,\"close_commands\":0}\n"
                "{\"kind\":\"library\",\"file\":null,\"version\":null}\n"
                "{\"kind\":\"type\",\"type\":\"INT\",\"code\":195,\"device\":\"word\",\"runtime_type\":9,"
                "\"elements\":256,\"words_each\":1}\n");
  EXPECT_EQ(run_tool(HOST_PATH, {"--driver", FAKE_DRIVER_PATH, "describe", "--csv"}).out,
            "type,code,device,runtime_type,elements,words_each\nINT,195,word,9,256,1\n");
}

TEST(HostDescribe, LibraryThatCannotBeLoadedIsAnErrorOfItsOwnCode) {
  const auto result =
      run_tool(HOST_PATH, {"--driver", FAKE_DRIVER_PATH, "--library", "/nowhere/libnone.so", "describe"});
  EXPECT_THAT(result.error, HasSubstr("ostravel-host: /nowhere/libnone.so: cannot be loaded"));
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.code, 3);
}

}  // namespace
}  // namespace ostravel::host
