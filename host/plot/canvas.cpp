// SPDX-License-Identifier: MIT
#include "host/plot/canvas.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace ostravel::host::plot {
namespace {

// Braille patterns from U+2800 on have a bit for each dot, in this order.
constexpr std::array<std::array<std::uint8_t, 2>, 4> kDots{
    {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}}};
constexpr std::string_view kMarks = "*+xo#@%&";

}  // namespace

Canvas::Canvas(int width, int height, bool braille)
    : width_(std::max(width, 1)),
      height_(std::max(height, 1)),
      braille_(braille),
      across_(braille ? 2 : 1),
      down_(braille ? 4 : 1),
      cells_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)) {}

const Canvas::Cell& Canvas::cell(int column, int row) const {
  return cells_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                static_cast<std::size_t>(column)];
}

void Canvas::dot(int x, int y, std::size_t series) {
  if (x < 0 || y < 0 || x >= dots_across() || y >= dots_down()) {
    return;
  }
  auto& cell = cells_[static_cast<std::size_t>(y / down_) * static_cast<std::size_t>(width_) +
                      static_cast<std::size_t>(x / across_)];
  const auto bit = kDots[static_cast<std::size_t>(y % down_)][static_cast<std::size_t>(x % across_)];
  cell.dots = static_cast<std::uint8_t>(cell.dots | bit);
  cell.series = static_cast<int>(series);
}

void Canvas::line(int x0, int y0, int x1, int y1, std::size_t series) {
  const int across = std::abs(x1 - x0);
  const int down = std::abs(y1 - y0);
  const int steps = std::max({across, down, 1});
  for (int i = 0; i <= steps; ++i) {
    const auto part = [&](int from, int to) {
      return from + static_cast<int>((2L * (to - from) * i + (to >= from ? steps : -steps)) / (2L * steps));
    };
    dot(part(x0, x1), part(y0, y1), series);
  }
}

std::string Canvas::text(int column, int row) const {
  const auto& here = cell(column, row);
  if (here.series < 0) {
    return " ";
  }
  if (!braille_) {
    return std::string(1, kMarks[static_cast<std::size_t>(here.series) % kMarks.size()]);
  }
  // U+2800 to U+28FF in UTF-8.
  return {'\xE2', static_cast<char>(0xA0 | here.dots >> 6), static_cast<char>(0x80 | (here.dots & 0x3F))};
}

int Canvas::series(int column, int row) const {
  return cell(column, row).series;
}

}  // namespace ostravel::host::plot
