// SPDX-License-Identifier: MIT
#include "host/watch/lines.h"

#include <fmt/format.h>

#include <ctime>

#include "host/commands/shared.h"
#include "host/table.h"
#include "host/text.h"

namespace ostravel::host::watch {
namespace {

std::vector<std::string> columns() {
  auto columns = tag_columns();
  columns.insert(columns.begin(), "time");
  return columns;
}

std::string link_text(const Devices& devices, const TagPoller& poller) {
  std::string text;
  for (const auto device : poller.devices()) {
    const auto& name = devices.projects().device(device).name;
    text += (text.empty() ? "" : ", ") + (name.empty() ? "" : name + " ") + to_text(poller.link(device));
  }
  return text;
}

}  // namespace

std::string utc_text(std::chrono::system_clock::time_point time) {
  const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
  const auto seconds = static_cast<std::time_t>(since.count() / 1000);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", parts.tm_year + 1900, parts.tm_mon + 1,
                     parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec, since.count() % 1000);
}

ChangeLines::ChangeLines(std::FILE* out, Format format) : out_(out), format_(format) {
  if (format_ != Format::Text) {
    rows_.emplace(out_, format_, columns());
  }
}

void ChangeLines::print_tag(const TagPoller& poller, std::size_t i, const std::string& time) {
  if (rows_) {
    auto cells = tag_cells(poller, i);
    cells.insert(cells.begin(), time);
    rows_->write(cells);
  } else {
    fmt::print(out_, "{} = {} ({})\n", visible(poller.tag(i).label), value_text(poller.state(i).value),
               status_text(poller.state(i)));
  }
}

void ChangeLines::print(const Devices& devices, const TagPoller& poller,
                        std::chrono::system_clock::time_point now) {
  const auto link = link_text(devices, poller);
  if (link_ != link && format_ == Format::Text) {
    fmt::print(out_, "# {}\n", link);
  }
  link_ = link;
  const auto time = utc_text(now);
  printed_.resize(poller.size());
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    auto& printed = printed_[i];
    if (printed.error != state.error || printed.status != state.status || printed.value != state.value) {
      print_tag(poller, i, time);
      printed = {state.value, state.error, state.status};
    }
  }
  std::fflush(out_);
}

}  // namespace ostravel::host::watch
