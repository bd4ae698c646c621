// SPDX-License-Identifier: MIT
#include "host/recovery.h"

#include <fmt/format.h>

#include <utility>

namespace ostravel::host {
namespace {

double seconds(Recovery::Clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

}  // namespace

std::optional<std::string> Recovery::observe(LinkState link, std::uint64_t attempts,
                                             std::chrono::milliseconds pause, Clock::time_point now) {
  if (link == LinkState::Online) {
    const auto began = std::exchange(began_, std::nullopt);
    const bool again = std::exchange(served_, true);
    const auto made = attempts - attempts_before_;
    attempts_before_ = attempts_told_ = attempts;
    if (!began || (!again && made == 0)) {
      return std::nullopt;
    }
    return fmt::format("{}: online{} after {:.1f} s and {} attempt{}", device_, again ? " again" : "",
                       seconds(now - *began), made, made == 1 ? "" : "s");
  }
  const bool first = !began_;
  if (first) {
    began_ = now;
  }
  if (attempts > attempts_told_) {
    attempts_told_ = attempts;
    return fmt::format("{}: {}; trying again, attempt {}, the next in {:.1f} s", device_,
                       !served_ ? "no connection"
                       : first  ? "connection lost"
                                : "still lost",
                       attempts - attempts_before_, seconds(pause));
  }
  return first && served_ ? std::optional(device_ + ": connection lost") : std::nullopt;
}

}  // namespace ostravel::host
