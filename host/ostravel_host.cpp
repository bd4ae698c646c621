// SPDX-License-Identifier: MIT
// ostravel-host: plays the HMI runtime, so that the driver can be tried without one.
#include <fmt/format.h>

#include <cstdio>
#include <exception>

#include "host/check/check_command.h"
#include "host/commandline.h"
#include "host/commands/browse_command.h"
#include "host/commands/command.h"
#include "host/commands/describe_command.h"
#include "host/commands/read_command.h"
#include "host/commands/write_command.h"
#include "host/driverlibrary.h"
#include "host/plot/plot_command.h"
#include "host/record/record_command.h"
#include "host/reference/status_command.h"
#include "host/reference/tag_names_command.h"
#include "host/text.h"
#include "host/usererror.h"
#include "host/watch/watch_command.h"

namespace {

using namespace ostravel::host;

int run_command(int argc, char** argv) {
  CommonOptions common;
  CommandRunner command;
  CLI::App app{"Plays the HMI runtime: loads the driver and exchanges tags with a PLC"};
  app.require_subcommand(1);
  app.fallthrough();
  add_common_options(app, common);
  add_describe_command(app, common, command);
  add_browse_command(app, common, command);
  add_read_command(app, common, command);
  add_write_command(app, common, command);
  add_watch_command(app, common, command);
  add_check_command(app, common, command);
  add_record_command(app, common, command);
  add_plot_command(app, common, command);
  add_status_command(app, common, command);
  add_tag_names_command(app, common, command);
  app.footer(
      "Examples:\n"
      "  ostravel-plc --export-tags line.db >line.csv      tags of a program, for a project file\n"
      "  ostravel-tags pack line.csv line.project\n"
      "  ostravel-host --project line.project --address 192.168.0.10 check\n"
      "  ostravel-host --project line.project --address 192.168.0.10 watch\n"
      "  ostravel-host status 13/5                         what a status means and what helps");
  if (const auto code = parse_command_line(app, "ostravel-host", argc, argv)) {
    return *code;
  }
  return command();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run_command(argc, argv);
  } catch (const NoDriver& error) {
    fmt::print(stderr, "ostravel-host: {}\n", visible(error.what()));
    return kExitNoDriver;
  } catch (const std::exception& error) {
    fmt::print(stderr, "ostravel-host: {}\n", visible(error.what()));
    return kExitUsage;
  }
}
