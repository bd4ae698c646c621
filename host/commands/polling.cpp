// SPDX-License-Identifier: MIT
#include "host/commands/polling.h"

#include <fmt/format.h>
#include <unistd.h>

#include <string>

#include "host/check/progress.h"

namespace ostravel::host {

bool poll_all(TagPoller& poller, std::chrono::milliseconds timeout) {
  check::Progress progress(stderr, isatty(STDERR_FILENO) == 1);
  poller.on_progress([&](std::size_t asked, const char* trouble) {
    const auto waiting = trouble == nullptr ? std::string() : poller.trouble(" yet");
    const auto read = fmt::format("asked for {} of {} tags", asked, poller.size());
    progress.show(trouble == nullptr ? read : asked == 0 ? waiting : read + "; " + waiting);
  });
  poller.on_recovery([&progress](const std::string& line) {
    progress.clear();
    fmt::print(stderr, "ostravel-host: {}\n", line);
  });
  const bool all = poller.poll_all(timeout);
  poller.on_progress({});
  poller.on_recovery({});
  return all;
}

}  // namespace ostravel::host
