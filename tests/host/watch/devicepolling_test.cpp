// SPDX-License-Identifier: MIT
#include "host/watch/devicepolling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/polledworld.h"

namespace ostravel::host::watch {
namespace {

using std::chrono::milliseconds;

std::vector<Reading> readings_of(const std::vector<News>& news) {
  std::vector<Reading> readings;
  for (const auto& one : news) {
    if (const auto* reading = std::get_if<Reading>(&one.what)) {
      readings.push_back(*reading);
    }
  }
  return readings;
}

template <typename What>
const What* last_of(const std::vector<News>& news) {
  const What* last = nullptr;
  for (const auto& one : news) {
    const auto* what = std::get_if<What>(&one.what);
    last = what != nullptr ? what : last;
  }
  return last;
}

TEST(DevicePolling, StepIsOnePartAndTellsItsTags) {
  const PolledWorld world(70);
  DevicePolling polling(world.device(), milliseconds(500));
  std::vector<News> news;
  EXPECT_TRUE(polling.step(at(0), news));
  EXPECT_EQ(world.batches(), 1U);
  const auto readings = readings_of(news);
  ASSERT_EQ(readings.size(), 31U);
  EXPECT_EQ(readings[30].row, 30U);
  EXPECT_EQ(readings[30].value, 30);
  EXPECT_TRUE(polling.step(at(0), news));
  EXPECT_TRUE(polling.step(at(0), news));
  EXPECT_FALSE(polling.step(at(0), news));
  EXPECT_EQ(readings_of(news).back().row, 69U);
  EXPECT_EQ(last_of<StateReport>(news)->state.rounds, 1U);
}

TEST(DevicePolling, TagsOnTheScreenAreReadFirst) {
  const PolledWorld world(10'000);
  DevicePolling polling(world.device(), milliseconds(500));
  std::vector<std::size_t> visible;
  for (std::size_t row = 9000; row < 9020; ++row) {
    visible.push_back(row);
  }
  polling.set_visible(visible);
  std::vector<News> news;
  polling.step(at(0), news);
  polling.step(at(0), news);
  EXPECT_EQ(world.batches(), 2U) << "twenty rows lie in two parts at most";
  std::size_t found = 0;
  for (const auto& reading : readings_of(news)) {
    found += reading.row >= 9000 && reading.row < 9020 ? 1 : 0;
  }
  EXPECT_EQ(found, 20U);
}

TEST(DevicePolling, UnansweredPartIsAskedForAgainBeforeAnyOther) {
  const PolledWorld world(70);
  DevicePolling polling(world.device(), milliseconds(500));
  std::vector<News> news;
  world.fake().not_ready = 1;
  EXPECT_TRUE(polling.step(at(0), news));
  EXPECT_EQ(last_of<StateReport>(news)->state.link, LinkState::Connecting);
  EXPECT_EQ(last_of<Trouble>(news)->error, 13);
  polling.set_visible({69});
  EXPECT_TRUE(polling.step(at(0), news));
  EXPECT_EQ(readings_of(news).front().row, 0U);
}

TEST(DevicePolling, LostConnectionIsToldOnceAndCountedWhenItIsBack) {
  const PolledWorld world(70);
  DevicePolling polling(world.device(), milliseconds(500));
  std::vector<News> news;
  polling.step(at(0), news);
  news.clear();
  world.fake().lost = true;
  EXPECT_TRUE(polling.step(at(0), news));
  EXPECT_EQ(last_of<StateReport>(news)->state.link, LinkState::Lost) << "although this part was never read";
  EXPECT_EQ(last_of<Trouble>(news)->error, 2);
  news.clear();
  EXPECT_FALSE(polling.step(at(0.01), news)) << "a pause first";
  EXPECT_EQ(polling.due(), at(0.05));
  polling.step(at(1), news);
  EXPECT_EQ(last_of<StateReport>(news)->state.link, LinkState::Failed);
  EXPECT_EQ(last_of<StateReport>(news)->state.attempts, 1U);
  polling.step(at(2), news);
  const auto& state = last_of<StateReport>(news)->state;
  EXPECT_EQ(state.link, LinkState::Online);
  EXPECT_EQ(state.recoveries, 1U);
  EXPECT_EQ(state.attempts, 0U);
  EXPECT_TRUE(state.served);
}

TEST(DevicePolling, FirstConnectionIsNoRecovery) {
  const PolledWorld world(1);
  DevicePolling polling(world.device(), milliseconds(500));
  std::vector<News> news;
  world.fake().loading = 2;
  polling.step(at(0), news);
  EXPECT_EQ(last_of<StateReport>(news)->state.link, LinkState::Loading);
  polling.step(at(1), news);
  polling.step(at(2), news);
  EXPECT_EQ(last_of<StateReport>(news)->state.link, LinkState::Online);
  EXPECT_EQ(last_of<StateReport>(news)->state.recoveries, 0U);
}

TEST(DevicePolling, TagWithoutDataHasItsStatus) {
  const PolledWorld world(2);
  world.fake().words.erase(1);
  DevicePolling polling(world.device(), milliseconds(500));
  std::vector<News> news;
  polling.step(at(0), news);
  EXPECT_EQ(readings_of(news)[0].error, 0);
  EXPECT_EQ(readings_of(news)[1].error, 2);
  EXPECT_EQ(readings_of(news)[1].value, nullptr);
}

TEST(DevicePolling, RowsOfOtherDevicesOnTheScreenDoNotMatter) {
  const PolledWorld world(5);
  DevicePolling polling(world.device(), milliseconds(500));
  polling.set_visible({77, 3});
  std::vector<News> news;
  EXPECT_TRUE(polling.step(at(0), news));
  EXPECT_FALSE(polling.step(at(0), news));
}

}  // namespace
}  // namespace ostravel::host::watch
