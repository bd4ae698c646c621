// SPDX-License-Identifier: MIT
// The library's fixed place in the project folder. Runs in a private mount namespace, and nowhere else.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "aglink/AGLink40.h"
#include "tests/aglink/hooks.h"
#include "tests/aglink/world.h"

using Lines = std::vector<std::string>;

namespace {

bool mountIsPrivate() {
  std::ifstream mounts("/proc/self/mounts");
  for (std::string line; std::getline(mounts, line);) {
    if (line.starts_with("tmpfs /mnt ") || line.starts_with("tmpfs /mnt/project ")) return true;
  }
  return false;
}

class ProjectFolderTest : public NoLibraryTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(mountIsPrivate()) << "start this test with scripts/private-project";
    NoLibraryTest::SetUp();
    ASSERT_FALSE(HasFatalFailure());
    const std::filesystem::path library = kLibraryInProject;
    std::filesystem::create_directories(library.parent_path());
    std::filesystem::copy_file(COMPLETE_LIBRARY, library);
  }
  void TearDown() override {
    NoLibraryTest::TearDown();
    if (mountIsPrivate()) std::filesystem::remove(kLibraryInProject);
  }
};

}  // namespace

TEST_F(ProjectFolderTest, IsTriedAfterTheSearchPath) {
  const Recording recording;
  EXPECT_EQ(linesPrintedBy([] { EXPECT_EQ(LoadDll(), 1); }), (Lines{kBanner, kHalfWay}));
  EXPECT_EQ(recording.eventsOf("dlopen"), (Lines{kLibraryName, kLibraryInProject}));
  EXPECT_EQ(unloadAll(kLibraryInProject), 1);
}

TEST_F(ProjectFolderTest, AnswersTheFirstCall) {
  linesPrintedBy([] { EXPECT_NE(AGL_GetOptions(), AGL40_LIB_NOT_LOADED); });
  EXPECT_EQ(linesPrintedBy([] { EXPECT_NE(AGL_GetOptions(), AGL40_LIB_NOT_LOADED); }), Lines{});
}

TEST_F(ProjectFolderTest, IsNotTriedByLoadDllByPath) {
  EXPECT_EQ(linesPrintedBy([] { EXPECT_EQ(LoadDllByPath("libAGLink40_x64.so"), -1); }), Lines{});
}
