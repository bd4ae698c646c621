// SPDX-License-Identifier: MIT
// What a check does when functions of the library fail or are missing.
#include "host/check/library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/check/checker.h"
#include "host/driverlibrary.h"
#include "tests/host/check/fakeplclibrary.h"

namespace ostravel::host::check {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr agl_int32_t kRefused = static_cast<agl_int32_t>(0xFFE10020U);

template <class Failure, class Action>
std::string failure_of(Action&& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "nothing was thrown";
}

std::vector<Tag> tags(std::size_t count) {
  std::vector<Tag> made(count);
  for (std::size_t i = 0; i < count; ++i) {
    made[i].name = "Tag" + std::to_string(i);
    made[i].type = find_tag_type("INT");
  }
  return made;
}

std::vector<TagReport> check(const Library& library, std::size_t count) {
  const PlcLink link(library, {});
  std::vector<TagReport> reports;
  const auto some = tags(count);
  Checker(link).check(some, false, [&](const TagReport& report) { reports.push_back(report); });
  return reports;
}

TEST(Library, MissingFunctionIsOneLine) {
  FakePlcLibrary fake;
  fake.missing.insert("AGL_Symbolic_GetNodeByPath");
  EXPECT_EQ(failure_of<NoDriver>([&] { fake.library(); }),
            "libtest.so: has no AGL_Symbolic_GetNodeByPath; check needs a driver that shows the library's "
            "functions");
}

TEST(Library, SpeaksItsOwnWords) {
  FakePlcLibrary fake;
  fake.words[kRefused] = "PLC cannot be reached";
  fake.words[5] = std::string(400, 'x');
  const auto library = fake.library();
  EXPECT_EQ(library.text_of(kRefused), "PLC cannot be reached (0xFFE10020)");
  EXPECT_EQ(library.text_of(17), "error 0x00000011");
  EXPECT_EQ(library.text_of(5), std::string(256, 'x') + " (0x00000005)");
  EXPECT_THAT(library.text_of(AGL40_LIB_NOT_LOADED), HasSubstr("is missing (0xFFF00016)"));
}

TEST(PlcLink, OpensAndClosesEverythingOnce) {
  FakePlcLibrary fake;
  const auto library = fake.library();
  {
    const PlcLink link(library, {"10.0.0.1", 3, "secret", std::chrono::seconds(1)});
    EXPECT_EQ(link.connection(), 7);
    fake.calls.push_back("used");
  }
  EXPECT_THAT(fake.calls, ElementsAre("GetParas", "SetParas", "SetDevType", "OpenDevice", "DialUp",
                                      "InitAdapter", "PLCConnectEx", "SetPassword secret", "used",
                                      "PLCDisconnect 7", "ExitAdapter", "HangUp", "CloseDevice"));
  EXPECT_THAT(fake.freed, ElementsAre(1));
}

TEST(PlcLink, WhatFailsIsNamedAndAllIsClosedAgain) {
  FakePlcLibrary fake;
  fake.words[kRefused] = "PLC cannot be reached";
  fake.results["PLCConnectEx"] = kRefused;
  const auto library = fake.library();
  EXPECT_EQ(failure_of<LibraryFailure>([&] { PlcLink link(library, {}); }),
            "AGL_PLCConnectEx: PLC cannot be reached (0xFFE10020)");
  EXPECT_EQ(fake.calls.back(), "CloseDevice");
  EXPECT_THAT(fake.freed, IsEmpty());
}

TEST(PlcLink, AStepThatFailsWithoutNeedIsNoFailure) {
  FakePlcLibrary fake;
  fake.results = {{"GetParas", -1}, {"DialUp", -1}, {"InitAdapter", -1}};
  const auto library = fake.library();
  EXPECT_NO_THROW(PlcLink(library, {}));
}

TEST(PlcLink, EarlierFailuresSayWhyTheSymbolsDoNotCome) {
  FakePlcLibrary fake;
  fake.results = {{"SetPassword x", 2}, {"Symbolic_LoadAGLinkSymbolsFromPLC", 3}};
  fake.words = {{2, "password is wrong"}, {3, "password needed"}};
  const auto library = fake.library();
  EXPECT_EQ(failure_of<LibraryFailure>([&] {
              PlcLink link(library, {"10.0.0.1", 1, "x", std::chrono::seconds(1)});
            }),
            "AGL_SetPassword: password is wrong (0x00000002); AGL_Symbolic_LoadAGLinkSymbolsFromPLC: "
            "password needed "
            "(0x00000003)");
  EXPECT_THAT(fake.calls, testing::Contains("PLCDisconnect 7"));
}

TEST(PlcLink, TakesADeviceOfNoStation) {
  EXPECT_EQ(free_device({}), 1);
  EXPECT_EQ(free_device({0, 1, 2, 4}), 3);
}

TEST(Checker, EveryHandleIsFreedOnce) {
  FakePlcLibrary fake;
  const auto reports = check(fake.library(), 250);
  EXPECT_THAT(reports, SizeIs(250));
  EXPECT_TRUE(std::all_of(reports.begin(), reports.end(),
                          [](const auto& r) { return r.verdict() == Verdict::Good; }));
  // A node and an access each, and the root.
  EXPECT_THAT(fake.freed, SizeIs(501));
}

TEST(Checker, AFunctionThatFailsIsOneFinding) {
  for (const auto* name : {"GetAccessBufferSize", "GetAccessElementValueType", "GetAccessElementSystemType",
                           "GetAccessBufferElementCount", "GetAccessBufferElementSize"}) {
    FakePlcLibrary fake;
    fake.results[std::string("Symbolic_") + name] = AGL40_LIB_NOT_LOADED;
    const auto reports = check(fake.library(), 1);
    ASSERT_THAT(reports, SizeIs(1));
    ASSERT_THAT(reports[0].findings, SizeIs(1));
    EXPECT_EQ(reports[0].findings[0].reason, Reason::Library);
    EXPECT_THAT(reports[0].findings[0].text, HasSubstr(std::string("AGL_Symbolic_") + name));
    EXPECT_THAT(fake.freed, testing::Contains(1000));
  }
}

TEST(Checker, ABufferOfNegativeSizeIsAFinding) {
  FakePlcLibrary fake;
  fake.buffer_size = -4;
  EXPECT_EQ(check(fake.library(), 1)[0].findings[0].text, "AGL_Symbolic_GetAccessBufferSize: -4 bytes");
}

TEST(Checker, OneVariableThatBreaksAWholeJobDoesNotHideTheOthers) {
  FakePlcLibrary fake;
  fake.words[9] = "job is too large";
  fake.read = [](const std::vector<std::string>& paths, SymbolicRW_t*) {
    return std::find(paths.begin(), paths.end(), "Tag13") == paths.end() ? 0 : 9;
  };
  const auto reports = check(fake.library(), 40);
  ASSERT_THAT(reports, SizeIs(40));
  for (std::size_t i = 0; i < reports.size(); ++i) {
    EXPECT_EQ(reports[i].verdict(), i == 13 ? Verdict::Bad : Verdict::Good) << i;
  }
  EXPECT_EQ(reports[13].findings[0].text, "no access: job is too large (0x00000009)");
}

TEST(Checker, WhenNothingIsServedItIsTheConnection) {
  FakePlcLibrary fake;
  fake.words[8] = "connection to the PLC is lost";
  int jobs = 0;
  fake.read = [&jobs](const auto&, SymbolicRW_t*) { return ++jobs > 1 ? 8 : 0; };
  const auto library = fake.library();
  const PlcLink link(library, {});
  std::size_t done = 0;
  const auto some = tags(250);
  EXPECT_EQ(failure_of<LibraryFailure>(
                [&] { Checker(link).check(some, false, [&](const TagReport&) { ++done; }); }),
            "AGL_Symbolic_ReadMixEx: connection to the PLC is lost (0x00000008)");
  EXPECT_EQ(done, 100U);
  EXPECT_EQ(jobs, 4);
}

TEST(Checker, ThePlcsOwnErrorIsShown) {
  FakePlcLibrary fake;
  fake.read = [](const auto&, SymbolicRW_t* items) {
    items[0].SError = 3;
    return 0;
  };
  EXPECT_EQ(check(fake.library(), 1)[0].findings[0].text, "no access: refused by the PLC, PLC error 3");
}

TEST(Checker, EndsWhenAsked) {
  FakePlcLibrary fake;
  const auto library = fake.library();
  const PlcLink link(library, {});
  std::size_t done = 0;
  int asked = 0;
  const auto some = tags(20);
  Checker(link).check(
      some, false, [&](const TagReport&) { ++done; }, [&] { return ++asked > 5; });
  EXPECT_EQ(done, 5U);
}

TEST(Checker, PathsAreThoseOfTheDriver) {
  Tag tag;
  tag.type = find_tag_type("INT");
  tag.name = "A[2].B[3]";
  EXPECT_THAT(paths_of(tag), ElementsAre("A[2].B[3]"));
  EXPECT_EQ(array_of(tag.name), "A[2].B");
  tag.name = "A[INDEX].B";
  tag.first = 4;
  EXPECT_THAT(paths_of(tag), ElementsAre("A[4].B"));
  tag.name = "Texts";
  tag.type = find_tag_type("STRING");
  tag.elements = 2;
  EXPECT_THAT(paths_of(tag), ElementsAre("Texts[4]", "Texts[5]"));
}

}  // namespace
}  // namespace ostravel::host::check
