// SPDX-License-Identifier: MIT
#include "host/watch/picture/terminal.h"

#include <algorithm>
#include <charconv>

#include "host/watch/cells.h"

namespace ostravel::host::picture {
namespace {

constexpr char kEscape = '\033';

std::vector<int> numbers_of(std::string_view parameters) {
  std::vector<int> numbers;
  while (!parameters.empty()) {
    const auto end = parameters.find(';');
    const auto part = parameters.substr(0, end);
    int number = -1;  // left out
    std::from_chars(part.data(), part.data() + part.size(), number);
    numbers.push_back(number);
    parameters.remove_prefix(end == std::string_view::npos ? parameters.size() : end + 1);
  }
  return numbers;
}

int number_at(const std::vector<int>& numbers, std::size_t i, int otherwise) {
  return i < numbers.size() && numbers[i] >= 0 ? numbers[i] : otherwise;
}

std::size_t length_of_character(char first) {
  const auto byte = static_cast<unsigned char>(first);
  return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// From 1 on, as sequences count, into the range.
std::size_t place(int number, std::size_t count) {
  return static_cast<std::size_t>(std::clamp(number - 1, 0, static_cast<int>(count) - 1));
}

}  // namespace

Terminal::Terminal(std::size_t lines, std::size_t columns)
    : lines_(lines), columns_(columns), bottom_(lines - 1) {
  for (auto& page : pages_) {
    page.cells.assign(lines_, blank_line());
  }
}

std::vector<Cell> Terminal::blank_line() const {
  return std::vector<Cell>(columns_, Cell{" ", {kOwnColour, look_.background}});
}

void Terminal::resize(std::size_t lines, std::size_t columns) {
  lines_ = lines;
  columns_ = columns;
  top_ = 0;
  bottom_ = lines - 1;
  for (auto& page : pages_) {
    for (auto& line : page.cells) {
      line.resize(columns);
    }
    page.cells.resize(lines, blank_line());
    page.line = std::min(page.line, lines - 1);
    page.column = std::min(page.column, columns - 1);
  }
}

void Terminal::write(std::string_view bytes) {
  for (const char c : bytes) {
    pending_ += c;
    if (pending_.front() == kEscape) {
      escape();
    } else if (static_cast<unsigned char>(pending_.front()) < 0x20) {
      control(c);
      pending_.clear();
    } else if (pending_.size() >= length_of_character(pending_.front())) {
      character(pending_);
      pending_.clear();
    }
  }
}

void Terminal::control(char c) {
  auto& page = shown();
  wrap_next_ = false;
  switch (c) {
    case '\r':
      page.column = 0;
      break;
    case '\n':
      line_feed();
      break;
    case '\b':
      page.column -= page.column > 0 ? 1 : 0;
      break;
    case '\t':
      page.column = std::min(columns_ - 1, (page.column / 8 + 1) * 8);
      break;
    default:
      break;
  }
}

void Terminal::line_feed() {
  auto& page = shown();
  if (page.line == bottom_) {
    scroll(1);
  } else {
    page.line = std::min(page.line + 1, lines_ - 1);
  }
}

void Terminal::scroll(std::ptrdiff_t lines) {
  auto& cells = shown().cells;
  const auto from = cells.begin() + static_cast<std::ptrdiff_t>(top_);
  const auto to = cells.begin() + static_cast<std::ptrdiff_t>(bottom_) + 1;
  const auto count = std::min<std::ptrdiff_t>(lines < 0 ? -lines : lines, to - from);
  if (lines > 0) {
    std::rotate(from, from + count, to);
    std::fill(to - count, to, blank_line());
  } else {
    std::rotate(from, to - count, to);
    std::fill(from, from + count, blank_line());
  }
}

void Terminal::character(const std::string& text) {
  auto& page = shown();
  const auto cells = watch::cells_of(text);
  if (cells == 0) {
    page.cells[page.line][page.column - (page.column > 0 ? 1 : 0)].text += text;
    return;
  }
  if (wrap_next_ || page.column + cells > columns_) {
    page.column = 0;
    line_feed();
  }
  wrap_next_ = false;
  page.cells[page.line][page.column] = {text, look_};
  if (cells == 2) {
    page.cells[page.line][page.column + 1] = {"", look_};
  }
  page.column += cells;
  if (page.column >= columns_) {
    page.column = columns_ - 1;
    wrap_next_ = true;
  }
  last_ = text;
}

// Called with each further byte of a sequence; clears it when it is complete.
void Terminal::escape() {
  if (pending_.size() < 2) {
    return;
  }
  const char kind = pending_[1];
  const char last = pending_.back();
  if (kind == '[') {
    if (pending_.size() > 2 && last >= '@' && last <= '~') {
      sequence();
      pending_.clear();
    }
    return;
  }
  if (kind == '(' || kind == ')') {  // choice of a character set
    if (pending_.size() > 2) {
      pending_.clear();
    }
    return;
  }
  if (kind == 'M') {
    if (shown().line == top_) {
      scroll(-1);
    } else {
      shown().line -= shown().line > 0 ? 1 : 0;
    }
  } else if (kind != '=' && kind != '>' && kind != '7' && kind != '8') {
    unknown_.push_back(pending_);
  }
  pending_.clear();
}

void Terminal::sequence() {
  const char final = pending_.back();
  const std::string_view parameters = std::string_view(pending_).substr(2, pending_.size() - 3);
  if (final == 'h' || final == 'l') {
    set_mode(parameters, final == 'h');
    return;
  }
  const auto numbers = numbers_of(parameters);
  if (final == 'm') {
    set_look(numbers);
  } else if (final == 'r') {
    top_ = place(number_at(numbers, 0, 1), lines_);
    bottom_ = place(number_at(numbers, 1, static_cast<int>(lines_)), lines_);
    shown().line = shown().column = 0;
  } else if (std::string_view("ABCDEFGHdf").find(final) != std::string_view::npos) {
    wrap_next_ = false;
    move(final, numbers);
  } else if (final == 'J') {
    erase_screen(number_at(numbers, 0, 0));
  } else if (std::string_view("KXP@LMSTb").find(final) != std::string_view::npos) {
    edit(final, number_at(numbers, 0, final == 'K' ? 0 : 1));
  } else if (final != 't') {  // 't' is about the window's title
    unknown_.push_back(pending_);
  }
}

void Terminal::move(char final, const std::vector<int>& numbers) {
  auto& page = shown();
  const int count = std::max(number_at(numbers, 0, 1), 1);
  const auto go = [](std::size_t& position, int by, std::size_t limit) {
    position =
        static_cast<std::size_t>(std::clamp(static_cast<int>(position) + by, 0, static_cast<int>(limit) - 1));
  };
  switch (final) {
    case 'A':
    case 'F':
      go(page.line, -count, lines_);
      page.column = final == 'F' ? 0 : page.column;
      break;
    case 'B':
    case 'E':
      go(page.line, count, lines_);
      page.column = final == 'E' ? 0 : page.column;
      break;
    case 'C':
      go(page.column, count, columns_);
      break;
    case 'D':
      go(page.column, -count, columns_);
      break;
    case 'G':
      page.column = place(count, columns_);
      break;
    case 'd':
      page.line = place(count, lines_);
      break;
    default:
      page.line = place(count, lines_);
      page.column = place(number_at(numbers, 1, 1), columns_);
  }
}

void Terminal::erase_cells(std::size_t from, std::size_t to) {
  auto& page = shown();
  auto& line = page.cells[page.line];
  std::fill(line.begin() + static_cast<std::ptrdiff_t>(from),
            line.begin() + static_cast<std::ptrdiff_t>(std::min(to, columns_)),
            Cell{" ", {kOwnColour, look_.background}});
}

void Terminal::erase_screen(int what) {
  auto& page = shown();
  for (std::size_t i = 0; i < lines_; ++i) {
    if (what == 2 || (what == 0 && i > page.line) || (what == 1 && i < page.line)) {
      page.cells[i] = blank_line();
    }
  }
  erase_cells(what == 0 ? page.column : 0, what == 1 ? page.column + 1 : columns_);
}

void Terminal::edit(char final, int count) {
  auto& page = shown();
  auto& line = page.cells[page.line];
  const auto number = static_cast<std::size_t>(std::max(count, 0));
  const auto at = line.begin() + static_cast<std::ptrdiff_t>(page.column);
  const auto shift = static_cast<std::ptrdiff_t>(std::min(number, columns_ - page.column));
  const auto saved_top = top_;
  switch (final) {
    case 'K':
      erase_cells(count == 0 ? page.column : 0, count == 1 ? page.column + 1 : columns_);
      break;
    case 'X':
      erase_cells(page.column, page.column + number);
      break;
    case 'P':
      std::rotate(at, at + shift, line.end());
      erase_cells(columns_ - static_cast<std::size_t>(shift), columns_);
      break;
    case '@':
      std::rotate(at, line.end() - shift, line.end());
      erase_cells(page.column, page.column + number);
      break;
    case 'L':
    case 'M':
      top_ = page.line;
      scroll(final == 'M' ? count : -count);
      top_ = saved_top;
      break;
    case 'S':
    case 'T':
      scroll(final == 'S' ? count : -count);
      break;
    default:
      for (std::size_t i = 0; i < number; ++i) {
        character(std::string(last_));
      }
  }
}

void Terminal::set_look(const std::vector<int>& numbers) {
  if (numbers.empty()) {
    look_ = {};
  }
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const int number = numbers[i];
    const bool indexed = (number == 38 || number == 48) && number_at(numbers, i + 1, 0) == 5;
    if (indexed) {
      (number == 38 ? look_.foreground : look_.background) = number_at(numbers, i + 2, 0);
      i += 2;
    } else if (number <= 0) {
      look_ = {};
    } else if (number == 1) {
      look_.bold = true;
    } else if (number == 2) {
      look_.dim = true;
    } else if (number == 4 || number == 24) {
      look_.underline = number == 4;
    } else if (number == 7 || number == 27) {
      look_.reverse = number == 7;
    } else if (number == 22) {
      look_.bold = look_.dim = false;
    } else if (number >= 30 && number <= 37) {
      look_.foreground = number - 30;
    } else if (number == 39) {
      look_.foreground = kOwnColour;
    } else if (number >= 40 && number <= 47) {
      look_.background = number - 40;
    } else if (number == 49) {
      look_.background = kOwnColour;
    } else {
      unknown_.push_back("look " + std::to_string(number));
    }
  }
}

void Terminal::set_mode(std::string_view parameters, bool on) {
  if (parameters == "?1049") {
    if (on && !alternate_) {
      pages_[1].cells.assign(lines_, blank_line());
    }
    alternate_ = on;
  } else if (parameters == "?25") {
    cursor_shown_ = on;
  } else if (parameters == "?1") {
    application_keys_ = on;
  } else if (parameters != "?7" && parameters != "4" && parameters != "?12") {
    unknown_.push_back("mode " + std::string(parameters));
  }
}

std::string Terminal::line(std::size_t line) const {
  std::string text;
  for (const auto& cell : shown().cells[line]) {
    text += cell.text;
  }
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string Terminal::text() const {
  std::string text;
  for (std::size_t i = 0; i < lines_; ++i) {
    text += line(i) + "\n";
  }
  const auto last = text.find_last_not_of('\n');
  return last == std::string::npos ? "" : text.substr(0, last + 2);
}

}  // namespace ostravel::host::picture
