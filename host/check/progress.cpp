// SPDX-License-Identifier: MIT
#include "host/check/progress.h"

#include <fmt/format.h>

#include <utility>

namespace ostravel::host::check {
namespace {

constexpr std::chrono::seconds kPatience{1};
constexpr std::chrono::milliseconds kOnTerminal{200};
constexpr std::chrono::seconds kElsewhere{5};

}  // namespace

Progress::Progress(std::FILE* out, bool terminal, Now now)
    : out_(out), terminal_(terminal), now_(std::move(now)), next_(now_() + kPatience) {}

void Progress::clear() {
  if (terminal_ && shown_) {
    shown_ = false;
    std::fputs("\r\033[K", out_);
    std::fflush(out_);
  }
}

void Progress::show(std::string_view state) {
  const auto now = now_();
  if (now < next_) {
    return;
  }
  next_ = now + (terminal_ ? Clock::duration(kOnTerminal) : Clock::duration(kElsewhere));
  shown_ = true;
  if (terminal_) {
    fmt::print(out_, "\rostravel-host: {}\033[K", state);
  } else {
    fmt::print(out_, "ostravel-host: {}\n", state);
  }
  std::fflush(out_);
}

}  // namespace ostravel::host::check
