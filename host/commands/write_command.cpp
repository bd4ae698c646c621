// SPDX-License-Identifier: MIT
#include "host/commands/write_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "host/commands/polling.h"
#include "host/commands/shared.h"
#include "host/config/devices.h"
#include "host/files.h"
#include "host/format.h"
#include "host/literal.h"
#include "host/table.h"
#include "host/text.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

struct Assignment {
  DeviceTag tag;
  nlohmann::json value;
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
  try {
    auto value = parse_value(tag.selection, value_part);
    auto writes = write_accesses(tag.selection, projects.project(tag.device).char_paired,
                                 projects.device(tag.device).offline, value);
    return {std::move(tag), std::move(value), std::move(writes)};
  } catch (const UserError& error) {
    throw UserError(fmt::format("{}: {}", name, error.what()));
  }
}

std::vector<Assignment> parse_assignments(const Projects& projects, const std::vector<std::string>& texts) {
  std::vector<Assignment> assignments;
  assignments.reserve(texts.size());
  for (const auto& text : texts) {
    assignments.push_back(parse_assignment(projects, text));
  }
  return assignments;
}

std::vector<std::string> hexadecimal(const Words& words) {
  std::vector<std::string> texts;
  texts.reserve(words.size());
  for (const auto word : words) {
    texts.push_back(fmt::format("{:04X}", word));
  }
  return texts;
}

// A bound below 0 travels as the 16-bit number that it is.
int index_of(const DeviceTag& tag, const Access& access) {
  const bool below_zero = tag.selection.tag.first.value_or(0) < 0;
  return below_zero ? static_cast<std::int16_t>(access.array_index) : int{access.array_index};
}

// One request as a line for people.
std::string request_line(const DeviceTag& tag, const WriteAccess& write) {
  const auto& access = write.access;
  auto line = fmt::format("{}: {} write, type {}, row {}", visible(tag.label),
                          write.words.empty() ? "bit" : "word", tag.selection.tag.type->name, access.row);
  if (access.array_index != kNoArrayIndex) {
    line += fmt::format(", index {}", index_of(tag, access));
  }
  if (write.words.empty()) {
    return line + fmt::format(", bit {}", write.bit ? 1 : 0);
  }
  return line +
         fmt::format(", elements {}, words {}", access.elements, fmt::join(hexadecimal(write.words), " "));
}

int show_requests(const CommonOptions& common, const std::vector<std::string>& texts) {
  const Projects projects(load_devices(common));
  RowWriter rows(stdout, common.format(),
                 {"tag", "request", "type", "row", "index", "elements", "bit", "words"});
  for (const auto& assignment : parse_assignments(projects, texts)) {
    for (const auto& write : assignment.writes) {
      if (common.format() == Format::Text) {
        fmt::print("{}\n", request_line(assignment.tag, write));
        continue;
      }
      using nlohmann::json;
      const auto& access = write.access;
      const bool bit = write.words.empty();
      const bool indexed = access.array_index != kNoArrayIndex;
      rows.write({assignment.tag.label, bit ? "bit write" : "word write",
                  assignment.tag.selection.tag.type->name, access.row,
                  indexed ? json(index_of(assignment.tag, access)) : json(), access.elements,
                  bit ? json(write.bit) : json(), bit ? json() : json(hexadecimal(write.words))});
    }
  }
  finish_output(stdout);
  return kExitOk;
}

// Whether a value that was read would be written with the same requests. The driver answers a failed write
// like a good one, so this is all there is to tell them apart.
bool is_what_was_written(const Projects& projects, const Assignment& assignment,
                         const nlohmann::json& value) {
  if (assignment.value.is_binary()) {
    std::vector<std::uint8_t> bytes;
    for (const auto& element : value) {
      for (int bit = 0; bit < assignment.tag.selection.tag.type->bits; bit += 8) {
        bytes.push_back(static_cast<std::uint8_t>(element.get<std::int64_t>() >> bit));
      }
    }
    const std::vector<std::uint8_t>& written = assignment.value.get_binary();
    return bytes == written;
  }
  const auto device = assignment.tag.device;
  try {
    const auto again = write_accesses(assignment.tag.selection, projects.project(device).char_paired,
                                      projects.device(device).offline, value);
    return std::equal(again.begin(), again.end(), assignment.writes.begin(), assignment.writes.end(),
                      [](const auto& a, const auto& b) { return a.words == b.words && a.bit == b.bit; });
  } catch (const UserError&) {
    return false;  // a text that could not be written so
  }
}

int write_tags(const CommonOptions& common, const std::vector<std::string>& texts) {
  Devices devices(common);
  const auto assignments = parse_assignments(devices.projects(), texts);
  std::vector<DeviceTag> tags;
  tags.reserve(assignments.size());
  for (const auto& assignment : assignments) {
    tags.push_back(assignment.tag);
  }
  // A write before the device serves reads would go nowhere, and its answer would not tell.
  TagPoller poller(devices, std::move(tags));
  if (!poll_all(poller, common.timeout())) {
    return no_plc(devices, poller, common.timeout());
  }
  for (const auto& assignment : assignments) {
    for (const auto& write : assignment.writes) {
      devices.session(assignment.tag.device).write(write);
    }
  }
  if (!poll_all(poller, common.timeout())) {
    return no_plc(devices, poller, common.timeout());
  }
  RowWriter rows(devices.output().stream(), common.format(), tag_columns());
  int result = kExitOk;
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    const bool differs =
        state.error == 0 && !is_what_was_written(devices.projects(), assignments[i], state.value);
    result = state.error != 0 || differs ? kExitValueFailed : result;
    if (differs) {
      std::fflush(devices.output().stream());
      fmt::print(stderr,
                 "ostravel-host: {}: reads back as another value; the write failed, or the PLC's program "
                 "changed it\n",
                 visible(poller.tag(i).label));
    }
    if (common.format() == Format::Text) {
      fmt::print(devices.output().stream(), "{} reads back as {} ({})\n", visible(poller.tag(i).label),
                 value_text(state.value), status_text(state));
    } else {
      rows.write(tag_cells(poller, i));
    }
  }
  devices.output().finish();
  return result;
}

}  // namespace

void add_write_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("write", "write tags and read them back");
  auto assignments = std::make_shared<std::vector<std::string>>();
  auto dry_run = std::make_shared<bool>(false);
  command
      ->add_option("ASSIGNMENT", *assignments, "NAME=VALUE: true, -5, 16#FF, 3.25, 'text', T#5s, [1, 2, 3]")
      ->required();
  command->add_flag("--dry-run", *dry_run, "show the requests that would be sent, and send nothing");
  command->footer(
      "Values are written as in PLC programs: true, -5, 1_000, 16#FF, 2#1010, 3.25, 1e3, 'text', T#1h_2m, "
      "S5T#80s,\n"
      "TOD#13:14:15.5, D#2024-03-05, LDT#, DT#, DTL#2024-03-05-13:14:15.5, and [1, 2, 3] for an array.\n\n"
      "Examples:\n"
      "  ostravel-host --project line.project --address 192.168.0.11 write Line.Speed=1_200 "
      "\"Line.Name='Press 1'\"\n"
      "  ostravel-host --project line.project write --dry-run 'Line.Limits=[1, 2, 16#FF]' Line.Delay=T#5s");
  command->callback([&common, &run, assignments, dry_run] {
    run = [&common, assignments, dry_run] {
      return *dry_run ? show_requests(common, *assignments) : write_tags(common, *assignments);
    };
  });
}

}  // namespace ostravel::host
