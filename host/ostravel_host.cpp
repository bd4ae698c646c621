// SPDX-License-Identifier: MIT
// ostravel-host: plays the HMI runtime, so that the driver can be tried without one.
#include <fmt/format.h>

#include <cstdio>
#include <exception>

#include "host/commandline.h"
#include "host/commands.h"
#include "host/driverlibrary.h"
#include "host/usererror.h"

namespace {

using namespace ostravel::host;

void add_options(CLI::App& app, HostOptions& options) {
  app.add_option("--driver", options.driver, "the driver; without it libostravel.so beside this program");
  app.add_option("--library", options.library, "communication library to load first, for the driver to find");
  app.add_option("--project", options.project, "project file, as ostravel-tags packs it");
  app.add_option("--address", options.address, "IPv4 address of the PLC")->capture_default_str();
  app.add_option("--station", options.station, "station number of the PLC")
      ->check(CLI::Range(0, 255))
      ->capture_default_str();
  app.add_flag("--offline", options.offline, "the driver simulates the PLC by itself");
  app.add_option("--driver-output", options.driver_output,
                 "where the driver's own lines go: a file, or - for standard output; without it nowhere");
}

int run(int argc, char** argv) {
  HostOptions options;
  CLI::App app{"Plays the HMI runtime: loads the driver and exchanges tags with a PLC"};
  app.require_subcommand(1);
  app.fallthrough();
  app.footer(
      "Exit codes: 0 all well, 1 a tag has no value, 2 wrong command line or file, 3 no driver, 4 no PLC");
  add_options(app, options);

  auto* describe = app.add_subcommand("describe", "what the driver says of itself: types, sizes, limits");
  auto* read = app.add_subcommand("read", "read tags once");
  read->add_option("TAG", options.tags, "NAME, NAME[INDEX] or NAME.%X3 for bit 3; without any all tags");
  auto* write = app.add_subcommand("write", "write tags and read them back");
  write->add_option("ASSIGNMENT", options.assignments, "NAME=VALUE; arrays as [1,2,3]")->required();
  auto* watch = app.add_subcommand("watch", "show tags as they change");
  watch->add_option("TAG", options.tags, "as for read");
  long timeout = options.timeout.count();
  long interval = options.interval.count();
  for (auto* command : {read, write}) {
    command->add_option("--timeout", timeout, "ms to wait for the PLC")
        ->check(CLI::Range(1, 3'600'000))
        ->capture_default_str();
  }
  watch->add_option("--interval", interval, "ms between polls")
      ->check(CLI::Range(1, 3'600'000))
      ->capture_default_str();
  watch->add_option("--count", options.count, "polls to make; 0 goes on until Ctrl+C")->capture_default_str();

  if (const auto code = parse_command_line(app, "ostravel-host", argc, argv)) {
    return *code;
  }
  options.timeout = std::chrono::milliseconds(timeout);
  options.interval = std::chrono::milliseconds(interval);
  if (describe->parsed()) {
    return describe_command(options);
  }
  if (read->parsed()) {
    return read_command(options);
  }
  return write->parsed() ? write_command(options) : watch_command(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const NoDriver& error) {
    fmt::print(stderr, "ostravel-host: {}\n", error.what());
    return kExitNoDriver;
  } catch (const std::exception& error) {
    fmt::print(stderr, "ostravel-host: {}\n", error.what());
    return kExitUsage;
  }
}
