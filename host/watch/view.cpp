// SPDX-License-Identifier: MIT
#include "host/watch/view.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "host/watch/columns.h"
#include "host/watch/pages.h"
#include "host/watch/wording.h"

namespace ostravel::host::watch {
namespace {

std::size_t cells_of(const StyledLine& line) {
  std::size_t cells = 0;
  for (const auto& span : line) {
    cells += watch::cells_of(span.text);
  }
  return cells;
}

// Cut to the screen's width.
StyledLine cut_line(StyledLine line, std::size_t columns, Charset charset) {
  std::size_t left = columns;
  for (auto& span : line) {
    span.text = cut(span.text, left, charset);
    left -= watch::cells_of(span.text);
  }
  return line;
}

// Left text and right text at the two ends of a line; when both do not fit, pieces of the right one go, the
// first ones first.
struct Ends {
  std::string left;
  std::vector<std::string> right;
};
std::string join_ends(Ends ends, std::size_t columns, Charset charset) {
  std::string right;
  for (;;) {
    right.clear();
    for (const auto& piece : ends.right) {
      right += (right.empty() ? "" : "  ") + piece;
    }
    if (ends.right.empty() || watch::cells_of(ends.left) + 2 + watch::cells_of(right) <= columns) {
      break;
    }
    ends.right.erase(ends.right.begin());
  }
  const auto room = columns - std::min(columns, watch::cells_of(right));
  return fit_left(ends.left, room, charset) + right;
}

StyledLine title_line(const Model& model, const Browser& browser, Charset charset) {
  Ends ends;
  std::uint64_t recoveries = 0;
  std::chrono::microseconds round_time{0};
  bool polled = false;
  for (const auto& device : model.devices()) {
    ends.left += (ends.left.empty() ? " " : ", ") + device_text(device);
    recoveries += device.recoveries;
    round_time = std::max(round_time, device.round_time);
    polled = polled || device.rounds > 0;
  }
  ends.left = printable(ends.left, charset);
  ends.right.push_back(count_text(model.size()) + " tags");
  ends.right.push_back(fmt::format("recovered {}x", recoveries));
  ends.right.push_back(browser.paused()
                           ? "PAUSED"
                           : fmt::format("poll {} every {}", polled ? time_text(round_time) : "-",
                                         time_text(browser.interval())));
  ends.right.back() += ' ';
  return {{join_ends(std::move(ends), browser.size().columns, charset), Style::Title, false}};
}

class TableView {
 public:
  TableView(const Model& model, const Browser& browser, TimePoint now, Charset charset, Columns columns)
      : model_(model), browser_(browser), now_(now), charset_(charset), columns_(columns) {}

  StyledLine heading() const {
    StyledLine line;
    add(line, heading_cell("TAG", SortKey::Tag), columns_.tag, Style::Heading);
    add(line, heading_cell("TYPE", SortKey::Type), columns_.type, Style::Heading);
    add(line, heading_cell("VALUE", SortKey::Value), columns_.value, Style::Heading);
    add(line, heading_cell("QUALITY", SortKey::Quality), columns_.quality, Style::Heading);
    add(line, heading_cell("AGE", SortKey::Age), columns_.age, Style::Heading, Align::Right);
    add(line, heading_cell("CH/S", SortKey::Rate), columns_.rate, Style::Heading, Align::Right);
    add(line, "LAST MINUTE", columns_.trend, Style::Heading);
    return line;
  }

  StyledLine row(std::size_t index, bool selected) const {
    const auto& of = model_.row(index);
    StyledLine line;
    add_tag(line, of.label());
    add(line, of.type(), columns_.type, Style::Faint);
    add(line, shown_value(of), columns_.value, of.is_good() ? Style::Plain : Style::Faint);
    add(line, quality_text(of), columns_.quality, style_of(of));
    add(line, age_text(of.age(now_)), columns_.age, Style::Plain, Align::Right);
    add(line, rate_text(model_.rate(index, now_)), columns_.rate, Style::Plain, Align::Right);
    if (columns_.trend > 0) {
      gap(line);
      const auto trend = sparkline(model_.trend(index, now_, columns_.trend), charset_);
      line.push_back({fit_left(trend, columns_.trend, charset_), Style::Trend, false});
    }
    const auto filled = cells_of(line);
    const auto width = browser_.size().columns;
    line.push_back({std::string(width - std::min(width, filled), ' '), Style::Plain, false});
    for (auto& span : line) {
      span.selected = selected;
    }
    return line;
  }

 private:
  enum class Align : std::uint8_t { Left, Right };

  static Style style_of(const Row& row) {
    constexpr BYTE kNotReady = 13;
    return row.is_good() ? Style::Good : row.error() == kNotReady ? Style::Doubtful : Style::Bad;
  }

  std::string heading_cell(const char* name, SortKey key) const {
    if (browser_.listing().sort() != key) {
      return name;
    }
    const bool down = browser_.listing().descending();
    const bool utf8 = charset_ == Charset::Utf8;
    return std::string(name) + (down ? (utf8 ? "▼" : "v") : (utf8 ? "▲" : "^"));
  }

  static void gap(StyledLine& line) {
    if (!line.empty()) {
      line.push_back({std::string(Columns::kGap, ' '), Style::Plain, false});
    }
  }

  void add(StyledLine& line, const std::string& text, std::size_t width, Style style,
           Align align = Align::Left) const {
    if (width == 0) {
      return;
    }
    gap(line);
    // No more of a long value is looked at than can be seen.
    constexpr std::size_t kBytesOfACell = 16;
    const auto shown = printable(text.substr(0, width * kBytesOfACell), charset_);
    line.push_back(
        {align == Align::Left ? fit_left(shown, width, charset_) : fit_right(shown, width, charset_), style,
         false});
  }

  // Of a long path the end tells more than the beginning.
  void add_tag(StyledLine& line, const std::string& label) const {
    const auto shown = printable(label, charset_);
    line.push_back(
        {fit_left(cut_front(shown, columns_.tag, charset_), columns_.tag, charset_), Style::Plain, false});
  }

  const Model& model_;
  const Browser& browser_;
  TimePoint now_;
  Charset charset_;
  Columns columns_;
};

StyledLine detail_line(const Model& model, const Browser& browser, Charset charset) {
  const auto current = browser.current();
  if (!current) {
    return {{" no tag fits the filter", Style::Faint, false}};
  }
  const auto& row = model.row(*current);
  const auto link = model.devices()[row.device()].link;
  const auto text =
      row.is_good() ? fmt::format(" {} = {}", row.label(), shown_value(row))
                    : fmt::format(" {}: {}, {}", row.label(), quality_text(row), explain(row, link).cause);
  return {{printable(text, charset), Style::Faint, false}};
}

constexpr auto kKeys = std::to_array<std::pair<const char*, const char*>>({{"?", "help"},
                                                                           {"q", "quit"},
                                                                           {"/", "filter"},
                                                                           {"< >", "sort"},
                                                                           {"r", "reverse"},
                                                                           {"b", "bad only"},
                                                                           {"p", "pause"},
                                                                           {"Enter", "details"},
                                                                           {"+ -", "poll time"}});

std::string place_text(const Browser& browser, Charset charset) {
  const auto& listing = browser.listing();
  const auto count = listing.rows().size();
  const auto last = std::min(browser.top() + areas_of(browser.size()).body, count);
  auto text = fmt::format("{}-{} of {}", count_text(count == 0 ? 0 : browser.top() + 1), count_text(last),
                          count_text(count));
  if (listing.only_bad()) {
    text = "bad only  " + text;
  }
  if (!listing.filter().empty() && !browser.typing_filter()) {
    text = "/" + cut(printable(listing.filter(), charset), 20, charset) + "  " + text;
  }
  return text + " ";
}

StyledLine keys_line(const Browser& browser, Charset charset) {
  const auto columns = browser.size().columns;
  const auto place = place_text(browser, charset);
  const auto room = columns - std::min(columns, watch::cells_of(place) + 1);
  StyledLine line;
  if (browser.typing_filter()) {
    const auto typed = printable(browser.listing().filter(), charset);
    line.push_back({" /" + typed + "_", Style::KeyName, false});
  } else {
    std::size_t used = 0;
    for (const auto& [key, meaning] : kKeys) {
      const std::string name = std::string(" ") + key;
      const std::string does = std::string(" ") + meaning + " ";
      used += name.size() + does.size();
      if (used > room) {
        break;
      }
      line.push_back({name, Style::KeyName, false});
      line.push_back({does, Style::Plain, false});
    }
  }
  line = cut_line(std::move(line), room, charset);
  line.push_back(
      {fit_right(place, columns - std::min(columns, cells_of(line)), charset), Style::Plain, false});
  return line;
}

std::vector<StyledLine> body(const Model& model, const Browser& browser, TimePoint now, Charset charset) {
  switch (browser.page()) {
    case Browser::Page::Help:
      return help_page();
    case Browser::Page::Details:
      if (const auto current = browser.current()) {
        return details_page(model, *current, now, browser.size().columns, charset);
      }
      break;
    case Browser::Page::Table:
      break;
  }
  const auto columns = columns_for(browser.size().columns, model.widest_label(), model.widest_type());
  const TableView table(model, browser, now, charset, columns);
  std::vector<StyledLine> lines;
  if (areas_of(browser.size()).heading) {
    lines.push_back(table.heading());
  }
  auto place = browser.top();
  for (const auto row : browser.visible()) {
    lines.push_back(table.row(row, place++ == browser.cursor()));
  }
  return lines;
}

}  // namespace

std::vector<StyledLine> draw(const Model& model, const Browser& browser, TimePoint now, Charset charset) {
  const auto size = browser.size();
  const auto areas = areas_of(size);
  std::vector<StyledLine> lines{title_line(model, browser, charset)};
  auto middle = body(model, browser, now, charset);
  middle.resize(areas.body + (areas.heading ? 1 : 0));
  std::move(middle.begin(), middle.end(), std::back_inserter(lines));
  if (areas.detail) {
    lines.push_back(detail_line(model, browser, charset));
  }
  if (areas.keys) {
    lines.push_back(keys_line(browser, charset));
  }
  lines.resize(size.lines);
  for (auto& line : lines) {
    line = cut_line(std::move(line), size.columns, charset);
  }
  return lines;
}

std::string text_of(const StyledLine& line) {
  std::string text;
  for (const auto& span : line) {
    text += span.text;
  }
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace ostravel::host::watch
