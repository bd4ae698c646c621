// SPDX-License-Identifier: MIT
#include "host/watch/watcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>

#include "tests/host/watch/polledworld.h"

namespace ostravel::host::watch {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

// Polls within take(), one part a call, at the time of the test.
class SteppedSource : public Source {
 public:
  SteppedSource(const PolledWorld& world, TimePoint& now)
      : now_(now), polling_(world.device(), milliseconds(500)) {}

  std::vector<News> take() override {
    std::vector<News> news;
    if (!paused) {
      polling_.step(now_, news);
    }
    return news;
  }
  void set_visible(std::vector<std::size_t> rows) override { polling_.set_visible(rows); }
  void set_interval(milliseconds interval) override {
    intervals.push_back(interval);
    polling_.set_interval(interval);
  }
  void set_paused(bool on) override { paused = on; }

  bool paused = false;
  std::vector<milliseconds> intervals;

 private:
  TimePoint& now_;
  DevicePolling polling_;
};

// Keeps what was drawn. Each key of the script comes after some quiet turns of the loop; the last one ends
// it.
class ScriptedDisplay : public Display {
 public:
  ScriptedDisplay(std::deque<Key> script, TimePoint& now) : script_(std::move(script)), now_(now) {}

  Size size() override { return screen; }
  Charset charset() const override { return Charset::Utf8; }
  void show(const std::vector<StyledLine>& lines) override {
    text.clear();
    for (const auto& line : lines) {
      text += text_of(line) + "\n";
    }
    drawn_lines += lines.size();
    ++screens;
    shown.push_back(text);
  }
  Key read_key(milliseconds timeout) override {
    constexpr int kQuietTurns = 5;
    now_ += timeout;
    if (timeout.count() == 0 || ++turns_ % kQuietTurns != 0 || script_.empty()) {
      return key::kNone;
    }
    const auto next = script_.front();
    script_.pop_front();
    return next;
  }

  Size screen{24, 80};
  std::string text;
  std::size_t drawn_lines = 0;
  std::size_t screens = 0;
  std::vector<std::string> shown;

 private:
  std::deque<Key> script_;
  TimePoint& now_;
  int turns_ = 0;
};

struct Watched {
  PolledWorld world;
  TimePoint now = kStart;
  Model model;
  SteppedSource source{world, now};
  ScriptedDisplay display;
  WatcherOptions options;

  Watched(std::size_t tags, std::deque<Key> keys)
      : world(tags), model(model_of_many(tags)), display(std::move(keys), now) {
    options.is_to_end = [] { return false; };
    options.clock = [this] { return now; };
  }
  void run() { run_watcher(model, source, display, options); }
};

TEST(Watcher, TenThousandTagsAreOnTheScreenAfterTwoBatches) {
  Watched watched(10'000, {'q'});
  watched.run();
  ASSERT_GE(watched.display.shown.size(), 3U);
  // Nothing was read yet for the first screen; the second and third each had one batch more.
  EXPECT_THAT(watched.display.shown[2], HasSubstr("T19 "));
  EXPECT_THAT(watched.display.shown[2], HasSubstr("0 ok"));
  EXPECT_THAT(watched.display.shown[2], testing::Not(HasSubstr("13 not ready")));
}

TEST(Watcher, DrawsNoMoreLinesThanTheScreenHas) {
  Watched watched(10'000, {key::kPageDown, key::kPageDown, key::kEnd, 'q'});
  watched.run();
  EXPECT_EQ(watched.display.drawn_lines, watched.display.screens * 24);
  EXPECT_LE(watched.display.screens, 25U) << "one for each turn of the loop at most";
}

TEST(Watcher, PageThatComesIntoSightIsReadInTheNextTwoBatches) {
  Watched watched(10'000, {key::kEnd, 'q'});
  watched.run();
  EXPECT_THAT(watched.display.text, HasSubstr("9,981-10,000 of 10,000"));
  EXPECT_THAT(watched.display.text, HasSubstr("T9999 "));
  EXPECT_THAT(watched.display.text, testing::Not(HasSubstr("13 not ready")));
  EXPECT_LT(watched.world.batches(), 20U);
}

TEST(Watcher, KeysChangeTheInterval) {
  Watched watched(1, {'+', '-', '-', 'q'});
  watched.run();
  EXPECT_EQ(watched.source.intervals,
            (std::vector{milliseconds(1000), milliseconds(500), milliseconds(200)}));
}

TEST(Watcher, KeyPausesPolling) {
  Watched watched(1, {'p', 'q'});
  watched.run();
  EXPECT_TRUE(watched.source.paused);
  EXPECT_THAT(watched.display.text, HasSubstr("PAUSED"));
}

TEST(Watcher, FollowsTheSizeOfTheTerminal) {
  Watched watched(100, {key::kResize, 'q'});
  watched.display.screen = {10, 60};
  watched.run();
  EXPECT_THAT(watched.display.text, HasSubstr("1-6 of 100"));
}

TEST(Watcher, EndsAfterAsManyPollsAsWanted) {
  Watched watched(40, {});
  watched.options.polls = 3;
  watched.run();
  EXPECT_EQ(watched.model.devices().front().rounds, 3U);
}

TEST(Watcher, EndsWhenItIsTold) {
  Watched watched(1, {});
  int turns = 0;
  watched.options.is_to_end = [&turns] { return ++turns > 4; };
  watched.run();
  EXPECT_EQ(turns, 5);
}

TEST(Watcher, WithoutNewsDrawsOnceASecond) {
  Watched watched(1, {'p'});
  int turns = 0;
  watched.options.is_to_end = [&turns] { return ++turns > 105; };
  watched.run();
  EXPECT_LE(watched.display.screens, 17U) << "ten seconds after the first few turns";
  EXPECT_GE(watched.display.screens, 11U);
}

}  // namespace
}  // namespace ostravel::host::watch
