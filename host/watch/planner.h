// SPDX-License-Identifier: MIT
// Which part of a device's tags is polled next. Tags are polled in parts of a few batches, so that what is on
// the screen comes first and a change of page is answered at once, however many tags there are.
//
// At every interval the parts on the screen are polled, then the others one after the other. A round ends
// when each part was polled; when that takes longer than the interval, those on the screen come in between.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "host/watch/model.h"

namespace ostravel::host::watch {

class Planner {
 public:
  Planner(std::size_t parts, std::chrono::milliseconds interval);

  // Parts that come into sight are polled at once, unless they were within this interval.
  void set_visible(std::vector<std::size_t> parts);
  void set_interval(std::chrono::milliseconds interval);

  // The part to poll now, which then counts as polled; nothing when none is due.
  std::optional<std::size_t> next(TimePoint now);
  // When to ask again after nothing.
  TimePoint due() const { return tick_; }

  std::uint64_t rounds() const { return rounds_; }
  std::chrono::microseconds round_time() const { return round_time_; }  // of the last whole round

 private:
  void start_tick(TimePoint now);
  std::size_t poll(std::size_t part);

  std::size_t parts_;
  std::chrono::milliseconds interval_;
  std::vector<std::size_t> visible_;
  std::deque<std::size_t> first_;  // visible parts that are still to be polled
  std::vector<bool> polled_;       // in this round
  std::vector<bool> fresh_;        // polled since the last interval began
  std::size_t position_;           // of the round; at parts_ it is over
  bool round_open_ = false;
  TimePoint round_start_{};
  TimePoint tick_{};
  std::uint64_t rounds_ = 0;
  std::chrono::microseconds round_time_{0};
};

}  // namespace ostravel::host::watch
