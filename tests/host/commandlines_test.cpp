// SPDX-License-Identifier: MIT
// The tools as a user has them: arguments in, text and exit code out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/process.h"
#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct Result {
  int code = 0;
  std::string out;
  std::string error;
};

Result run(const std::string& program, std::vector<std::string> arguments) {
  const Scratch scratch;
  const auto error_file = scratch.path("stderr");
  std::vector<std::string> words{"-c", "exec \"$0\" \"$@\" 2>" + error_file, program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  Process process("/bin/sh", words);
  process.close_input();
  Result result;
  result.out = process.read_all();
  result.code = process.wait();
  result.error = scratch.read("stderr");
  return result;
}

Result tags(std::vector<std::string> arguments) {
  return run(TAGS_PATH, std::move(arguments));
}
Result host(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"--driver", FAKE_DRIVER_PATH});
  return run(HOST_PATH, std::move(arguments));
}

constexpr const char* kList = "name,type,count,first,elements,device,id\nLevel,INT,1,,1,1,1\n";

// A scratch folder with a project of the one tag that the fake driver has no data for.
struct Packed : Scratch {
  std::string project = path("a.project");
  Packed() { tags({"pack", write("a.csv", kList), project}); }
};

TEST(CommandLines, NegativeNumberIsNotTakenForAHugeOne) {
  const Packed packed;
  for (const std::vector<std::string>& words : {std::vector<std::string>{"watch", "--plain", "--count", "-1"},
                                                {"record", "-", "--count", "-1"},
                                                {"plot", "--live", "Level", "--count", "-1"},
                                                {"browse", "--depth", "-2"}}) {
    auto arguments = words;
    arguments.insert(arguments.begin(), {"--project", packed.project});
    const auto result = host(arguments);
    EXPECT_EQ(result.code, 2) << words.front();
    EXPECT_THAT(result.error, HasSubstr("is negative; give 0 or more")) << words.front();
  }
}

TEST(CommandLines, WatchEndsWithItsReader) {
  const Packed packed;
  const auto result = run("/bin/sh", {"-c",
                                      "(timeout 20 \"$0\" --driver \"$1\" --project \"$2\" watch --plain "
                                      "--interval 20; echo \"ended $?\" >&2) | head -1",
                                      HOST_PATH, FAKE_DRIVER_PATH, packed.project});
  EXPECT_EQ(result.out, "# online\n");
  EXPECT_THAT(result.error, AllOf(HasSubstr("ended"), Not(HasSubstr("ended 124"))));
}

TEST(CommandLines, HelpThatCannotBeWrittenIsNoSuccess) {
  EXPECT_EQ(run("/bin/sh", {"-c", "exec \"$0\" --help >/dev/full", TAGS_PATH}).code, 2);
}

TEST(OstravelTags, PacksAndDumps) {
  const Scratch scratch;
  const auto list = scratch.write("a.csv", kList);
  const auto packed = tags({"pack", list, scratch.path("a.project"), "--password", "x", "--char-paired"});
  EXPECT_EQ(packed.code, 0);
  EXPECT_EQ(packed.out, scratch.path("a.project") + ": 1 tag, with password, strings char-paired\n");
  const auto dumped = tags({"dump", scratch.path("a.project")});
  EXPECT_EQ(dumped.code, 0);
  EXPECT_EQ(dumped.out, std::string("# password: x\n# strings: char-paired\n") + kList);
}

TEST(OstravelTags, DoesNotReplaceAFileUnlessForced) {
  const Scratch scratch;
  const auto list = scratch.write("a.csv", kList);
  const auto old = scratch.write("a.project", "mine");
  const auto refused = tags({"pack", list, old});
  EXPECT_EQ(refused.code, 2);
  EXPECT_EQ(refused.error, "ostravel-tags: " + old + ": exists already; give --force to replace it\n");
  EXPECT_EQ(scratch.read("a.project"), "mine");
  EXPECT_EQ(tags({"pack", list, old, "--force"}).code, 0);
  EXPECT_NE(scratch.read("a.project"), "mine");
}

TEST(OstravelTags, BadListIsOneLineAndLeavesNoFile) {
  const Scratch scratch;
  const auto list = scratch.write("a.csv", std::string(kList) + "B,INT,zero,,1,1,2\n");
  const auto result = tags({"pack", list, scratch.path("a.project")});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.error,
            "ostravel-tags: " + list + ":3:7: count 'zero' is no whole number from 1 to 65535\n");
  EXPECT_EQ(scratch.files(), 1U);
}

TEST(OstravelTags, WrongCommandLineIsOneLine) {
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{}, {"pack"}, {"pack", "a"}, {"other"}}) {
    const auto result = tags(arguments);
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.error, StartsWith("ostravel-tags: "));
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1);
  }
  EXPECT_EQ(tags({"--help"}).code, 0);
}

TEST(OstravelHost, DescribesTheDriver) {
  const auto result = host({"describe"});
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, StartsWith("Fake 1.07, driver 42\n"));
  EXPECT_THAT(result.out, HasSubstr("INT   195   word    9             256       1\n"));
}

TEST(OstravelHost, TagWithoutDataIsShownWithItsStatus) {
  const Packed packed;
  const auto result = host({"--project", packed.project, "read"});
  EXPECT_EQ(result.out, "Level: 2/5 no data\n");
  EXPECT_EQ(result.code, 1);
}

TEST(OstravelHost, LinesOfTheDriverGoWhereTheyAreWanted) {
  const Packed packed;
  const auto log = packed.path("driver.txt");
  const auto to_file = host({"--project", packed.project, "--driver-output", log, "read", "Level"});
  EXPECT_EQ(to_file.out, "Level: 2/5 no data\n");
  EXPECT_EQ(packed.read("driver.txt"), "a line of the driver\n");
  const auto shown = host({"--project", packed.project, "--driver-output", "-", "read", "Level"});
  EXPECT_THAT(shown.out, HasSubstr("a line of the driver\n"));
}

TEST(OstravelHost, WatchPrintsWhatChanges) {
  const Packed packed;
  const auto result = host({"--project", packed.project, "watch", "--interval", "1", "--count", "3"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "# online\nLevel = - (2/5 no data)\n");
}

TEST(OstravelHost, MistakesAreOneLineAndACode) {
  const Packed packed;
  const std::vector<std::pair<std::vector<std::string>, std::string>> mistakes{
      {{"--project", packed.project, "read", "None"},
       "None: the project has no tag of that name; see: ostravel-tags dump " + packed.project},
      {{"--project", packed.project, "write", "Level"}, "'Level' is no assignment; write NAME=VALUE"},
      {{"--project", packed.project, "write", "Level=70000"},
       "Level: 70000 does not fit INT (-32768 to 32767)"},
      {{"--project", packed.project, "--address", "plc", "read"},
       "address 'plc' is no IPv4 address; write it like 192.168.0.1"},
      {{"read"}, "--project FILE is required; make one with ostravel-tags pack"},
      {{"--project", packed.path("none"), "read"},
       packed.path("none") + ": cannot be read: No such file or directory"},
  };
  for (const auto& [arguments, line] : mistakes) {
    const auto result = host(arguments);
    EXPECT_EQ(result.code, 2) << line;
    EXPECT_EQ(result.error, "ostravel-host: " + line + "\n");
  }
}

TEST(OstravelHost, MissingDriverHasACodeOfItsOwn) {
  const auto result = run(HOST_PATH, {"--driver", "/nowhere/libnone.so", "describe"});
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.error, StartsWith("ostravel-host: /nowhere/libnone.so: cannot be loaded"));
}

}  // namespace
}  // namespace ostravel::host
