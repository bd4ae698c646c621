// SPDX-License-Identifier: MIT
// ostravel-demo: shows the driver at work and checks every value on the way. Exit code 0 only when every
// value read was the one the PLC held and every value written arrived. The script demo calls it.
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <filesystem>

#include "host/commandline.h"
#include "host/demo/offlinedemo.h"
#include "host/demo/onlinedemo.h"
#include "host/demo/screen.h"
#include "host/output.h"
#include "host/usererror.h"

namespace {

using namespace ostravel::host;

int run(int argc, char** argv) {
  DemoOptions options;
  options.programs = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
  CLI::App app{"Shows the driver at work with a simulated PLC, and checks every value"};
  app.add_option("--samples", options.samples, "folder of the PLC's sources")->required();
  app.add_option("--work", options.work, "folder for files of the demo's own")->required();
  app.add_flag("--offline", options.offline, "no PLC: the driver simulates the variables by itself");
  if (const auto code = parse_command_line(app, "ostravel-demo", argc, argv)) {
    return *code;
  }
  std::filesystem::create_directories(options.work);
  const auto driver_log = options.work + "/driver-output.txt";
  const OwnOutput output(driver_log);
  Screen screen(output.stream(), output.is_terminal());
  Ledger ledger;
  if (options.offline) {
    run_offline_demo(options, screen, ledger);
  } else {
    OnlineDemo(options, screen, ledger).run();
  }
  screen.line(fmt::format("{} checks, {} failed; the driver's own lines are in {}", ledger.checks(),
                          ledger.failed(), driver_log));
  for (const auto& text : ledger.texts()) {
    screen.line("FAILED " + text);
  }
  screen.line(ledger.failed() == 0 ? "All as it should be." : "Not all as it should be.");
  return ledger.failed() == 0 ? kExitOk : kExitValueFailed;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    fmt::print(stderr, "ostravel-demo: {}\n", error.what());
    return kExitUsage;
  }
}
