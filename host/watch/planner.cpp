// SPDX-License-Identifier: MIT
#include "host/watch/planner.h"

#include <algorithm>

namespace ostravel::host::watch {

Planner::Planner(std::size_t parts, std::chrono::milliseconds interval)
    : parts_(parts), interval_(interval), polled_(parts), fresh_(parts), position_(parts) {}

void Planner::set_visible(std::vector<std::size_t> parts) {
  std::deque<std::size_t> first;
  for (const auto part : parts) {
    const bool seen_before = std::find(visible_.begin(), visible_.end(), part) != visible_.end();
    const bool waits = std::find(first_.begin(), first_.end(), part) != first_.end();
    if ((!seen_before && !fresh_[part]) || waits) {
      first.push_back(part);
    }
  }
  first_ = std::move(first);
  visible_ = std::move(parts);
}

void Planner::set_interval(std::chrono::milliseconds interval) {
  if (tick_ != TimePoint{}) {
    tick_ += interval - interval_;
  }
  interval_ = interval;
}

void Planner::start_tick(TimePoint now) {
  // From now on, since an interval that was missed is not made up for.
  tick_ = now + interval_;
  fresh_.assign(parts_, false);
  first_.assign(visible_.begin(), visible_.end());
  if (!round_open_) {
    polled_.assign(parts_, false);
    position_ = 0;
    round_open_ = true;
    round_start_ = now;
  }
}

std::size_t Planner::poll(std::size_t part) {
  polled_[part] = true;
  fresh_[part] = true;
  return part;
}

std::optional<std::size_t> Planner::next(TimePoint now) {
  if (now >= tick_) {
    start_tick(now);
  }
  if (!first_.empty()) {
    const auto part = first_.front();
    first_.pop_front();
    return poll(part);
  }
  while (position_ < parts_ && polled_[position_]) {
    ++position_;
  }
  if (position_ < parts_) {
    return poll(position_);
  }
  if (round_open_) {
    round_open_ = false;
    ++rounds_;
    round_time_ = std::chrono::duration_cast<std::chrono::microseconds>(now - round_start_);
  }
  return std::nullopt;
}

}  // namespace ostravel::host::watch
