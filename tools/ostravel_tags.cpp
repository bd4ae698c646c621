// SPDX-License-Identifier: MIT
// ostravel-tags: makes the project file that a device is started with from a list of tags, shows, joins,
// checks and compares such lists and files.
#include <fmt/format.h>

#include <cstdio>
#include <exception>

#include "host/commandline.h"
#include "host/text.h"
#include "host/usererror.h"
#include "tools/commands.h"

namespace {

using namespace ostravel::host;
using namespace ostravel::tags;

int run_command(int argc, char** argv) {
  CommandRunner command;
  CLI::App app{"Makes, shows, joins, checks and compares project files for the driver and lists of tags"};
  app.require_subcommand(1);
  add_pack_command(app, command);
  add_dump_command(app, command);
  add_merge_command(app, command);
  add_check_command(app, command);
  add_diff_command(app, command);
  app.footer(
      "Examples:\n"
      "  ostravel-tags pack line.csv line.project\n"
      "  ostravel-tags check line.project && ostravel-tags dump line.project >line.csv\n"
      "  ostravel-tags diff old.project new.csv");
  if (const auto code = parse_command_line(app, "ostravel-tags", argc, argv)) {
    return *code;
  }
  return command();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run_command(argc, argv);
  } catch (const std::exception& error) {
    fmt::print(stderr, "ostravel-tags: {}\n", visible(error.what()));
    return kExitUsage;
  }
}
