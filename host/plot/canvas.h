// SPDX-License-Identifier: MIT
// Characters of a terminal to draw lines on: in Braille patterns, eight dots a character, or in ASCII, one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ostravel::host::plot {

class Canvas {
 public:
  // In characters.
  Canvas(int width, int height, bool braille);

  // In dots.
  int dots_across() const { return width_ * across_; }
  int dots_down() const { return height_ * down_; }

  // From dot to dot, both included; 0,0 is the upper left one. What lies outside is left out.
  void line(int x0, int y0, int x1, int y1, std::size_t series);

  // One character; the last series that has a dot in it, -1 for none.
  std::string text(int column, int row) const;
  int series(int column, int row) const;

 private:
  struct Cell {
    std::uint8_t dots = 0;
    int series = -1;
  };
  void dot(int x, int y, std::size_t series);
  const Cell& cell(int column, int row) const;

  int width_;
  int height_;
  bool braille_;
  int across_;
  int down_;
  std::vector<Cell> cells_;
};

}  // namespace ostravel::host::plot
