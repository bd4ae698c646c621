// SPDX-License-Identifier: MIT
#include "host/commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <map>
#include <optional>
#include <thread>

#include "host/output.h"
#include "host/poller.h"
#include "host/table.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using Clock = std::chrono::steady_clock;

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);
constexpr std::chrono::milliseconds kLongestNap{50};

void interrupt(int) {
  interrupted = true;
}

void sleep_unless_interrupted(std::chrono::milliseconds time) {
  for (const auto until = Clock::now() + time; !interrupted && Clock::now() < until;) {
    std::this_thread::sleep_for(std::min<Clock::duration>(kLongestNap, until - Clock::now()));
  }
}

std::filesystem::path driver_path(const HostOptions& options) {
  if (!options.driver.empty()) {
    return options.driver;
  }
  return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "libostravel.so";
}

// Everything a command needs to talk to a device.
class Host {
 public:
  explicit Host(const HostOptions& options)
      : options_(options),
        file_(load(options)),
        output_(options.driver_output),
        driver_(open_driver(options)) {
    DeviceSettings settings;
    settings.project_file = options.project;
    settings.table_position = file_.table_position;
    settings.address = options.address;
    settings.station = static_cast<std::uint8_t>(options.station);
    settings.offline = options.offline;
    session_.emplace(driver_, settings);
  }

  const Project& project() const { return file_.project; }
  const OwnOutput& output() const { return output_; }
  Session& session() { return *session_; }

  std::vector<Selection> selections(const std::vector<std::string>& names) const {
    std::vector<Selection> selections;
    selections.reserve(std::max(names.size(), project().tags.size()));
    for (const auto& name : names) {
      selections.push_back(select(project(), name));
    }
    for (std::uint32_t row = 0; names.empty() && row < project().tags.size(); ++row) {
      selections.push_back(select_row(project(), row));
    }
    return selections;
  }

  // Polls until every tag has been asked for; false when the time ran out before.
  bool poll_once(Poller& poller) const {
    const auto until = Clock::now() + options_.timeout;
    while (poller.poll() != LinkState::Online) {
      if (Clock::now() + poller.pause() >= until) {
        return false;
      }
      std::this_thread::sleep_for(poller.pause());
    }
    return true;
  }

  int no_plc(const Poller& poller) const {
    return no_plc(poller, fmt::format(" in {} ms", options_.timeout.count()));
  }

  int no_plc(const Poller& poller, std::string_view time) const {
    std::fflush(output_.stream());
    fmt::print(stderr, "ostravel-host: no answer from {}{} ({}); check the address and that the PLC runs\n",
               options_.address, time, to_text(poller.link()));
    return kExitNoPlc;
  }

 private:
  static ProjectFile load(const HostOptions& options) {
    if (options.project.empty()) {
      throw UserError("--project FILE is required; make one with ostravel-tags pack");
    }
    parse_address(options.address);
    return load_project(options.project);
  }

  static std::filesystem::path open_driver(const HostOptions& options) {
    if (!options.library.empty()) {
      preload_library(options.library);
    }
    return driver_path(options);
  }

  const HostOptions& options_;
  ProjectFile file_;
  OwnOutput output_;
  DriverLibrary driver_;
  std::optional<Session> session_;
};

std::string status_text(const TagState& state) {
  return fmt::format("{}/{} {}", state.error, state.status, to_text_of_error(state.error));
}

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

std::vector<TableRow> table_of(const Poller& poller) {
  std::vector<TableRow> rows{{"TAG", "TYPE", "VALUE", "STATUS"}};
  for (std::size_t i = 0; i < poller.size(); ++i) {
    rows.push_back({poller.selection(i).text, std::string(poller.selection(i).tag.type->name),
                    value_text(poller.state(i).value), status_text(poller.state(i))});
  }
  return rows;
}

// Prints what has changed since it was last called.
class ChangePrinter {
 public:
  explicit ChangePrinter(std::FILE* out) : out_(out) {}
  void print(const Poller& poller) {
    if (link_ != to_text(poller.link())) {
      link_ = to_text(poller.link());
      fmt::print(out_, "# {}\n", link_);
    }
    for (std::size_t i = 0; i < poller.size(); ++i) {
      auto line = fmt::format("{} = {} ({})", poller.selection(i).text, value_text(poller.state(i).value),
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

}  // namespace

int describe_command(const HostOptions& options) {
  const OwnOutput output(options.driver_output);
  const DriverLibrary driver(driver_path(options));
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

int read_command(const HostOptions& options) {
  Host host(options);
  Poller poller(host.session(), host.selections(options.tags), host.project().char_paired);
  if (!host.poll_once(poller)) {
    return host.no_plc(poller);
  }
  int result = kExitOk;
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    if (state.error == 0) {
      fmt::print(host.output().stream(), "{} = {}\n", poller.selection(i).text, value_text(state.value));
    } else {
      fmt::print(host.output().stream(), "{}: {}\n", poller.selection(i).text, status_text(state));
      result = kExitValueFailed;
    }
  }
  host.output().finish();
  return result;
}

int write_command(const HostOptions& options) {
  Host host(options);
  struct Assignment {
    Selection selection;
    std::vector<WriteAccess> writes;
  };
  std::vector<Assignment> assignments;
  std::vector<Selection> selections;
  for (const auto& text : options.assignments) {
    const auto [name, value_part] = split_assignment(text);
    auto selection = select(host.project(), name);
    const auto value = parse_value(selection, value_part);
    try {
      assignments.push_back(
          {selection, write_accesses(selection, host.project().char_paired, options.offline, value)});
    } catch (const UserError& error) {
      throw UserError(fmt::format("{}: {}", name, error.what()));
    }
    selections.push_back(std::move(selection));
  }
  // A write before the device serves reads would go nowhere, and its answer would not tell.
  Poller poller(host.session(), selections, host.project().char_paired);
  if (!host.poll_once(poller)) {
    return host.no_plc(poller);
  }
  for (const auto& assignment : assignments) {
    for (const auto& write : assignment.writes) {
      host.session().write(write);
    }
  }
  if (!host.poll_once(poller)) {
    return host.no_plc(poller);
  }
  int result = kExitOk;
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    fmt::print(host.output().stream(), "{} reads back as {} ({})\n", selections[i].text,
               value_text(state.value), status_text(state));
    result = state.error == 0 ? result : kExitValueFailed;
  }
  host.output().finish();
  return result;
}

int watch_command(const HostOptions& options) {
  Host host(options);
  Poller poller(host.session(), host.selections(options.tags), host.project().char_paired);
  std::signal(SIGINT, interrupt);
  std::signal(SIGTERM, interrupt);
  LiveTable table(host.output().stream());
  ChangePrinter printer(host.output().stream());
  bool served = false;
  for (std::uint64_t i = 0; !interrupted && (options.count == 0 || i < options.count); ++i) {
    if (i > 0) {
      sleep_unless_interrupted(options.interval + poller.pause());
      if (interrupted) {
        break;
      }
    }
    served = poller.poll() == LinkState::Online || served;
    if (host.output().is_terminal()) {
      auto lines = layout_table(table_of(poller));
      lines.insert(lines.begin(),
                   fmt::format("{} - {} (Ctrl+C ends)", options.address, to_text(poller.link())));
      table.draw(lines);
    } else {
      printer.print(poller);
    }
  }
  host.output().finish();
  return served ? kExitOk : host.no_plc(poller, "");
}

}  // namespace ostravel::host
