// SPDX-License-Identifier: MIT
#include "host/record/recordfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "host/usererror.h"
#include "tests/host/scratch.h"

namespace ostravel::host::record {
namespace {

using testing::HasSubstr;

template <class Action>
std::string error_of(Action&& action) {
  try {
    action();
  } catch (const UserError& error) {
    return error.what();
  }
  return "nothing was thrown";
}

// No file of this process may grow beyond a size.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) : old_action_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    rlimit limit = old_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;
  ~SizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, old_action_);
  }

 private:
  rlimit old_{};
  void (*old_action_)(int);
};

TEST(RecordFile, RowsAreThereAtOnce) {
  const Scratch scratch;
  RecordFile file(scratch.path("a.csv"), Existing::Refuse, "time,A\n");
  EXPECT_EQ(scratch.read("a.csv"), "time,A\n");
  file.write("1,2\n");
  EXPECT_EQ(scratch.read("a.csv"), "time,A\n1,2\n");
}

TEST(RecordFile, IsNotReplacedUnasked) {
  const Scratch scratch;
  const auto path = scratch.write("a.csv", "mine");
  EXPECT_EQ(error_of([&] { RecordFile(path, Existing::Refuse, "time\n"); }),
            path + ": exists already; give --append to go on with it, or --force to replace it");
  EXPECT_EQ(scratch.read("a.csv"), "mine");
  RecordFile(path, Existing::Replace, "time\n");
  EXPECT_EQ(scratch.read("a.csv"), "time\n");
}

TEST(RecordFile, AppendsToItsLike) {
  const Scratch scratch;
  const auto path = scratch.write("a.csv", "time,A\n1,\"two\nlines\"\n");
  RecordFile file(path, Existing::Append, "time,A\n");
  EXPECT_TRUE(file.resumed());
  EXPECT_EQ(file.cut_off(), 0U);
  file.write("2,3\n");
  EXPECT_EQ(scratch.read("a.csv"), "time,A\n1,\"two\nlines\"\n2,3\n");
}

TEST(RecordFile, AppendsToNothing) {
  const Scratch scratch;
  const RecordFile fresh(scratch.path("a.csv"), Existing::Append, "time,A\n");
  EXPECT_FALSE(fresh.resumed());
  EXPECT_EQ(scratch.read("a.csv"), "time,A\n");
}

TEST(RecordFile, RefusesToAppendToOtherColumns) {
  const Scratch scratch;
  const auto path = scratch.write("a.csv", "time,B\n1,2\n");
  EXPECT_THAT(error_of([&] { RecordFile(path, Existing::Append, "time,A\n"); }),
              HasSubstr("has other columns"));
  EXPECT_EQ(scratch.read("a.csv"), "time,B\n1,2\n");
}

TEST(RecordFile, HalfARowIsCutOff) {
  const Scratch scratch;
  const auto path = scratch.write("a.csv", "time,A\n1,2\n2,\"a\nb");
  const RecordFile file(path, Existing::Append, "time,A\n");
  EXPECT_EQ(file.cut_off(), 6U);
  EXPECT_EQ(scratch.read("a.csv"), "time,A\n1,2\n");
}

TEST(RecordFile, ARowThatDoesNotFitLeavesNothingOfItself) {
  const Scratch scratch;
  RecordFile file(scratch.path("a.csv"), Existing::Refuse, "time,A\n");
  const SizeLimit limit(12);
  EXPECT_EQ(error_of([&] { file.write("1,23456\n"); }),
            scratch.path("a.csv") + ": cannot be written: File too large");
  EXPECT_EQ(scratch.read("a.csv"), "time,A\n");
}

TEST(RecordFile, WhatCannotBeOpenedIsNamed) {
  EXPECT_EQ(error_of([] { RecordFile("/nowhere/a.csv", Existing::Refuse, ""); }),
            "/nowhere/a.csv: cannot be written: No such file or directory");
}

}  // namespace
}  // namespace ostravel::host::record
