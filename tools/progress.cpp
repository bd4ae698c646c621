// SPDX-License-Identifier: MIT
#include "tools/progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <utility>

namespace ostravel::tags {
namespace {

using namespace std::chrono_literals;

constexpr auto kSilence = 1s;
constexpr auto kOnTerminal = 200ms;
constexpr auto kElsewhere = 5s;
constexpr const char* kClearLine = "\r\x1B[K";

}  // namespace

RowProgress::RowProgress(std::string file)
    : RowProgress(std::move(file), stderr, isatty(STDERR_FILENO) == 1, Clock::now) {}

RowProgress::RowProgress(std::string file, std::FILE* out, bool terminal, Now now)
    : file_(std::move(file)),
      out_(out),
      terminal_(terminal),
      now_(std::move(now)),
      next_(now_() + (terminal ? kSilence : kElsewhere)) {}

RowProgress::~RowProgress() {
  if (shown_ && terminal_) {
    std::fputs(kClearLine, out_);
    std::fflush(out_);
  }
}

void RowProgress::look() {
  const auto now = now_();
  if (now < next_) {
    return;
  }
  next_ = now + (terminal_ ? std::chrono::milliseconds(kOnTerminal) : kElsewhere);
  shown_ = true;
  fmt::print(out_, "{}ostravel-tags: {}: {} rows read{}", terminal_ ? kClearLine : "", file_, rows_,
             terminal_ ? "" : "\n");
  std::fflush(out_);
}

}  // namespace ostravel::tags
