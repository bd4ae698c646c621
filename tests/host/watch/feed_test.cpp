// SPDX-License-Identifier: MIT
#include "host/watch/feed.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "tests/host/watch/polledworld.h"

namespace ostravel::host::watch {
namespace {

using std::chrono::milliseconds;

// Takes news until there is one of the kind that is wanted.
template <typename Wanted>
bool comes(Feed& feed, Wanted wanted) {
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (std::chrono::steady_clock::now() < until) {
    for (const auto& news : feed.take()) {
      if (wanted(news)) {
        return true;
      }
    }
    std::this_thread::sleep_for(milliseconds(1));
  }
  return false;
}

std::vector<PolledDevice> one(PolledDevice device) {
  std::vector<PolledDevice> devices;
  devices.push_back(std::move(device));
  return devices;
}

bool is_round(const News& news) {
  const auto* report = std::get_if<StateReport>(&news.what);
  return report != nullptr && report->state.rounds > 0;
}

TEST(Feed, BringsWhatItsThreadPolls) {
  const PolledWorld world(100);
  Feed feed(one(world.device()), milliseconds(1));
  EXPECT_TRUE(comes(feed, [](const News& news) {
    const auto* reading = std::get_if<Reading>(&news.what);
    return reading != nullptr && reading->row == 99 && reading->value == 99;
  }));
}

TEST(Feed, GoesOnRoundAfterRound) {
  const PolledWorld world(1);
  Feed feed(one(world.device()), milliseconds(1));
  EXPECT_TRUE(comes(feed, [](const News& news) {
    const auto* report = std::get_if<StateReport>(&news.what);
    return report != nullptr && report->state.rounds >= 3;
  }));
}

TEST(Feed, ShorterIntervalWakesIt) {
  const PolledWorld world(1);
  Feed feed(one(world.device()), std::chrono::hours(1));
  ASSERT_TRUE(comes(feed, is_round));
  feed.set_interval(milliseconds(1));
  EXPECT_TRUE(comes(feed, is_round));
}

TEST(Feed, PauseIsToldWhenItIsOver) {
  const PolledWorld world(1);
  Feed feed(one(world.device()), milliseconds(1));
  feed.set_paused(true);
  feed.set_paused(true);
  feed.set_paused(false);
  EXPECT_TRUE(comes(feed, [](const News& news) { return std::holds_alternative<PauseReport>(news.what); }));
  EXPECT_TRUE(comes(feed, [](const News& news) { return std::holds_alternative<Reading>(news.what); }));
}

TEST(Feed, ExceptionOfTheDriverArrivesWhereNewsAreTaken) {
  setenv("FAULT", "throw", 1);
  const DriverLibrary driver(FAULTY_DRIVER_PATH);
  const PolledWorld world(1);
  Session session(driver, world.settings);
  auto device = world.device();
  device.session = &session;
  Feed feed(one(std::move(device)), milliseconds(1));
  EXPECT_THROW(comes(feed, [](const News&) { return false; }), std::out_of_range);
}

TEST(Feed, SignalsAreLeftToTheThreadWithTheTerminal) {
  const PolledWorld world(1);
  sigset_t before;
  pthread_sigmask(SIG_SETMASK, nullptr, &before);
  const Feed feed(one(world.device()), milliseconds(1));
  sigset_t after;
  pthread_sigmask(SIG_SETMASK, nullptr, &after);
  EXPECT_EQ(sigismember(&before, SIGINT), sigismember(&after, SIGINT)) << "the caller's mask is as it was";
}

}  // namespace
}  // namespace ostravel::host::watch
