// SPDX-License-Identifier: MIT
// A check of a simulated PLC in this process, through the stand-in for the communication library.
#include "host/check/checker.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "simulator/plc/server.h"
#include "simulator/program/source.h"
#include "simulator/standin/statistics.h"

namespace ostravel::host::check {
namespace {

using testing::HasSubstr;

constexpr std::string_view kSource = R"(
DATA_BLOCK "Plant"
{ S7_Optimized_Access := 'TRUE' }
VERSION : 0.1
  VAR
    Speed : Int;
    Built : DTL;
    Letter : WChar;
    Note : WString[254];
    Short : WString[10];
    Text : String[20];
    Levels : Array[0..9] of Int;
    FromOne : Array[1..6] of DInt;
    BelowZero : Array[-3..3] of Int;
    Matrix : Array[1..2, 0..2] of Int;
    Names : Array[0..3] of String[12];
    NamesFromOne : Array[1..2] of String[8];
    Motor : Struct
      Speed : Real;
    END_STRUCT;
    Hidden { ExternalAccessible := 'False'; ExternalVisible := 'False'; ExternalWritable := 'False' } : Int;
  END_VAR
BEGIN
END_DATA_BLOCK
)";

plc::ServerOptions server_options() {
  plc::ServerOptions options;
  options.port = 0;
  options.cycle = std::chrono::microseconds(0);
  return options;
}

struct PlcWorld {
  void* file = dlopen(STANDIN_PATH, RTLD_NOW);
  Library library{[this](const char* name) { return dlsym(file, name); }, STANDIN_PATH};
  plc::Server server;

  explicit PlcWorld(const plc::ServerOptions& options = server_options())
      : server(plc::load_text(kSource, "plant.db"), options) {
    setenv("OSTRAVEL_STANDIN_PORT", std::to_string(server.port()).c_str(), 1);
  }

  agl_standin_statistics_t statistics() const {
    agl_standin_statistics_t now{};
    reinterpret_cast<decltype(&agl_standin_statistics)>(dlsym(file, "agl_standin_statistics"))(&now);
    return now;
  }

  TagReport check(const Tag& tag) {
    const PlcLink link(library, {});
    TagReport found;
    Checker(link).check({&tag, 1}, false, [&](const TagReport& report) { found = report; });
    return found;
  }
};

Tag tag(const char* name, const char* type, std::uint16_t count = 1, std::optional<std::int32_t> first = {},
        std::uint16_t elements = 1) {
  Tag made;
  made.name = name;
  made.type = find_tag_type(type);
  made.count = count;
  made.first = first;
  made.elements = elements;
  return made;
}

void expect(PlcWorld& world, const Tag& tag, Verdict verdict, const std::string& part = {}) {
  const auto report = world.check(tag);
  const auto text = report.findings.empty() ? std::string() : report.findings.front().text;
  EXPECT_EQ(report.verdict(), verdict) << tag.name << ": " << text;
  EXPECT_THAT(text, HasSubstr(part)) << tag.name;
}

TEST(CheckOfAPlc, WhatFitsIsGood) {
  PlcWorld world;
  for (const auto& good :
       {tag("Plant.Speed", "INT"), tag("Plant.Built", "BYTE", 12, 0), tag("Plant.Note", "WSTRING", 254),
        tag("Plant.Text", "STRING", 20), tag("Plant.Levels", "INT", 10, 0), tag("Plant.Levels[3]", "INT"),
        tag("Plant.FromOne", "DINT", 6, 1), tag("Plant.Matrix", "INT", 6, 0), tag("Plant.Matrix[2,1]", "INT"),
        tag("Plant.Names", "STRING", 12, 0, 4), tag("Plant.Motor.Speed", "REAL"),
        tag("Plant.Levels[INDEX]", "INT", 1, 7)}) {
    expect(world, good, Verdict::Good);
  }
}

TEST(CheckOfAPlc, UnknownPathsStopSomewhere) {
  PlcWorld world;
  expect(world, tag("Plant.Sped", "INT"), Verdict::Bad,
         "unknown path, stops after 'Plant.' at 'Sped' (character 7): path leads to no symbol (0xFFE10041)");
  expect(world, tag("Nowhere.Speed", "INT"), Verdict::Bad, "stops at its beginning");
  expect(world, tag("Plant.Motor", "REAL"), Verdict::Bad, "something without a value");
  expect(world, tag("Plant.Matrix[2,1", "INT"), Verdict::Bad, "unknown path");
}

TEST(CheckOfAPlc, IndicesOutsideTheBounds) {
  PlcWorld world;
  expect(world, tag("Plant.Levels[10]", "INT"), Verdict::Bad, "index [10] is outside [0..9]");
  expect(world, tag("Plant.Matrix[1,3]", "INT"), Verdict::Bad, "index [1,3] is outside [1..2, 0..2]");
  expect(world, tag("Plant.Levels", "INT", 11, 0), Verdict::Bad, "index 10 is outside 0..9");
  expect(world, tag("Plant.Names", "STRING", 12, 2, 3), Verdict::Bad, "index 4 is outside 0..3");
  expect(world, tag("Plant.Names", "STRING", 12, 4, 1), Verdict::Bad, "index [4] is outside [0..3]");
}

TEST(CheckOfAPlc, LimitsOfTheDriver) {
  PlcWorld world;
  expect(world, tag("Plant.FromOne[2]", "DINT"), Verdict::Bad, "under a tag of its own");
  expect(world, tag("Plant.BelowZero", "INT", 7, -3), Verdict::Bad, "reads as zeros");
  expect(world, tag("Plant.NamesFromOne", "STRING", 8, 1, 2), Verdict::Bad, "read as empty");
  expect(world, tag("Plant.Letter", "WORD"), Verdict::Bad, "reads as 0");
  expect(world, tag("Plant.Short", "WSTRING", 10), Verdict::Doubtful, "declare WString[254]");
  expect(world, tag("Plant.Text", "STRING", 10), Verdict::Bad, "too long for the layout");
  expect(world, tag("Plant.Speed", "DINT"), Verdict::Bad, "the PLC has Int, the project DINT");
}

TEST(CheckOfAPlc, WhatThePlcRefusesIsInTheLibrarysWords) {
  PlcWorld world;
  world.server.command("fail Plant.Speed");
  expect(world, tag("Plant.Speed", "INT"), Verdict::Bad,
         "no access: PLC reports a fault for this variable (0xFFE10072)");
}

TEST(CheckOfAPlc, NothingIsLeftOpen) {
  PlcWorld world;
  const auto before = world.statistics();
  world.check(tag("Plant.Levels", "INT", 10, 0));
  world.check(tag("Plant.Sped", "INT"));
  world.check(tag("Plant.Names", "STRING", 12, 0, 4));
  const auto after = world.statistics();
  EXPECT_EQ(after.open_connections, before.open_connections);
  EXPECT_EQ(after.connections, before.connections + 3);
  EXPECT_EQ(after.live_roots, before.live_roots);
  EXPECT_EQ(after.live_nodes, before.live_nodes);
  EXPECT_EQ(after.live_accesses, before.live_accesses);
  EXPECT_EQ(after.invalid_frees, before.invalid_frees);
  EXPECT_EQ(after.double_frees, before.double_frees);
}

TEST(CheckOfAPlc, ManyTagsTakeFewJobs) {
  PlcWorld world;
  const std::vector<Tag> tags(10'000, tag("Plant.Speed", "INT"));
  const PlcLink link(world.library, {});
  const auto before = world.statistics().read_jobs;
  std::size_t good = 0;
  Checker(link).check(tags, false,
                      [&](const TagReport& report) { good += report.findings.empty() ? 1U : 0U; });
  EXPECT_EQ(good, 10'000U);
  EXPECT_EQ(world.statistics().read_jobs - before, 100U);
}

TEST(CheckOfAPlc, APasswordIsGiven) {
  auto options = server_options();
  options.plc.password = "geheim";
  PlcWorld world(options);
  EXPECT_NO_THROW(PlcLink(world.library, {"127.0.0.1", 1, "geheim", std::chrono::seconds(5)}));
}

TEST(CheckOfAPlc, NobodyThereIsAFailureInTheLibrarysWords) {
  PlcWorld world;
  setenv("OSTRAVEL_STANDIN_PORT", "none", 1);
  try {
    const PlcLink link(world.library, {});
    FAIL() << "connected";
  } catch (const LibraryFailure& failure) {
    EXPECT_THAT(failure.what(), HasSubstr("AGL_PLCConnectEx: OSTRAVEL_STANDIN_PORT is no port number"));
  }
}

}  // namespace
}  // namespace ostravel::host::check
