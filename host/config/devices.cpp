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
  return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "libostravel.so";
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
      parts_[i].emplace();
      parts_[i]->poller = std::make_unique<Poller>(devices.session(i), std::move(selections[i]),
                                                   devices.projects().project(i).char_paired);
    }
  }
}

bool TagPoller::poll() {
  bool all = true;
  for (const auto device : used_) {
    auto& part = *parts_[device];
    if (Clock::now() >= part.due) {
      part.served = part.poller->poll() == LinkState::Online || part.served;
      part.due = Clock::now() + part.poller->pause();
    }
    all = all && part.poller->link() == LinkState::Online;
  }
  return all;
}

bool TagPoller::poll_all(std::chrono::milliseconds timeout) {
  const auto until = Clock::now() + timeout;
  while (!poll()) {
    if (Clock::now() + pause() >= until || interrupted()) {
      return false;
    }
    sleep_unless_interrupted(pause());
  }
  return true;
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
  return parts_[places_[i].device]->poller->state(places_[i].index);
}

LinkState TagPoller::link(std::size_t device) const {
  return parts_[device]->poller->link();
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
