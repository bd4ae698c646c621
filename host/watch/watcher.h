// SPDX-License-Identifier: MIT
// The loop of watch: takes what was polled, draws, answers keys.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "host/watch/browser.h"
#include "host/watch/devicepolling.h"
#include "host/watch/view.h"

namespace ostravel::host::watch {

// Where the lines are drawn and the keys come from.
class Display {
 public:
  virtual ~Display() = default;
  virtual Size size() = 0;
  virtual Charset charset() const = 0;
  virtual void show(const std::vector<StyledLine>& lines) = 0;
  // The next key, key::kNone when none came in time.
  virtual Key read_key(std::chrono::milliseconds timeout) = 0;
};

// Where the values come from; Feed is the one with a thread.
class Source {
 public:
  virtual ~Source() = default;
  virtual std::vector<News> take() = 0;
  virtual void set_visible(std::vector<std::size_t> rows) = 0;
  virtual void set_interval(std::chrono::milliseconds interval) = 0;
  virtual void set_paused(bool paused) = 0;
};

struct WatcherOptions {
  std::chrono::milliseconds interval{500};
  std::uint64_t polls = 0;           // of each device, after which it ends; 0: no end
  std::function<bool()> is_to_end;   // asked all the time
  std::function<TimePoint()> clock;  // what time it is
};

// Runs until a key, is_to_end or the number of polls ends it.
void run_watcher(Model& model, Source& source, Display& display, const WatcherOptions& options);

}  // namespace ostravel::host::watch
