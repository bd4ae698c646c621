// SPDX-License-Identifier: MIT
// Polls the tags of one device part by part and reports what came of it.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

#include "host/poller.h"
#include "host/watch/model.h"
#include "host/watch/planner.h"

namespace ostravel::host::watch {

// The device's answer for all its tags.
struct Trouble {
  std::size_t device = 0;
  BYTE error = 0;
  BYTE status = 0;
};
struct StateReport {
  std::size_t device = 0;
  DeviceState state;
};
struct PauseReport {};
// NOLINTNEXTLINE(bugprone-exception-escape): moving a JSON value checks itself and could throw in theory
struct News {
  std::variant<Reading, Trouble, StateReport, PauseReport> what;
  TimePoint when;
};

struct PolledDevice {
  Session* session = nullptr;
  bool char_paired = false;
  std::size_t device = 0;  // its number in the model
  DeviceState state;
  std::vector<Selection> selections;
  std::vector<std::size_t> rows;  // of the model, for each selection
};

class DevicePolling {
 public:
  // Tags of one part: about what one batch of the runtime takes.
  static constexpr std::size_t kPartTags = 31;

  // The session must outlive it.
  DevicePolling(PolledDevice device, std::chrono::milliseconds interval);

  // Model rows that are on the screen; those of other devices do not matter.
  void set_visible(const std::vector<std::size_t>& rows);
  void set_interval(std::chrono::milliseconds interval) { planner_.set_interval(interval); }

  // Polls one part when one is due; false when none was. What is to be told goes to the end of news.
  bool step(TimePoint now, std::vector<News>& news);
  // When the next step has something to do.
  TimePoint due() const;

 private:
  void served(std::size_t part, TimePoint now, std::vector<News>& news);
  void not_served(std::size_t part, LinkState link, TimePoint now, std::vector<News>& news);
  void report_state(TimePoint now, std::vector<News>& news) const;

  std::size_t device_;
  DeviceState state_;
  std::vector<std::size_t> rows_;
  std::vector<Poller> parts_;
  Planner planner_;
  // The driver keeps a batch that it has not answered, so that no other part may be asked for before.
  std::optional<std::size_t> unanswered_;
  TimePoint not_before_{};
  BYTE last_error_ = 0;
};

}  // namespace ostravel::host::watch
