// SPDX-License-Identifier: MIT
#include "host/commands/write_command.h"

#include <fmt/format.h>

#include <memory>

#include "host/commands/shared.h"
#include "host/config/devices.h"
#include "host/table.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

struct Assignment {
  DeviceTag tag;
  std::vector<WriteAccess> writes;
};

// The tag's name ends at the first '=' outside its quotes.
std::pair<std::string, std::string> split_assignment(const std::string& assignment) {
  bool quoted = false;
  for (std::size_t i = 0; i < assignment.size(); ++i) {
    if (assignment[i] == '"') {
      quoted = !quoted;
    } else if (assignment[i] == '=' && !quoted) {
      return {assignment.substr(0, i), assignment.substr(i + 1)};
    }
  }
  throw UserError(fmt::format("'{}' is no assignment; write NAME=VALUE", assignment));
}

Assignment parse_assignment(const Projects& projects, const std::string& text) {
  const auto [name, value_part] = split_assignment(text);
  auto tag = projects.find(name);
  const auto value = parse_value(tag.selection, value_part);
  try {
    auto writes = write_accesses(tag.selection, projects.project(tag.device).char_paired,
                                 projects.device(tag.device).offline, value);
    return {std::move(tag), std::move(writes)};
  } catch (const UserError& error) {
    throw UserError(fmt::format("{}: {}", name, error.what()));
  }
}

int write_tags(const CommonOptions& common, const std::vector<std::string>& texts) {
  Devices devices(common);
  std::vector<Assignment> assignments;
  std::vector<DeviceTag> tags;
  for (const auto& text : texts) {
    assignments.push_back(parse_assignment(devices.projects(), text));
    tags.push_back(assignments.back().tag);
  }
  // A write before the device serves reads would go nowhere, and its answer would not tell.
  TagPoller poller(devices, std::move(tags));
  if (!poller.poll_all(common.timeout())) {
    return no_plc(devices, poller, common.timeout());
  }
  for (const auto& assignment : assignments) {
    for (const auto& write : assignment.writes) {
      devices.session(assignment.tag.device).write(write);
    }
  }
  if (!poller.poll_all(common.timeout())) {
    return no_plc(devices, poller, common.timeout());
  }
  int result = kExitOk;
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    fmt::print(devices.output().stream(), "{} reads back as {} ({})\n", poller.tag(i).label,
               value_text(state.value), status_text(state));
    result = state.error == 0 ? result : kExitValueFailed;
  }
  devices.output().finish();
  return result;
}

}  // namespace

void add_write_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("write", "write tags and read them back");
  auto assignments = std::make_shared<std::vector<std::string>>();
  command->add_option("ASSIGNMENT", *assignments, "NAME=VALUE; arrays as [1,2,3]")->required();
  command->callback([&common, &run, assignments] {
    run = [&common, assignments] { return write_tags(common, *assignments); };
  });
}

}  // namespace ostravel::host
