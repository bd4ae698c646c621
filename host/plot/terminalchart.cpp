// SPDX-License-Identifier: MIT
#include "host/plot/terminalchart.h"

#include <fmt/format.h>
#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "host/plot/canvas.h"
#include "host/plot/polylines.h"
#include "host/text.h"

namespace ostravel::host::plot {
namespace {

constexpr int kSmallestWidth = 30;
constexpr int kLeastRows = 3;  // of a panel
constexpr int kRowsPerTick = 3;
// Cyan, yellow, magenta, green, blue, red: apart from each other on dark and light ground.
constexpr std::array<int, 6> kColours{36, 33, 35, 32, 34, 31};

struct Signs {
  const char* side;
  const char* tick;
  const char* corner;
  const char* line;
  const char* down;
};
constexpr Signs kUnicode{"│", "┤", "└", "─", "┬"};
constexpr Signs kAscii{"|", "+", "+", "-", "+"};

int width_of(std::string_view text) {
  return static_cast<int>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string cut(const std::string& text, int width) {
  if (width_of(text) <= width) {
    return text;
  }
  std::string shorter;
  int taken = 0;
  for (const char c : text) {
    taken += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    if (taken > width) {
      break;
    }
    shorter += c;
  }
  return shorter;
}

class Painter {
 public:
  Painter(const Chart& chart, const TerminalOptions& options)
      : chart_(chart), options_(options), signs_(options.unicode ? kUnicode : kAscii) {
    options_.width = std::max(options_.width, kSmallestWidth);
  }

  std::vector<std::string> paint() {
    const auto panels = static_cast<int>(chart_.panels().size());
    rows_ = std::max(options_.height / panels, kLeastRows);
    for (std::size_t i = 0; i < chart_.panels().size(); ++i) {
      axes_.push_back(chart_.values(i, std::max(rows_ / kRowsPerTick + 1, 3)));
      for (const auto& label : axes_.back().labels) {
        label_width_ = std::max(label_width_, width_of(label));
      }
    }
    // A sign of the axis, a blank, and room for a letter at the end of each line.
    plot_width_ = options_.width - label_width_ - 1 - 3;
    times_ = chart_.times(std::max(plot_width_ / (kWidestTimeLabel + 2), 1));
    if (!chart_.options().title.empty()) {
      add(visible(chart_.options().title));
    }
    for (std::size_t i = 0; i < chart_.panels().size(); ++i) {
      paint_legend(i);
      paint_panel(i);
    }
    paint_times();
    return std::move(lines_);
  }

 private:
  void add(const std::string& line) { lines_.push_back(line.substr(0, line.find_last_not_of(' ') + 1)); }

  std::string coloured(const std::string& text, std::size_t series) const {
    return options_.colours && !text.empty()
               ? fmt::format("\033[{}m{}\033[0m", kColours[series % kColours.size()], text)
               : text;
  }

  void paint_legend(std::size_t panel) {
    const auto& unit = chart_.options().unit;
    for (const auto number : chart_.panels()[panel]) {
      const auto& summary = chart_.summary(number);
      const auto numbers =
          fmt::format("  {}{}  ({} to {})", value_text(summary.last), unit.empty() ? "" : " " + unit,
                      value_text(summary.low), value_text(summary.high));
      const auto letter = letter_of(number);
      const auto room = options_.width - width_of(letter) - 1;
      // Of what does not fit, the name matters more than the numbers.
      const auto name = cut(visible(chart_.series()[number].name), room);
      add(coloured(letter, number) + " " + name + cut(numbers, room - width_of(name)));
    }
  }

  void paint_panel(std::size_t panel) {
    const auto& axis = axes_[panel];
    Canvas canvas(plot_width_, rows_, options_.unicode);
    const auto down = [&](double value) {
      return static_cast<int>(
          std::lround((axis.high - value) / (axis.high - axis.low) * (canvas.dots_down() - 1)));
    };
    std::vector<std::string> ends(static_cast<std::size_t>(rows_));
    for (const auto number : chart_.panels()[panel]) {
      draw_series(canvas, number, down);
      const auto& summary = chart_.summary(number);
      if (summary.values > 0) {
        place_letter(ends, number, down(summary.last) * rows_ / canvas.dots_down());
      }
    }
    std::vector<std::string> labels(static_cast<std::size_t>(rows_));
    for (std::size_t i = 0; i < axis.ticks.size(); ++i) {
      labels[static_cast<std::size_t>(down(axis.ticks[i]) * rows_ / canvas.dots_down())] = axis.labels[i];
    }
    for (int row = 0; row < rows_; ++row) {
      const auto& label = labels[static_cast<std::size_t>(row)];
      std::string line(static_cast<std::size_t>(label_width_ - width_of(label)), ' ');
      line += label;
      line += label.empty() ? signs_.side : signs_.tick;
      line += canvas_row(canvas, row);
      const auto& end = ends[static_cast<std::size_t>(row)];
      if (!end.empty()) {
        line.append(" ").append(end);
      }
      add(line);
    }
  }

  template <class Down>
  void draw_series(Canvas& canvas, std::size_t number, Down&& down) const {
    const auto& series = chart_.series()[number];
    const int across = canvas.dots_across();
    for (const auto& line : polylines(series, times_.begin, times_.end, across)) {
      const auto x = [across](const Vertex& vertex) {
        return std::min(static_cast<int>(vertex.x), across - 1);
      };
      const auto* from = &line.front();
      for (const auto& to : line) {
        canvas.line(x(*from), down(from->y), x(to), down(to.y), number);
        from = &to;
      }
    }
  }

  // Lines that end at the same height have their letters one below the other.
  void place_letter(std::vector<std::string>& ends, std::size_t number, int row) const {
    for (int distance = 0; distance < rows_; ++distance) {
      for (const int at : {row + distance, row - distance}) {
        if (at >= 0 && at < rows_ && ends[static_cast<std::size_t>(at)].empty()) {
          ends[static_cast<std::size_t>(at)] = coloured(letter_of(number), number);
          return;
        }
      }
    }
  }

  std::string canvas_row(const Canvas& canvas, int row) const {
    std::string text;
    std::string run;
    int series = -1;
    const auto end_run = [&] {
      text += series < 0 ? run : coloured(run, static_cast<std::size_t>(series));
      run.clear();
    };
    for (int column = 0; column < plot_width_; ++column) {
      const int here = canvas.series(column, row);
      if (here != series) {
        end_run();
        series = here;
      }
      run += canvas.text(column, row);
    }
    end_run();
    return text;
  }

  void paint_times() {
    std::vector<std::string> axis(static_cast<std::size_t>(plot_width_), signs_.line);
    std::string labels(static_cast<std::size_t>(options_.width), ' ');
    const auto span = static_cast<double>((times_.end - times_.begin).count());
    int free_from = 0;
    for (const auto& [time, label] : times_.ticks) {
      const auto place = static_cast<double>((time - times_.begin).count()) / span;
      const int column = std::min(static_cast<int>(place * plot_width_), plot_width_ - 1);
      axis[static_cast<std::size_t>(column)] = signs_.down;
      const int size = width_of(label);
      const int from = std::clamp(label_width_ + 1 + column - size / 2, 0, options_.width - size);
      if (from >= free_from) {
        labels.replace(static_cast<std::size_t>(from), label.size(), label);
        free_from = from + size + 1;
      }
    }
    std::string line(static_cast<std::size_t>(label_width_), ' ');
    line += signs_.corner;
    for (const auto& sign : axis) {
      line += sign;
    }
    add(line);
    add(labels);
    add(std::string(static_cast<std::size_t>(label_width_ + 1), ' ') + "time, " + times_.zone);
  }

  const Chart& chart_;
  TerminalOptions options_;
  Signs signs_;
  int rows_ = 0;
  int label_width_ = 0;
  int plot_width_ = 0;
  std::vector<ValueAxis> axes_;
  TimeAxis times_;
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> draw(const Chart& chart, const TerminalOptions& options) {
  return Painter(chart, options).paint();
}

bool locale_is_unicode() {
  const auto locale = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) {
    return false;
  }
  const bool unicode = std::strcmp(nl_langinfo_l(CODESET, locale), "UTF-8") == 0;
  freelocale(locale);
  return unicode;
}

}  // namespace ostravel::host::plot
