// SPDX-License-Identifier: MIT
#include "host/commands/describe_command.h"

#include <fmt/format.h>

#include <map>

#include "host/config/devices.h"
#include "host/driverlibrary.h"
#include "host/output.h"
#include "host/table.h"
#include "host/tagtype.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

int describe_driver(const CommonOptions& common) {
  const OwnOutput output(common.driver_output);
  const DriverLibrary driver(driver_path(common.driver));
  const auto description = describe(driver);
  const auto& attribute = description.attribute;
  auto* out = output.stream();
  fmt::print(out, "{} {}.{:02}, driver {}\n", description.name, attribute.wVersion / 100,
             attribute.wVersion % 100, attribute.wDriverID);
  fmt::print(out, "time-out at least {} ms, {} initialisation and {} close commands\n\n",
             attribute.wMinTimeout, attribute.wInitCmdCount, attribute.wCloseCmdCount);
  std::map<std::string, std::vector<std::string>> limits;
  for (const auto& cells : description.size_limits) {
    if (cells.size() >= 3) {
      limits[cells[0]] = cells;
    }
  }
  std::vector<TableRow> rows{{"TYPE", "CODE", "DEVICE", "RUNTIME TYPE", "ELEMENTS", "WORDS EACH"}};
  for (const auto& cells : description.device_table) {
    if (cells.size() < 3) {
      continue;
    }
    const auto& limit = limits[cells[2]];
    const auto* type = find_tag_type(cells[1]);
    rows.push_back({cells[1], cells[2], cells[0] == "B" ? "bit" : "word",
                    type == nullptr ? "-" : std::to_string(runtime_type_number(driver, type->code)),
                    limit.empty() ? "-" : limit[1], limit.empty() ? "-" : limit[2]});
  }
  for (const auto& line : layout_table(rows)) {
    fmt::print(out, "{}\n", line);
  }
  output.finish();
  return kExitOk;
}

}  // namespace

void add_describe_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("describe", "what the driver says of itself: types, sizes, limits");
  command->callback([&] { run = [&common] { return describe_driver(common); }; });
}

}  // namespace ostravel::host
