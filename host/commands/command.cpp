// SPDX-License-Identifier: MIT
#include "host/commands/command.h"

namespace ostravel::host {

void add_common_options(CLI::App& app, CommonOptions& options) {
  app.add_option("--driver", options.driver, "the driver; without it libostravel.so beside this program")
      ->type_name("FILE");
  app.add_option("--library", options.library, "communication library to load first, for the driver to find")
      ->type_name("FILE");
  auto* project = app.add_option("--project", options.project, "project file, as ostravel-tags packs it")
                      ->type_name("FILE");
  auto* address = app.add_option("--address", options.address, "IPv4 address of the PLC")
                      ->type_name("ADDRESS")
                      ->capture_default_str();
  auto* station = app.add_option("--station", options.station, "station number of the PLC")
                      ->type_name("NUMBER")
                      ->check(CLI::Range(0, 255))
                      ->capture_default_str();
  app.add_option("--config", options.config,
                 "description of one or more devices in TOML, instead of project, address and station")
      ->type_name("FILE")
      ->excludes(project)
      ->excludes(address)
      ->excludes(station);
  app.add_flag("--offline", options.offline, "the driver simulates the PLC by itself");
  app.add_option("--driver-output", options.driver_output,
                 "where the driver's own lines go: a file, or - for standard output; without it nowhere")
      ->type_name("FILE");
  app.add_option("--timeout", options.timeout_ms, "ms to wait for the PLC")
      ->type_name("MS")
      ->check(CLI::Range(1, 3'600'000))
      ->capture_default_str();
  auto* json = app.add_flag("--json", options.json, "data as JSON, one object a line");
  app.add_flag("--csv", options.csv, "data as CSV with a header line")->excludes(json);
}

}  // namespace ostravel::host
