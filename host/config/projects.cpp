// SPDX-License-Identifier: MIT
#include "host/config/projects.h"

#include <fmt/format.h>

#include <optional>

#include "host/usererror.h"

namespace ostravel::host {

Projects::Projects(std::vector<DeviceConfig> devices) : devices_(std::move(devices)) {
  files_.reserve(devices_.size());
  for (const auto& device : devices_) {
    files_.push_back(load_project(device.project));
  }
  for (const auto& file : files_) {
    rows_.emplace_back(file.project);
  }
}

DeviceTag Projects::tag(std::size_t device, Selection selection) const {
  auto label = size() == 1 ? selection.text : devices_[device].name + "/" + selection.text;
  return {device, std::move(selection), std::move(label)};
}

DeviceTag Projects::find_in(std::size_t device, std::string_view text) const {
  auto selection = find_tag(project(device), rows_[device], text);
  if (!selection) {
    throw UserError(fmt::format("{}: the project has no tag of that name; see: ostravel-tags dump {}", text,
                                devices_[device].project));
  }
  return tag(device, *std::move(selection));
}

DeviceTag Projects::find(std::string_view text) const {
  for (std::size_t i = 0; i < size(); ++i) {
    const auto& name = devices_[i].name;
    if (!name.empty() && text.size() > name.size() && text.starts_with(name) && text[name.size()] == '/') {
      return find_in(i, text.substr(name.size() + 1));
    }
  }
  if (size() == 1) {
    return find_in(0, text);
  }
  std::optional<DeviceTag> found;
  for (std::size_t i = 0; i < size(); ++i) {
    auto selection = find_tag(project(i), rows_[i], text);
    if (selection && found) {
      throw UserError(fmt::format("{}: devices {} and {} both have it; write {}/{} or {}/{}", text,
                                  devices_[found->device].name, devices_[i].name,
                                  devices_[found->device].name, text, devices_[i].name, text));
    }
    if (selection) {
      found = tag(i, *std::move(selection));
    }
  }
  if (!found) {
    throw UserError(
        fmt::format("{}: no device has a tag of that name; see: ostravel-host browse --no-values", text));
  }
  return *std::move(found);
}

std::vector<DeviceTag> Projects::tags(const std::vector<std::string>& names) const {
  std::vector<DeviceTag> found;
  found.reserve(names.size());
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
