// SPDX-License-Identifier: MIT
// Says how far something has come once it takes longer than a second: on a terminal in one line that is
// written again, elsewhere in a line every five seconds.
#pragma once

#include <chrono>
#include <cstdio>
#include <functional>
#include <string_view>

namespace ostravel::host::check {

class Progress {
 public:
  using Clock = std::chrono::steady_clock;
  using Now = std::function<Clock::time_point()>;

  Progress(std::FILE* out, bool terminal, Now now = Clock::now);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { clear(); }

  // "ostravel-host: STATE"
  void show(std::string_view state);
  // Makes room for other lines on the terminal.
  void clear();

 private:
  std::FILE* out_;
  bool terminal_;
  Now now_;
  Clock::time_point next_;
  bool shown_ = false;
};

}  // namespace ostravel::host::check
