// SPDX-License-Identifier: MIT
// Says how far something has come once it takes longer than a second: on a terminal in one line that is
// written again, elsewhere in a line every five seconds.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>

namespace ostravel::host::check {

class Progress {
 public:
  using Clock = std::chrono::steady_clock;
  using Now = std::function<Clock::time_point()>;

  // "ostravel-host: WHAT: 1200 of 10000"
  Progress(std::FILE* out, bool terminal, std::string what, Now now = Clock::now);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { clear(); }

  void show(std::size_t done, std::size_t all);
  // Makes room for other lines on the terminal.
  void clear();

 private:
  std::FILE* out_;
  bool terminal_;
  std::string what_;
  Now now_;
  Clock::time_point next_;
  bool shown_ = false;
};

}  // namespace ostravel::host::check
