// SPDX-License-Identifier: MIT
// Says how many rows of a file have been read once that takes longer than a second: on a terminal in one line
// that is written again and goes away in the end, elsewhere in a line every five seconds.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>

namespace ostravel::tags {

class RowProgress {
 public:
  using Clock = std::chrono::steady_clock;
  using Now = std::function<Clock::time_point()>;

  // Writes to standard error.
  explicit RowProgress(std::string file);
  RowProgress(std::string file, std::FILE* out, bool terminal, Now now);
  RowProgress(const RowProgress&) = delete;
  RowProgress& operator=(const RowProgress&) = delete;
  ~RowProgress();

  void step() {
    if (++rows_ % kRowsBetweenLooks == 0) {
      look();
    }
  }

  static constexpr std::size_t kRowsBetweenLooks = 1024;

 private:
  void look();

  std::string file_;
  std::FILE* out_;
  bool terminal_;
  Now now_;
  Clock::time_point next_;
  std::size_t rows_ = 0;
  bool shown_ = false;
};

}  // namespace ostravel::tags
