// SPDX-License-Identifier: MIT
// What is said of a device whose connection fails: that it is lost, each attempt to get it back, and that it
// is back, after how long.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "host/poller.h"

namespace ostravel::host {

class Recovery {
 public:
  using Clock = std::chrono::steady_clock;

  // The device as it is called in the lines: its name, or its address.
  explicit Recovery(std::string device) : device_(std::move(device)) {}

  // To be called after each poll. The line that is due, without the program's name; mostly there is none.
  std::optional<std::string> observe(LinkState link, std::uint64_t attempts, std::chrono::milliseconds pause,
                                     Clock::time_point now);

 private:
  std::string device_;
  bool served_ = false;
  std::optional<Clock::time_point> began_;  // of the loss, or of the first attempt to connect
  std::uint64_t attempts_before_ = 0;
  std::uint64_t attempts_told_ = 0;
};

}  // namespace ostravel::host
