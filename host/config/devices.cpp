// SPDX-License-Identifier: MIT
#include "host/config/devices.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "host/interrupt.h"

namespace ostravel::host {
namespace {

std::string prepare_driver(const DeviceConfig& device) {
  if (!device.library.empty()) {
    preload_library(device.library);
  }
  return driver_path(device.driver);
}

}  // namespace

std::string driver_path(const std::string& driver) {
  if (!driver.empty()) {
    return driver;
  }
  const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto installed = folder.parent_path() / "lib/ostravel/libostravel.so";
  const auto beside = folder / "libostravel.so";
  return !std::filesystem::exists(beside) && std::filesystem::exists(installed) ? installed : beside;
}

Devices::Devices(const CommonOptions& options)
    : projects_(load_devices(options)),
      output_(options.driver_output),
      driver_(prepare_driver(projects_.device(0))),
      sessions_(projects_.size()) {}

Session& Devices::session(std::size_t device) {
  auto& session = sessions_.at(device);
  if (!session) {
    const auto& config = projects_.device(device);
    DeviceSettings settings;
    settings.project_file = config.project;
    settings.table_position = projects_.file(device).table_position;
    settings.address = config.address;
    settings.station = static_cast<std::uint8_t>(config.station);
    settings.offline = config.offline;
    session = std::make_unique<Session>(driver_, settings);
  }
  return *session;
}

TagPoller::TagPoller(Devices& devices, std::vector<DeviceTag> tags)
    : devices_(devices), tags_(std::move(tags)), parts_(devices.size()) {
  std::vector<std::vector<Selection>> selections(devices.size());
  for (const auto& tag : tags_) {
    places_.push_back({tag.device, selections[tag.device].size()});
    selections[tag.device].push_back(tag.selection);
  }
  for (std::size_t i = 0; i < devices.size(); ++i) {
    if (!selections[i].empty()) {
      used_.push_back(i);
      const auto& config = devices.projects().device(i);
      parts_[i] = std::make_unique<Part>(
          Poller(devices.session(i), std::move(selections[i]), devices.projects().project(i).char_paired),
          Recovery(config.name.empty() ? config.address : config.name));
    }
  }
}

bool TagPoller::poll(Part& part) {
  const auto link = part.poller.poll();
  const auto now = Clock::now();
  const auto pause = part.poller.pause();
  part.served = link == LinkState::Online || part.served;
  part.due = now + pause;
  if (const auto line = part.recovery.observe(link, part.poller.reinitialisations(), pause, now)) {
    say(*line);
  }
  return link == LinkState::Online;
}

bool TagPoller::poll() {
  bool all = true;
  for (const auto device : used_) {
    auto& part = *parts_[device];
    part.asked = 0;
    if (Clock::now() >= part.due) {
      poll(part);
    }
    all = all && part.poller.link() == LinkState::Online;
  }
  tell_progress();
  return all;
}

bool TagPoller::poll_all(std::chrono::milliseconds timeout) {
  const auto until = Clock::now() + timeout;
  for (const auto device : used_) {
    parts_[device]->complete = false;
    parts_[device]->asked = 0;
  }
  for (;;) {
    auto next = Clock::time_point::max();
    for (const auto device : used_) {
      auto& part = *parts_[device];
      part.complete = part.complete || (Clock::now() >= part.due && poll(part));
      next = part.complete ? next : std::min(next, part.due);
    }
    tell_progress();
    if (next == Clock::time_point::max()) {
      return true;
    }
    if (std::max(next, Clock::now()) >= until || interrupted()) {
      return false;
    }
    sleep_unless_interrupted(std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()));
  }
}

void TagPoller::say(const std::string& line) const {
  if (say_) {
    say_(line);
  } else {
    fmt::print(stderr, "ostravel-host: {}\n", line);
  }
}

void TagPoller::on_progress(Watcher watcher) {
  watcher_ = std::move(watcher);
  for (const auto device : used_) {
    auto& part = *parts_[device];
    part.poller.after_batch([this, &part](std::size_t done) {
      part.asked = part.poller.size() * done / part.poller.batches();
      tell_progress();
    });
  }
}

void TagPoller::tell_progress() const {
  if (!watcher_) {
    return;
  }
  std::size_t asked = 0;
  const char* trouble = nullptr;
  for (const auto device : used_) {
    asked += parts_[device]->asked;
    const auto link = parts_[device]->poller.link();
    trouble = trouble == nullptr && link != LinkState::Online ? to_text(link) : trouble;
  }
  watcher_(asked, trouble);
}

std::chrono::milliseconds TagPoller::pause() const {
  auto next = Clock::time_point::max();
  for (const auto device : used_) {
    next = std::min(next, parts_[device]->due);
  }
  if (used_.empty()) {
    return std::chrono::milliseconds(0);
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now());
  return std::max(left, std::chrono::milliseconds(0));
}

const TagState& TagPoller::state(std::size_t i) const {
  return parts_[places_[i].device]->poller.state(places_[i].index);
}

LinkState TagPoller::link(std::size_t device) const {
  return parts_[device]->poller.link();
}

std::string TagPoller::trouble(const std::string& time) const {
  for (const auto device : used_) {
    if (link(device) != LinkState::Online) {
      return fmt::format("no answer from {}{} ({})", devices_.projects().device(device).address, time,
                         to_text(link(device)));
    }
  }
  return {};
}

}  // namespace ostravel::host
