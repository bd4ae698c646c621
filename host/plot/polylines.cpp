// SPDX-License-Identifier: MIT
#include "host/plot/polylines.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ostravel::host::plot {
namespace {

// The points of one column, of which at most four are kept.
class Column {
 public:
  void add(const Vertex& vertex) {
    if (count_ == 0) {
      first_ = lowest_ = highest_ = last_ = {vertex, 0};
    }
    last_ = {vertex, count_};
    if (vertex.y < lowest_.vertex.y) {
      lowest_ = last_;
    }
    if (vertex.y > highest_.vertex.y) {
      highest_ = last_;
    }
    ++count_;
  }

  void move_to(Polyline& line) {
    std::array kept{first_, lowest_, highest_, last_};
    std::sort(kept.begin(), kept.end(), [](const auto& a, const auto& b) { return a.number < b.number; });
    for (std::size_t i = 0; count_ > 0 && i < kept.size(); ++i) {
      if (i == 0 || kept[i].number != kept[i - 1].number) {
        line.push_back(kept[i].vertex);
      }
    }
    count_ = 0;
  }

 private:
  struct Numbered {
    Vertex vertex;
    std::size_t number = 0;
  };
  Numbered first_;
  Numbered lowest_;
  Numbered highest_;
  Numbered last_;
  std::size_t count_ = 0;
};

Polyline stepped(const Polyline& line) {
  Polyline steps;
  for (const auto& vertex : line) {
    if (!steps.empty() && steps.back().y != vertex.y) {
      steps.push_back({vertex.x, steps.back().y});
    }
    steps.push_back(vertex);
  }
  return steps;
}

}  // namespace

std::vector<Polyline> polylines(const Series& series, Moment begin, Moment end, int columns) {
  const auto span = static_cast<double>((end - begin).count());
  std::vector<Polyline> lines;
  Polyline line;
  Column column;
  int current = -1;
  const auto end_line = [&] {
    column.move_to(line);
    if (!line.empty()) {
      lines.push_back(series.stepped ? stepped(line) : std::move(line));
    }
    line.clear();
    current = -1;
  };
  for (const auto& point : series.points) {
    if (point.is_gap()) {
      end_line();
      continue;
    }
    if (point.time < begin || point.time > end) {
      continue;
    }
    const double x = static_cast<double>((point.time - begin).count()) / span * columns;
    const int place = std::min(static_cast<int>(x), columns - 1);
    if (place != current) {
      column.move_to(line);
      current = place;
    }
    column.add({x, point.value});
  }
  end_line();
  return lines;
}

}  // namespace ostravel::host::plot
