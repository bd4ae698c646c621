// SPDX-License-Identifier: MIT
#include "host/config/projects.h"

namespace ostravel::host {

Projects::Projects(std::vector<DeviceConfig> devices) : devices_(std::move(devices)) {
  files_.reserve(devices_.size());
  for (const auto& device : devices_) {
    files_.push_back(load_project(device.project));
  }
}

DeviceTag Projects::tag(std::size_t device, Selection selection) const {
  auto label = size() == 1 ? selection.text : devices_[device].name + "/" + selection.text;
  return {device, std::move(selection), std::move(label)};
}

DeviceTag Projects::find(std::string_view text) const {
  return tag(0, select(project(0), text));
}

std::vector<DeviceTag> Projects::tags(const std::vector<std::string>& names) const {
  std::vector<DeviceTag> found;
  for (const auto& name : names) {
    found.push_back(find(name));
  }
  for (std::size_t i = 0; names.empty() && i < size(); ++i) {
    for (std::uint32_t row = 0; row < project(i).tags.size(); ++row) {
      found.push_back(tag(i, select_row(project(i), row)));
    }
  }
  return found;
}

}  // namespace ostravel::host
