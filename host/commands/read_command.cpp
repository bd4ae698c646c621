// SPDX-License-Identifier: MIT
#include "host/commands/read_command.h"

#include <fmt/format.h>

#include <memory>

#include "host/commands/polling.h"
#include "host/commands/shared.h"
#include "host/config/devices.h"
#include "host/table.h"
#include "host/text.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

int read_tags(const CommonOptions& common, const std::vector<std::string>& names) {
  Devices devices(common);
  TagPoller poller(devices, devices.projects().tags(names));
  if (!poll_all(poller, common.timeout())) {
    return no_plc(devices, poller, common.timeout());
  }
  auto* out = devices.output().stream();
  RowWriter rows(out, common.format(), tag_columns());
  int result = kExitOk;
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    result = state.error == 0 ? result : kExitValueFailed;
    if (common.format() != Format::Text) {
      rows.write(tag_cells(poller, i));
    } else if (state.error == 0) {
      fmt::print(out, "{} = {}\n", visible(poller.tag(i).label), value_text(state.value));
    } else {
      fmt::print(out, "{}: {}\n", visible(poller.tag(i).label), status_text(state));
    }
  }
  devices.output().finish();
  return result;
}

}  // namespace

void add_read_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("read", "read tags once");
  auto names = std::make_shared<std::vector<std::string>>();
  command->add_option("TAG", *names, "NAME, NAME[INDEX] or NAME.%X3 for bit 3; without any all tags");
  command->footer(
      "Examples:\n"
      "  ostravel-host --project line.project --address 192.168.0.11 read\n"
      "  ostravel-host --config plant.toml --json read press/Speed 'saw/Teeth[2]'");
  command->callback([&common, &run, names] { run = [&common, names] { return read_tags(common, *names); }; });
}

}  // namespace ostravel::host
