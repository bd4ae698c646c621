// SPDX-License-Identifier: MIT
#include "host/table.h"

#include <fmt/format.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "host/text.h"

namespace ostravel::host {
namespace {

bool is_tail(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Characters, not bytes; wide characters of a terminal count as one.
std::size_t width_of(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return !is_tail(c); }));
}

// The first characters of a UTF-8 text.
std::string_view head_of(std::string_view text, std::size_t characters) {
  std::size_t end = 0;
  while (end < text.size()) {
    if (!is_tail(text[end]) && characters-- == 0) {
      break;
    }
    ++end;
  }
  return text.substr(0, end);
}

std::string cut(const std::string& text, std::size_t limit) {
  constexpr std::string_view kMore = "...";
  if (width_of(text) <= limit) {
    return text;
  }
  return std::string(head_of(text, limit - kMore.size())).append(kMore);
}

struct Size {
  std::size_t lines = 24;
  std::size_t columns = 80;
};

Size size_of(std::FILE* terminal) {
  winsize size{};
  if (ioctl(fileno(terminal), TIOCGWINSZ, &size) != 0 || size.ws_row < 2 || size.ws_col < 10) {
    return {};
  }
  return {size.ws_row, size.ws_col};
}

}  // namespace

std::vector<std::string> layout_table(const std::vector<TableRow>& rows, std::size_t cell_limit) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], width_of(cut(row[i], cell_limit)));
    }
  }
  std::vector<std::string> lines;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const auto cell = cut(row[i], cell_limit);
      line += cell;
      if (i + 1 < row.size()) {
        line.append(widths[i] - width_of(cell) + 2, ' ');
      }
    }
    lines.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
  }
  return lines;
}

std::string value_text(const nlohmann::json& value) {
  return value.is_null() ? "-"
                         : visible(value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

void LiveTable::draw(const std::vector<std::string>& lines) {
  const auto size = size_of(terminal_);
  auto shown = lines;
  if (shown.size() >= size.lines) {
    const auto room = size.lines - 2;
    shown.resize(room);
    shown.push_back(fmt::format("... and {} more", lines.size() - room));
  }
  if (drawn_ > 0) {
    fmt::print(terminal_, "\033[{}A", drawn_);
  }
  for (const auto& line : shown) {
    fmt::print(terminal_, "\033[2K{}\n", head_of(line, size.columns - 1));
  }
  fmt::print(terminal_, "\033[J");
  std::fflush(terminal_);
  drawn_ = shown.size();
}

}  // namespace ostravel::host
