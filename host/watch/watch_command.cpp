// SPDX-License-Identifier: MIT
#include "host/watch/watch_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <optional>

#include "host/commandline.h"
#include "host/commands/shared.h"
#include "host/config/devices.h"
#include "host/interrupt.h"
#include "host/usererror.h"
#include "host/watch/feed.h"
#include "host/watch/lines.h"
#include "host/watch/screen.h"
#include "host/watch/watcher.h"

namespace ostravel::host {
namespace {

using std::chrono::milliseconds;

struct WatchOptions {
  std::vector<std::string> names;
  long interval_ms = 500;
  std::uint64_t count = 0;  // 0 until interrupted
  bool plain = false;
};

int watch_as_lines(const CommonOptions& common, const WatchOptions& options, Devices& devices) {
  TagPoller poller(devices, devices.projects().tags(options.names));
  watch::ChangeLines lines(devices.output().stream(), common.format());
  for (std::uint64_t i = 0; !interrupted() && (options.count == 0 || i < options.count); ++i) {
    if (i > 0) {
      sleep_unless_interrupted(milliseconds(options.interval_ms) + poller.pause());
      if (interrupted() || !devices.output().has_reader()) {
        break;
      }
    }
    poller.poll();
    lines.print(devices, poller, std::chrono::system_clock::now());
  }
  devices.output().finish();
  const auto served = [&poller](std::size_t device) { return poller.served(device); };
  const bool any = std::any_of(poller.devices().begin(), poller.devices().end(), served);
  return any ? kExitOk : no_plc(devices, poller, milliseconds(0));
}

// What the table shows, and what is to be polled for it.
struct Watched {
  std::vector<watch::RowName> rows;
  std::vector<watch::PolledDevice> devices;  // those that have a tag among them
};

Watched watched_tags(Devices& devices, const std::vector<std::string>& names) {
  Watched watched;
  std::vector<std::optional<std::size_t>> numbers(devices.size());
  for (auto& tag : devices.projects().tags(names)) {
    auto& number = numbers[tag.device];
    if (!number) {
      const auto& config = devices.projects().device(tag.device);
      number = watched.devices.size();
      watch::PolledDevice device;
      device.session = &devices.session(tag.device);
      device.char_paired = devices.projects().project(tag.device).char_paired;
      device.device = *number;
      device.state.name = config.name;
      device.state.address = config.address;
      watched.devices.push_back(std::move(device));
    }
    auto& device = watched.devices[*number];
    device.rows.push_back(watched.rows.size());
    watched.rows.push_back({tag.label, std::string(tag.selection.tag.type->name), *number});
    device.selections.push_back(std::move(tag.selection));
  }
  return watched;
}

int no_plc(const watch::Model& model) {
  const auto& devices = model.devices();
  if (!devices.empty()) {
    fmt::print(stderr, "ostravel-host: no answer from {} ({}); check the address and that the PLC runs\n",
               devices.front().address, to_text(devices.front().link));
  }
  return kExitNoPlc;
}

int watch_on_screen(const WatchOptions& options, Devices& devices) {
  auto watched = watched_tags(devices, options.names);
  std::vector<watch::DeviceState> states;
  for (const auto& device : watched.devices) {
    states.push_back(device.state);
  }
  const auto clock = [] { return std::chrono::steady_clock::now(); };
  watch::Model model(std::move(watched.rows), std::move(states), clock());
  watch::Feed feed(std::move(watched.devices), milliseconds(options.interval_ms));
  {
    watch::Screen screen(devices.output().stream());
    watch::run_watcher(model, feed, screen,
                       {milliseconds(options.interval_ms), options.count, interrupted, clock});
  }
  feed.stop();
  // A call of the driver that does not come back must not hold the person up.
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
  const auto served = [](const watch::DeviceState& device) { return device.served; };
  return std::any_of(model.devices().begin(), model.devices().end(), served) ? kExitOk : no_plc(model);
}

int watch_tags(const CommonOptions& common, const WatchOptions& options) {
  Devices devices(common);
  heed_interrupts();
  // Lines of the driver on the same terminal would go right through the table.
  const bool lines = options.plain || common.format() != Format::Text || common.driver_output == "-" ||
                     !watch::can_have_screen(devices.output().stream());
  return lines ? watch_as_lines(common, options, devices) : watch_on_screen(options, devices);
}

}  // namespace

void add_watch_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("watch", "show tags as they change; '?' there shows the keys");
  auto options = std::make_shared<WatchOptions>();
  command->add_option("TAG", options->names, "as for read");
  command->add_option("--interval", options->interval_ms, "ms from poll to poll")
      ->type_name("MS")
      ->check(CLI::Range(1, 3'600'000))
      ->capture_default_str();
  command->add_option("--count", options->count, "polls to make; 0 goes on until Ctrl+C")
      ->check(not_negative)
      ->capture_default_str();
  command->add_flag("--plain", options->plain, "lines instead of a table, on a terminal too");
  command->footer(
      "Examples:\n"
      "  ostravel-host --project line.project --address 192.168.0.10 watch\n"
      "  ostravel-host --project line.project watch --interval 100 Plant.Speed 'Plant.Motors[2].Running'\n"
      "  ostravel-host --project line.project watch --plain --count 20 >changes.txt");
  command->callback(
      [&common, &run, options] { run = [&common, options] { return watch_tags(common, *options); }; });
}

}  // namespace ostravel::host
