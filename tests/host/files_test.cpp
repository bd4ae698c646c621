// SPDX-License-Identifier: MIT
#include "host/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>

#include "host/usererror.h"
#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

TEST(Files, NewFileIsWrittenWhole) {
  const Scratch scratch;
  write_file(scratch.path("a"), std::string("x\0y", 3), false);
  EXPECT_EQ(read_file(scratch.path("a")), std::string("x\0y", 3));
  EXPECT_EQ(scratch.files(), 1U);
}

TEST(Files, ExistingFileStaysAsItIsWithoutReplace) {
  const Scratch scratch;
  const auto path = scratch.write("a", "old");
  EXPECT_THROW(write_file(path, "new", false), UserError);
  EXPECT_EQ(scratch.read("a"), "old");
  EXPECT_EQ(scratch.files(), 1U);
  write_file(path, "new", true);
  EXPECT_EQ(scratch.read("a"), "new");
  EXPECT_EQ(scratch.files(), 1U);
}

TEST(Files, FailureLeavesNothingBehind) {
  const Scratch scratch;
  std::filesystem::create_directory(scratch.path("folder"));
  EXPECT_THROW(write_file(scratch.path("folder"), "x", true), UserError);
  EXPECT_THROW(write_file(scratch.path("none/a"), "x", true), UserError);
  EXPECT_EQ(scratch.files(), 1U);
}

using Permissions = std::filesystem::perms;

// It may hold a password.
TEST(Files, ReplacedFileKeepsItsPermissions) {
  const Scratch scratch;
  const auto path = scratch.write("a", "old");
  std::filesystem::permissions(path, Permissions::owner_read | Permissions::owner_write);
  write_file(path, "new", true);
  EXPECT_EQ(std::filesystem::status(path).permissions(), Permissions::owner_read | Permissions::owner_write);
}

TEST(Files, LinkStaysALinkAndItsFileIsReplaced) {
  const Scratch scratch;
  scratch.write("a", "old");
  std::filesystem::create_symlink("a", scratch.path("link"));
  write_file(scratch.path("link"), "new", true);
  EXPECT_TRUE(std::filesystem::is_symlink(scratch.path("link")));
  EXPECT_EQ(scratch.read("a"), "new");
}

TEST(Files, WhatIsNoRegularFileIsNotReplaced) {
  const Scratch scratch;
  ASSERT_EQ(mkfifo(scratch.path("fifo").c_str(), 0600), 0);
  EXPECT_THROW(write_file(scratch.path("fifo"), "x", true), UserError);
  EXPECT_TRUE(std::filesystem::is_fifo(scratch.path("fifo")));
}

TEST(Files, OutputThatDoesNotArriveIsReported) {
  std::FILE* full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  std::fputs("lost", full);
  EXPECT_THROW(finish_output(full), UserError);
  std::fclose(full);
}

TEST(Files, WhatCannotBeReadIsNamed) {
  const Scratch scratch;
  EXPECT_THROW(read_file(scratch.path("none")), UserError);
  EXPECT_THROW(read_file(scratch.folder()), UserError);
}

}  // namespace
}  // namespace ostravel::host
