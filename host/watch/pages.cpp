// SPDX-License-Identifier: MIT
#include "host/watch/pages.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "host/watch/wording.h"

namespace ostravel::host::watch {
namespace {

constexpr std::size_t kNameCells = 14;

constexpr auto kHelp = std::to_array<std::pair<const char*, const char*>>({
    {"Up, Down, k, j", "one tag up or down"},
    {"Page Up, Down", "a page; the space bar is a page down"},
    {"Home, End, g, G", "first and last tag"},
    {"<, >", "sort by the column before or after; Left and Right do the same"},
    {"r", "reverse the order"},
    {"/", "filter by name: words that it has, !words that it does not have"},
    {"b", "only tags without a good value"},
    {"Esc", "show all tags again"},
    {"Enter", "everything about the tag under the cursor"},
    {"+, -", "poll less often, more often"},
    {"p", "pause polling, go on"},
    {"q, Ctrl+C", "end"},
    {"", ""},
    {"QUALITY", "what the runtime gets: 0 ok, 2 no data, 13 not ready"},
    {"AGE", "time since the value was last delivered"},
    {"CH/S", "changes a second that polling has seen, over the last 10 s"},
    {"LAST MINUTE", "numbers between their lowest and highest of that time"},
});

// In pieces of at most that many cells.
std::vector<std::string> wrap(std::string_view text, std::size_t cells, Charset charset) {
  std::vector<std::string> pieces;
  std::string rest = printable(text, charset);
  while (cells > 1 && cells_of(rest) > cells) {
    // What fits, without the mark that cut leaves in the last cell.
    auto head = cut(rest, cells, charset);
    head.resize(head.size() - (charset == Charset::Utf8 ? std::string_view("…").size() : 1));
    const auto blank = head.rfind(' ');
    const bool at_blank = blank != std::string::npos && blank > head.size() / 2;
    head.resize(at_blank ? blank : head.size());
    if (head.empty()) {
      break;
    }
    rest.erase(0, head.size() + (at_blank ? 1 : 0));
    pieces.push_back(std::move(head));
  }
  pieces.push_back(std::move(rest));
  return pieces;
}

}  // namespace

std::vector<StyledLine> help_page() {
  std::vector<StyledLine> lines;
  lines.push_back({});
  for (const auto& [name, meaning] : kHelp) {
    lines.push_back({{"  ", Style::Plain, false},
                     {fit_left(name, 16, Charset::Ascii), Style::KeyName, false},
                     {std::string("  ") + meaning, Style::Plain, false}});
  }
  lines.push_back({});
  lines.push_back({{"  Any key goes back to the table.", Style::Faint, false}});
  return lines;
}

std::vector<StyledLine> details_page(const Model& model, std::size_t row, TimePoint now, std::size_t columns,
                                     Charset charset) {
  const auto& of = model.row(row);
  const auto& device = model.devices()[of.device()];
  std::vector<StyledLine> lines;
  lines.push_back({});
  const std::size_t room = columns > kNameCells + 4 ? columns - kNameCells - 4 : 1;
  const auto add = [&](const char* name, std::string_view text, Style style = Style::Plain) {
    std::string heading = name;
    for (auto& piece : wrap(text, room, charset)) {
      lines.push_back({{"  ", Style::Plain, false},
                       {fit_left(heading, kNameCells, charset), Style::Heading, false},
                       {"  ", Style::Plain, false},
                       {std::move(piece), style, false}});
      heading.clear();
    }
  };
  const auto explanation = explain(of, device.link);
  add("Tag", of.label());
  add("Type", of.type());
  add("Device", device_text(device));
  add("Quality", fmt::format("{}/{} {}", of.error(), of.status(),
                             quality_text(of).substr(quality_text(of).find(' ') + 1)));
  add("Cause", explanation.cause);
  add("Remedy", explanation.remedy);
  add("Age", age_text(of.age(now)));
  add("Changes", rate_text(model.rate(row, now)) + " a second");
  const auto trend = model.trend(row, now, History::kSeconds);
  std::optional<double> low;
  std::optional<double> high;
  for (const auto& value : trend) {
    if (value) {
      low = std::min(low.value_or(*value), *value);
      high = std::max(high.value_or(*value), *value);
    }
  }
  if (low) {
    add("Last minute", fmt::format("{:.6g} to {:.6g}", *low, *high));
    add("", sparkline(model.trend(row, now, std::min<std::size_t>(room, History::kSeconds)), charset),
        Style::Trend);
  }
  add("Value", shown_value(of));
  lines.push_back({});
  lines.push_back({{"  Any key goes back to the table.", Style::Faint, false}});
  return lines;
}

}  // namespace ostravel::host::watch
