// SPDX-License-Identifier: MIT
// ostravel-host tag-names, which shell completion calls.
#include <gtest/gtest.h>

#include "tests/host/reference/program.h"

namespace {

constexpr const char* kList =
    "name,type,count,first,elements,device,id\n"
    "Line.Speed,INT,1,,1,1,1\n"
    "\"Line.\"\"Tank 1\"\".Level\",REAL,1,,1,1,2\n"
    "Plant.Name,STRING,20,,1,1,3\n";

struct Packed : Scratch {
  std::string project = path("line.project");
  Packed() { run_program(TAGS_PATH, {"pack", write("line.csv", kList), project}); }
};

TEST(TagNamesCommand, GivesNamesThatBeginSoWithoutADriver) {
  const Packed packed;
  const auto all =
      run_program(HOST_PATH, {"--driver", "/nowhere.so", "--project", packed.project, "tag-names"});
  EXPECT_EQ(all.out, "Line.Speed\nLine.\"Tank 1\".Level\nPlant.Name\n");
  EXPECT_EQ(all.code, 0);
  EXPECT_EQ(run_program(HOST_PATH, {"--project", packed.project, "tag-names", "--", "Line."}).out,
            "Line.Speed\nLine.\"Tank 1\".Level\n");
  EXPECT_EQ(run_program(HOST_PATH, {"--project", packed.project, "tag-names", "--", "Other"}).out, "");
}

TEST(TagNamesCommand, IsNotShownInTheHelp) {
  EXPECT_EQ(run_program(HOST_PATH, {"--help"}).out.find("tag-names"), std::string::npos);
}

TEST(TagNamesCommand, MissingProjectIsALineAndACode) {
  const auto result = run_program(HOST_PATH, {"--project", "/nowhere.project", "tag-names"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.error, "ostravel-host: /nowhere.project: cannot be read: No such file or directory\n");
}

}  // namespace
