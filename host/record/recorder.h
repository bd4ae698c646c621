// SPDX-License-Identifier: MIT
// Polls tags at an interval and puts what it gets into a recording, losses of the connection included.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "host/config/devices.h"
#include "host/record/recordfile.h"
#include "host/record/recordrows.h"

namespace ostravel::host::record {

// Time as the recorder has it.
struct Timing {
  std::function<Moment()> now;
  std::function<void(std::chrono::milliseconds)> sleep;
  std::function<bool()> stop;  // true ends the recording after the round that is under way
};
// The real one, ended by Ctrl+C.
Timing real_timing();

struct RecordPlan {
  std::chrono::milliseconds interval{1000};
  std::uint64_t count = 0;  // rounds; 0: without limit
  std::optional<std::chrono::milliseconds> length;
};

// How the devices stand and the value of each tag, after a poll.
Round round_of(const Devices& devices, const TagPoller& poller, Moment time);

class Recorder {
 public:
  // Told after each round.
  using Watcher = std::function<void(const Round& round)>;

  Recorder(const Devices& devices, TagPoller& poller, Timing timing)
      : devices_(devices), poller_(poller), timing_(std::move(timing)) {}

  // A round that takes longer than the interval makes the next one late, never two at once. Throws UserError
  // when the file cannot be written.
  void run(const RecordPlan& plan, RecordRows& rows, RecordFile& file, const Watcher& watcher = {});

 private:
  const Devices& devices_;
  TagPoller& poller_;
  Timing timing_;
};

}  // namespace ostravel::host::record
