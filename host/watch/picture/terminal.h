// SPDX-License-Identifier: MIT
// A terminal without glass: takes what a program writes and knows what a person would see. As much of an
// xterm as ncurses uses with TERM=xterm-256color, and no more.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::host::picture {

// A colour is 0 to 255, or the terminal's own.
inline constexpr int kOwnColour = -1;

struct Look {
  int foreground = kOwnColour;
  int background = kOwnColour;
  bool bold = false;
  bool dim = false;
  bool underline = false;
  bool reverse = false;
  bool operator==(const Look&) const = default;
};

struct Cell {
  std::string text = " ";  // one character, with what combines with it; empty: right half of a wide one
  Look look;
};

class Terminal {
 public:
  Terminal(std::size_t lines, std::size_t columns);

  // As it comes, sequences and characters may be cut anywhere.
  void write(std::string_view bytes);
  // What is beyond the new size is lost, as in a plain terminal.
  void resize(std::size_t lines, std::size_t columns);

  std::size_t lines() const { return lines_; }
  std::size_t columns() const { return columns_; }
  const Cell& cell(std::size_t line, std::size_t column) const { return shown().cells[line][column]; }
  // Without blanks at its end.
  std::string line(std::size_t line) const;
  // All lines, each with a line end, without the empty ones at the end.
  std::string text() const;

  bool cursor_shown() const { return cursor_shown_; }
  bool alternate() const { return alternate_; }
  bool application_keys() const { return application_keys_; }
  // Sequences that it does not know, for a test to see that there are none.
  const std::vector<std::string>& unknown() const { return unknown_; }

 private:
  struct Page {
    std::vector<std::vector<Cell>> cells;
    std::size_t line = 0;
    std::size_t column = 0;
  };

  Page& shown() { return pages_[alternate_ ? 1 : 0]; }
  const Page& shown() const { return pages_[alternate_ ? 1 : 0]; }
  std::vector<Cell> blank_line() const;
  void control(char c);
  void escape();
  void sequence();
  void character(const std::string& text);
  void edit(char final, int count);
  void move(char final, const std::vector<int>& numbers);
  void erase_screen(int what);
  void erase_cells(std::size_t from, std::size_t to);
  void scroll(std::ptrdiff_t lines);
  void line_feed();
  void set_look(const std::vector<int>& numbers);
  void set_mode(std::string_view parameters, bool on);

  std::size_t lines_;
  std::size_t columns_;
  std::array<Page, 2> pages_;  // main and alternate
  Look look_;
  std::size_t top_ = 0;  // scrolling region, both included
  std::size_t bottom_;
  bool alternate_ = false;
  bool cursor_shown_ = true;
  bool application_keys_ = false;
  bool wrap_next_ = false;  // a character in the last column moves the cursor only with the next one
  std::string last_;        // character, for repeating
  std::string pending_;     // a sequence or character that is not complete
  std::vector<std::string> unknown_;
};

}  // namespace ostravel::host::picture
