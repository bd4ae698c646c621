// SPDX-License-Identifier: MIT
#include "host/commands/watch_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <memory>

#include "host/commands/shared.h"
#include "host/config/devices.h"
#include "host/interrupt.h"
#include "host/table.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

struct WatchOptions {
  std::vector<std::string> names;
  long interval_ms = 500;
  std::uint64_t count = 0;  // 0 until interrupted
};

std::vector<TableRow> table_of(const TagPoller& poller) {
  std::vector<TableRow> rows{{"TAG", "TYPE", "VALUE", "STATUS"}};
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& tag = poller.tag(i);
    rows.push_back({tag.label, std::string(tag.selection.tag.type->name), value_text(poller.state(i).value),
                    status_text(poller.state(i))});
  }
  return rows;
}

std::string link_text(const Devices& devices, const TagPoller& poller) {
  std::string text;
  for (const auto device : poller.devices()) {
    const auto& name = devices.projects().device(device).name;
    text += (text.empty() ? "" : ", ") + (name.empty() ? "" : name + " ") + to_text(poller.link(device));
  }
  return text;
}

// Prints what has changed since it was last called.
class ChangePrinter {
 public:
  explicit ChangePrinter(std::FILE* out) : out_(out) {}
  void print(const TagPoller& poller, const std::string& link) {
    if (link_ != link) {
      link_ = link;
      fmt::print(out_, "# {}\n", link_);
    }
    for (std::size_t i = 0; i < poller.size(); ++i) {
      auto line = fmt::format("{} = {} ({})", poller.tag(i).label, value_text(poller.state(i).value),
                              status_text(poller.state(i)));
      if (printed_[i] != line) {
        fmt::print(out_, "{}\n", line);
        printed_[i] = std::move(line);
      }
    }
    std::fflush(out_);
  }

 private:
  std::FILE* out_;
  std::string link_;
  std::map<std::size_t, std::string> printed_;
};

int watch_tags(const CommonOptions& common, const WatchOptions& options) {
  Devices devices(common);
  TagPoller poller(devices, devices.projects().tags(options.names));
  heed_interrupts();
  const auto& output = devices.output();
  LiveTable table(output.stream());
  ChangePrinter printer(output.stream());
  for (std::uint64_t i = 0; !interrupted() && (options.count == 0 || i < options.count); ++i) {
    if (i > 0) {
      sleep_unless_interrupted(std::chrono::milliseconds(options.interval_ms) + poller.pause());
      if (interrupted()) {
        break;
      }
    }
    poller.poll();
    const auto link = link_text(devices, poller);
    if (output.is_terminal()) {
      auto lines = layout_table(table_of(poller));
      lines.insert(lines.begin(), fmt::format("{} (Ctrl+C ends)", link));
      table.draw(lines);
    } else {
      printer.print(poller, link);
    }
  }
  output.finish();
  const auto served = [&poller](std::size_t device) { return poller.served(device); };
  const bool any = std::any_of(poller.devices().begin(), poller.devices().end(), served);
  return any ? kExitOk : no_plc(devices, poller, std::chrono::milliseconds(0));
}

}  // namespace

void add_watch_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("watch", "show tags as they change");
  auto options = std::make_shared<WatchOptions>();
  command->add_option("TAG", options->names, "as for read");
  command->add_option("--interval", options->interval_ms, "ms between polls")
      ->check(CLI::Range(1, 3'600'000))
      ->capture_default_str();
  command->add_option("--count", options->count, "polls to make; 0 goes on until Ctrl+C")
      ->capture_default_str();
  command->callback(
      [&common, &run, options] { run = [&common, options] { return watch_tags(common, *options); }; });
}

}  // namespace ostravel::host
