// SPDX-License-Identifier: MIT
#include "host/files.h"

#include <gtest/gtest.h>

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

TEST(Files, WhatCannotBeReadIsNamed) {
  const Scratch scratch;
  EXPECT_THROW(read_file(scratch.path("none")), UserError);
  EXPECT_THROW(read_file(scratch.folder()), UserError);
}

}  // namespace
}  // namespace ostravel::host
