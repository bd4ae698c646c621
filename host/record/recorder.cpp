// SPDX-License-Identifier: MIT
#include "host/record/recorder.h"

#include <algorithm>

#include "host/interrupt.h"

namespace ostravel::host::record {
namespace {

std::string link_text(const Devices& devices, const TagPoller& poller) {
  std::string text;
  for (const auto device : poller.devices()) {
    if (poller.link(device) == LinkState::Online) {
      continue;
    }
    const auto& name = devices.projects().device(device).name;
    text += (text.empty() ? "" : ", ") + (name.empty() ? "" : name + " ") + to_text(poller.link(device));
  }
  return text.empty() ? kStatusOk : text;
}

}  // namespace

Timing real_timing() {
  return {now, [](std::chrono::milliseconds time) { sleep_unless_interrupted(time); }, interrupted};
}

Round round_of(const Devices& devices, const TagPoller& poller, Moment time) {
  Round round{time, link_text(devices, poller), {}};
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    const auto link = poller.link(poller.tag(i).device);
    if (link != LinkState::Online) {
      round.samples.push_back({nullptr, to_text(link)});
    } else if (state.error != 0) {
      round.samples.push_back({nullptr, to_text_of_error(state.error)});
    } else {
      round.samples.push_back({state.value, kStatusOk});
    }
  }
  return round;
}

void Recorder::run(const RecordPlan& plan, RecordRows& rows, RecordFile& file, const Watcher& watcher) {
  const auto begin = timing_.now();
  if (file.resumed()) {
    file.write(rows.gap(begin, "resumed"));
  }
  auto next = begin;
  for (std::uint64_t i = 0; !timing_.stop() && (plan.count == 0 || i < plan.count); ++i) {
    const auto time = timing_.now();
    if (plan.length && time - begin >= *plan.length) {
      break;
    }
    poller_.poll();
    const auto round = round_of(devices_, poller_, time);
    file.write(rows.rows(round));
    if (watcher) {
      watcher(round);
    }
    // What a slow round has missed is not made up for.
    const auto after = timing_.now();
    next = std::max(next + plan.interval, after);
    // A clock that is put back must not stop the recording for as long.
    next = std::min(next, after + plan.interval);
    const bool last =
        (plan.count != 0 && i + 1 == plan.count) || (plan.length && next - begin >= *plan.length);
    if (last) {
      break;
    }
    timing_.sleep(next - after);
  }
}

}  // namespace ostravel::host::record
