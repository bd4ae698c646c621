// SPDX-License-Identifier: MIT
// However watch ends, the terminal is given back as it was, and what there was to say is said.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "tests/host/watch/watchonterminal.h"

namespace ostravel::host::watch {
namespace {

using testing::HasSubstr;

// With a driver that goes wrong in that way soon after the start.
struct FaultyWatch : WatchOnTerminal {
  explicit FaultyWatch(const std::string& fault, const std::string& count = "0") : WatchOnTerminal(2, 2) {
    driver = FAULTY_DRIVER_PATH;
    environment.push_back("FAULT=" + fault);
    start({"--interval", "50", "--count", count});
  }
};

TEST(WatchEnd, KeyGivesTheTerminalBack) {
  WatchOnTerminal watch(2, 2);
  auto& program = watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  EXPECT_FALSE(watch.is_given_back());
  program.type("q");
  EXPECT_EQ(program.wait(), 0);
  EXPECT_TRUE(watch.is_given_back());
}

TEST(WatchEnd, ControlCAndSignalsGiveTheTerminalBack) {
  for (const int signal : {0, SIGINT, SIGTERM, SIGHUP}) {
    WatchOnTerminal watch(2, 2);
    auto& program = watch.start();
    ASSERT_TRUE(watch.wait_for("0 ok"));
    if (signal == 0) {
      program.type("\x03");
    } else {
      program.kill(signal);
    }
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(watch.is_given_back()) << signal;
  }
}

TEST(WatchEnd, CountGivesTheTerminalBack) {
  WatchOnTerminal watch(2, 2);
  auto& program = watch.start({"--count", "2", "--interval", "1"});
  EXPECT_EQ(program.wait(), 0);
  EXPECT_TRUE(watch.is_given_back());
}

TEST(WatchEnd, DeviceThatNeverAnsweredIsSaidAfterwards) {
  WatchOnTerminal watch(2, 2);
  watch.environment.emplace_back("FAKE_DRIVER_NOT_READY=1000000");
  auto& program = watch.start();
  ASSERT_TRUE(watch.wait_for("13 not ready"));
  program.type("q");
  EXPECT_EQ(program.wait(), 4);
  EXPECT_TRUE(watch.is_given_back());
  EXPECT_THAT(program.terminal().text(), HasSubstr("no answer from 127.0.0.1 (connecting)"));
}

TEST(WatchEnd, AbortOfTheDriverGivesTheTerminalBack) {
  FaultyWatch watch("abort");
  EXPECT_EQ(watch.program->wait(), 128 + SIGABRT);
  EXPECT_TRUE(watch.is_given_back());
}

TEST(WatchEnd, FaultOfTheDriverGivesTheTerminalBack) {
  FaultyWatch watch("segv");
  EXPECT_EQ(watch.program->wait(), 128 + SIGSEGV);
  EXPECT_TRUE(watch.is_given_back());
}

TEST(WatchEnd, ExitOfTheDriverGivesTheTerminalBack) {
  FaultyWatch watch("exit");
  EXPECT_EQ(watch.program->wait(), 42);
  EXPECT_TRUE(watch.is_given_back());
}

TEST(WatchEnd, ExceptionOfTheDriverIsSaidAfterwards) {
  FaultyWatch watch("throw");
  EXPECT_EQ(watch.program->wait(), 2);
  EXPECT_TRUE(watch.is_given_back());
  EXPECT_THAT(watch.program->terminal().text(), HasSubstr("ostravel-host: an index of the driver\n"));
}

TEST(WatchEnd, LinesOnStandardErrorWaitUntilTheTableIsGone) {
  FaultyWatch watch("print", "5");
  EXPECT_EQ(watch.program->wait(), 0);
  const auto& written = watch.program->written();
  const auto gone = written.find("\033[?1049l");
  ASSERT_NE(gone, std::string::npos);
  EXPECT_LT(gone, written.find("a warning of the driver"));
  EXPECT_THAT(watch.program->terminal().text(), HasSubstr("a warning of the driver\n"));
}

TEST(WatchEnd, DriverThatHangsHoldsNobodyUp) {
  FaultyWatch watch("hang");
  ASSERT_TRUE(watch.wait_for(" 2s ")) << "values grow old, keys still work";
  watch.program->type("q");
  EXPECT_TRUE(
      watch.program->wait_until([&watch](const picture::Terminal&) { return watch.is_given_back(); }));
  std::optional<int> ended;
  for (int i = 0; i < 100 && !ended; ++i) {
    watch.program->kill(SIGINT);
    ended = watch.program->wait(std::chrono::milliseconds(200));
  }
  EXPECT_EQ(ended, 128 + SIGINT);
}

}  // namespace
}  // namespace ostravel::host::watch
