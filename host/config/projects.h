// SPDX-License-Identifier: MIT
// The projects of all devices and the tags in them. Needs neither driver nor PLC.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/access.h"
#include "host/config/deviceconfig.h"
#include "host/project.h"

namespace ostravel::host {

// A tag, or a part of one, of a device.
struct DeviceTag {
  std::size_t device = 0;
  Selection selection;
  std::string label;  // as people know it: TAG, or DEVICE/TAG when there are several devices
};

class Projects {
 public:
  // Loads each device's project file. Throws UserError.
  explicit Projects(std::vector<DeviceConfig> devices);
  Projects(const Projects&) = delete;
  Projects& operator=(const Projects&) = delete;

  std::size_t size() const { return devices_.size(); }
  const DeviceConfig& device(std::size_t i) const { return devices_[i]; }
  const ProjectFile& file(std::size_t i) const { return files_[i]; }
  const Project& project(std::size_t i) const { return files_[i].project; }

  // By TAG as select() takes it, or DEVICE/TAG; TAG alone must be in one device only. Throws UserError.
  DeviceTag find(std::string_view text) const;

  // Those named, in that order; all tags of all devices when none is.
  std::vector<DeviceTag> tags(const std::vector<std::string>& names) const;

 private:
  DeviceTag tag(std::size_t device, Selection selection) const;
  DeviceTag find_in(std::size_t device, std::string_view text) const;

  std::vector<DeviceConfig> devices_;
  std::vector<ProjectFile> files_;
  std::vector<TagRows> rows_;  // of each device
};

}  // namespace ostravel::host
