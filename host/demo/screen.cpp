// SPDX-License-Identifier: MIT
#include "host/demo/screen.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostravel::host {

void Screen::step(const std::string& title) {
  fmt::print(out_, "\n{}. {}\n", ++steps_, title);
  std::fflush(out_);
  table_ = LiveTable(out_);
}

void Screen::line(const std::string& text) {
  fmt::print(out_, "   {}\n", text);
  std::fflush(out_);
  table_ = LiveTable(out_);
}

void Screen::tags(const Poller& poller, const std::string& heading, bool last, std::size_t rows_shown) {
  if (!terminal_ && !last) {
    return;
  }
  std::vector<TableRow> rows{{"TAG", "TYPE", "VALUE", "STATUS", "CYCLE"}};
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& state = poller.state(i);
    rows.push_back({poller.selection(i).text, std::string(poller.selection(i).tag.type->name),
                    value_text(state.value),
                    fmt::format("{}/{} {}", state.error, state.status, to_text_of_error(state.error)),
                    value_text(state.stamp)});
  }
  auto lines = layout_table(rows);
  lines.insert(lines.begin(), heading);
  if (terminal_) {
    table_.draw(lines);
    return;
  }
  const std::size_t shown = std::min(lines.size(), rows_shown + 2);  // heading and column names come first
  for (std::size_t i = 0; i < shown; ++i) {
    fmt::print(out_, "   {}\n", lines[i]);
  }
  if (shown < lines.size()) {
    fmt::print(out_, "   ... and {} more\n", lines.size() - shown);
  }
  std::fflush(out_);
}

void Screen::table(const std::vector<TableRow>& rows) {
  for (const auto& text : layout_table(rows)) {
    line(text);
  }
}

void Ledger::check(bool good, const std::string& text) {
  constexpr std::size_t kKept = 20;
  ++checks_;
  if (!good) {
    ++failed_;
    if (texts_.size() < kKept) {
      texts_.push_back(text);
    }
  }
}

}  // namespace ostravel::host
