// SPDX-License-Identifier: MIT
#include "host/watch/devicepolling.h"

#include <algorithm>
#include <set>

namespace ostravel::host::watch {

DevicePolling::DevicePolling(PolledDevice device, std::chrono::milliseconds interval)
    : device_(device.device),
      state_(std::move(device.state)),
      rows_(std::move(device.rows)),
      planner_((device.selections.size() + kPartTags - 1) / kPartTags, interval) {
  auto& selections = device.selections;
  for (std::size_t from = 0; from < selections.size(); from += kPartTags) {
    const auto to = std::min(from + kPartTags, selections.size());
    parts_.emplace_back(*device.session,
                        std::vector<Selection>(selections.begin() + static_cast<std::ptrdiff_t>(from),
                                               selections.begin() + static_cast<std::ptrdiff_t>(to)),
                        device.char_paired);
  }
}

void DevicePolling::set_visible(const std::vector<std::size_t>& rows) {
  std::vector<std::size_t> parts;
  std::set<std::size_t> known;
  for (const auto row : rows) {
    // Rows of the model ascend, since it has the tags in the order of the devices.
    const auto found = std::lower_bound(rows_.begin(), rows_.end(), row);
    if (found != rows_.end() && *found == row) {
      const auto part = static_cast<std::size_t>(found - rows_.begin()) / kPartTags;
      if (known.insert(part).second) {
        parts.push_back(part);
      }
    }
  }
  planner_.set_visible(std::move(parts));
}

TimePoint DevicePolling::due() const {
  return unanswered_ ? not_before_ : planner_.due();
}

bool DevicePolling::step(TimePoint now, std::vector<News>& news) {
  if (unanswered_ && now < not_before_) {
    return false;
  }
  const auto rounds = planner_.rounds();
  const auto part = unanswered_ ? unanswered_ : planner_.next(now);
  if (!part) {
    if (planner_.rounds() != rounds) {
      state_.rounds = planner_.rounds();
      ++state_.polls;
      state_.round_time = planner_.round_time();
      report_state(now, news);
    }
    return false;
  }
  const auto link = parts_[*part].poll();
  if (link == LinkState::Online) {
    served(*part, now, news);
  } else {
    not_served(*part, link, now, news);
  }
  return true;
}

void DevicePolling::served(std::size_t part, TimePoint now, std::vector<News>& news) {
  unanswered_.reset();
  if (state_.link != LinkState::Online) {
    state_.recoveries += state_.served ? 1 : 0;
    state_.attempts = 0;
    state_.link = LinkState::Online;
    state_.served = true;
    last_error_ = 0;
    report_state(now, news);
  }
  const auto& poller = parts_[part];
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    Reading reading{rows_[part * kPartTags + i], state.error, state.status, {}};
    if (state.error == 0) {
      reading.value = state.value;
    }
    news.push_back({std::move(reading), now});
  }
}

void DevicePolling::not_served(std::size_t part, LinkState link, TimePoint now, std::vector<News>& news) {
  unanswered_ = part;
  not_before_ = now + parts_[part].pause();
  ++state_.polls;
  state_.attempts += link == LinkState::Failed ? 1 : 0;
  // A part that was never polled before takes the loss of the connection for the loading of symbols.
  const bool lost =
      link == LinkState::Loading && (state_.link == LinkState::Online || state_.link == LinkState::Lost);
  const auto before = state_.link;
  state_.link = lost ? LinkState::Lost : link;
  const auto& answer = parts_[part].state(0);
  if (before != state_.link || last_error_ != answer.error) {
    last_error_ = answer.error;
    news.push_back({Trouble{device_, answer.error, answer.status}, now});
  }
  report_state(now, news);
}

void DevicePolling::report_state(TimePoint now, std::vector<News>& news) const {
  news.push_back({StateReport{device_, state_}, now});
}

}  // namespace ostravel::host::watch
