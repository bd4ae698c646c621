// SPDX-License-Identifier: MIT
// All devices of a command in one process, on one driver, and the polling of tags that may be of several.
//
//   Devices devices(common);                                  driver loaded, nothing connected yet
//   TagPoller poller(devices, devices.projects().tags(names)); brings up the devices that have a tag in it
//   poller.poll_all(common.timeout());                         or poll() again and again
//   poller.state(i)                                            of tag i
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/commands/command.h"
#include "host/config/projects.h"
#include "host/driverlibrary.h"
#include "host/output.h"
#include "host/poller.h"
#include "host/recovery.h"
#include "host/session.h"

namespace ostravel::host {

// The driver that the options name, or the one beside the program, or where an installation has it.
std::string driver_path(const std::string& driver);

class Devices {
 public:
  // Loads projects and driver. Throws UserError and NoDriver.
  explicit Devices(const CommonOptions& options);

  const Projects& projects() const { return projects_; }
  const DriverLibrary& driver() const { return driver_; }
  const OwnOutput& output() const { return output_; }
  std::size_t size() const { return projects_.size(); }

  // Brings the device up when it is asked for first.
  Session& session(std::size_t device);

 private:
  Projects projects_;
  OwnOutput output_;
  DriverLibrary driver_;
  std::vector<std::unique_ptr<Session>> sessions_;
};

// Polls tags of several devices, each at its own pace: one that is lost does not hold up the others.
class TagPoller {
 public:
  using Clock = std::chrono::steady_clock;

  // The devices must outlive it.
  TagPoller(Devices& devices, std::vector<DeviceTag> tags);
  TagPoller(const TagPoller&) = delete;
  TagPoller& operator=(const TagPoller&) = delete;

  // Polls each device that is not in a pause once. True when all of them serve.
  bool poll();

  // Polls each device until all its tags have been asked for once; false when the time ran out before, or on
  // Ctrl+C when the program heeds it (interrupt.h).
  bool poll_all(std::chrono::milliseconds timeout);

  // Takes a line, without the program's name, when a connection is lost, tried again and back (recovery.h).
  // Without one the lines go to stderr.
  void on_recovery(std::function<void(const std::string&)> say) { say_ = std::move(say); }
  // Is called within the polls, after each batch and each round, with how many tags of all have been asked
  // for in this round and how the first device that does not serve stands; null when all do.
  using Watcher = std::function<void(std::size_t asked, const char* trouble)>;
  void on_progress(Watcher watcher);

  // Until the next device is due; 0 when one is.
  std::chrono::milliseconds pause() const;

  std::size_t size() const { return tags_.size(); }
  const DeviceTag& tag(std::size_t i) const { return tags_[i]; }
  const TagState& state(std::size_t i) const;

  // The devices that have a tag here, by their number in Devices.
  const std::vector<std::size_t>& devices() const { return used_; }
  LinkState link(std::size_t device) const;
  const Poller& poller(std::size_t device) const { return parts_[device]->poller; }
  bool served(std::size_t device) const { return parts_[device]->served; }  // ever

  // "no answer from 10.0.0.7TIME (connecting)" for the first device that does not serve; empty when all do.
  std::string trouble(const std::string& time = {}) const;

 private:
  struct Part {
    Part(Poller its_poller, Recovery its_recovery)
        : poller(std::move(its_poller)), recovery(std::move(its_recovery)) {}
    Poller poller;
    Recovery recovery;
    Clock::time_point due{};
    bool served = false;
    std::size_t asked = 0;  // tags, in this round
    bool complete = false;  // all of this round
  };
  struct Place {
    std::size_t device;
    std::size_t index;  // in the device's poller
  };

  // True when the device serves.
  bool poll(Part& part);
  void say(const std::string& line) const;
  void tell_progress() const;

  Devices& devices_;
  std::vector<DeviceTag> tags_;
  std::vector<Place> places_;  // of each tag
  std::vector<std::size_t> used_;
  std::vector<std::unique_ptr<Part>> parts_;  // of each device; null without a tag here
  std::function<void(const std::string&)> say_;
  Watcher watcher_;
};

}  // namespace ostravel::host
