// SPDX-License-Identifier: MIT
#include "host/plot/svgchart.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "host/plot/polylines.h"
#include "host/text.h"

namespace ostravel::host::plot {
namespace {

constexpr int kLeft = 84;  // room for labels and the values' name
constexpr int kRight = 36;
constexpr int kTop = 16;
constexpr int kTitleHeight = 28;
constexpr int kLegendHeight = 22;
constexpr int kBetween = 22;
constexpr int kBottom = 56;
constexpr double kLetterHeight = 13;
constexpr double kHalfLetter = 4;
constexpr int kPixelsPerTick = 40;
constexpr int kPixelsPerTime = 110;

struct Style {
  const char* colour;
  const char* dashes;
};
constexpr std::array<Style, 7> kStyles{{{"#0072b2", ""},
                                        {"#d55e00", "7 3"},
                                        {"#009e73", "2 3"},
                                        {"#cc79a7", "9 3 2 3"},
                                        {"#e69f00", "5 2"},
                                        {"#56b4e9", "12 4"},
                                        {"#333333", "3 2 1 2"}}};

std::string stroke(std::size_t series) {
  const auto& style = kStyles[series % kStyles.size()];
  return fmt::format("stroke=\"{}\"{}", style.colour,
                     *style.dashes == 0 ? "" : fmt::format(" stroke-dasharray=\"{}\"", style.dashes));
}

// Coordinates to a hundredth of a pixel, without idle zeros.
std::string number(double value) {
  auto text = fmt::format("{:.2f}", value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) {
    text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

class Drawing {
 public:
  Drawing(const Chart& chart, const SvgOptions& options)
      : chart_(chart), options_(options), plot_width_(std::max(options.width - kLeft - kRight, 100)) {}

  std::string draw() {
    times_ = chart_.times(plot_width_ / kPixelsPerTime);
    int y = kTop + (chart_.options().title.empty() ? 0 : kTitleHeight);
    for (std::size_t panel = 0; panel < chart_.panels().size(); ++panel) {
      y = draw_legend(panel, y);
      draw_panel(panel, y);
      y += options_.panel_height + kBetween;
    }
    y -= kBetween;
    draw_times(y);
    return head(y + kBottom) + fmt::to_string(body_) + "</svg>\n";
  }

 private:
  template <class... Arguments>
  void add(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    fmt::format_to(std::back_inserter(body_), format, std::forward<Arguments>(arguments)...);
  }

  std::string name() const {
    if (!chart_.options().title.empty()) {
      return chart_.options().title;
    }
    std::string names;
    for (const auto& series : chart_.series()) {
      names += (names.empty() ? "" : ", ") + series.name;
    }
    return names;
  }

  std::string head(int height) const {
    auto text = fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" "
        "role=\"img\" "
        "font-family=\"sans-serif\" font-size=\"12\" fill=\"#222222\">\n"
        "<title>{2}</title>\n"
        "<desc>{3} to {4}</desc>\n"
        "<rect width=\"{0}\" height=\"{1}\" fill=\"#ffffff\"/>\n",
        options_.width, height, xml_text(name()), record::iso_text(times_.begin),
        record::iso_text(times_.end));
    if (!chart_.options().title.empty()) {
      text += fmt::format("<text x=\"{}\" y=\"{}\" font-size=\"16\" font-weight=\"bold\">{}</text>\n", kLeft,
                          kTop + 12, xml_text(chart_.options().title));
    }
    return text;
  }

  int draw_legend(std::size_t panel, int y) {
    const auto& unit = chart_.options().unit;
    for (const auto series : chart_.panels()[panel]) {
      const auto& summary = chart_.summary(series);
      const int middle = y + kLegendHeight / 2 - 2;
      add("<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" {} stroke-width=\"2\"/>\n", kLeft, middle,
          kLeft + 34, middle, stroke(series));
      add("<text x=\"{}\" y=\"{}\"><tspan font-weight=\"bold\">{}</tspan> {}"
          "<tspan dx=\"8\" fill=\"#666666\">last {}{}, {} to {}</tspan></text>\n",
          kLeft + 42, middle + 4, letter_of(series), xml_text(chart_.series()[series].name),
          value_text(summary.last), unit.empty() ? "" : " " + xml_text(unit), value_text(summary.low),
          value_text(summary.high));
      y += kLegendHeight;
    }
    return y + 4;
  }

  double x_of(Moment time) const {
    const auto span = static_cast<double>((times_.end - times_.begin).count());
    return kLeft + static_cast<double>((time - times_.begin).count()) / span * plot_width_;
  }

  void draw_panel(std::size_t panel, int top) {
    const auto axis = chart_.values(panel, std::max(options_.panel_height / kPixelsPerTick, 3));
    const double height = options_.panel_height;
    const auto y_of = [&](double value) {
      return top + (axis.high - value) / (axis.high - axis.low) * height;
    };
    for (const auto& [from, to] : chart_.gaps(panel)) {
      add("<rect class=\"gap\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"#f0f0f0\"><title>no data, "
          "{} to "
          "{}</title></rect>\n",
          number(x_of(from)), top, number(x_of(to) - x_of(from)), options_.panel_height,
          record::iso_text(from), record::iso_text(to));
    }
    for (const auto& tick : times_.ticks) {
      const auto x = number(x_of(tick.time));
      add("<line x1=\"{0}\" y1=\"{1}\" x2=\"{0}\" y2=\"{2}\" stroke=\"#e2e2e2\"/>\n", x, top,
          top + options_.panel_height);
    }
    for (std::size_t i = 0; i < axis.ticks.size(); ++i) {
      const auto y = number(y_of(axis.ticks[i]));
      add("<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" stroke=\"#e2e2e2\"/>\n", kLeft, y,
          kLeft + plot_width_, y);
      add("<text x=\"{}\" y=\"{}\" text-anchor=\"end\">{}</text>\n", kLeft - 8,
          number(y_of(axis.ticks[i]) + kHalfLetter), axis.labels[i]);
    }
    add("<path d=\"M{0} {1}V{2}H{3}\" fill=\"none\" stroke=\"#666666\"/>\n", kLeft, top,
        top + options_.panel_height, kLeft + plot_width_);
    draw_values_name(panel, top);
    for (const auto series : chart_.panels()[panel]) {
      draw_series(series, y_of);
    }
  }

  // The unit where there is one; else what the values are, if all are of one tag.
  void draw_values_name(std::size_t panel, int top) {
    const auto& members = chart_.panels()[panel];
    const auto& unit = chart_.options().unit;
    const auto text = !unit.empty()         ? unit
                      : members.size() == 1 ? chart_.series()[members.front()].name
                                            : "value";
    const int middle = top + options_.panel_height / 2;
    add("<text x=\"18\" y=\"{0}\" text-anchor=\"middle\" transform=\"rotate(-90 18 {0})\">{1}</text>\n",
        middle, xml_text(text));
  }

  template <class Y>
  void draw_series(std::size_t number_of, Y&& y_of) {
    const auto lines = polylines(chart_.series()[number_of], times_.begin, times_.end, plot_width_);
    std::string path;
    for (const auto& line : lines) {
      char command = 'M';
      for (const auto& vertex : line) {
        path += fmt::format("{}{} {}", command, number(kLeft + vertex.x), number(y_of(vertex.y)));
        command = 'L';
      }
      if (line.size() == 1) {
        path += "h0";  // with round ends: a dot
      }
    }
    if (lines.empty()) {
      return;
    }
    const auto& style = kStyles[number_of % kStyles.size()];
    add("<path class=\"series\" d=\"{}\" fill=\"none\" {} stroke-width=\"1.75\" stroke-linejoin=\"round\" "
        "stroke-linecap=\"round\"><title>{}</title></path>\n",
        path, stroke(number_of), xml_text(chart_.series()[number_of].name));
    const auto& last = lines.back().back();
    add("<text x=\"{}\" y=\"{}\" font-weight=\"bold\" fill=\"{}\">{}</text>\n", number(kLeft + last.x + 6),
        number(free_place(kLeft + last.x, y_of(last.y)) + kHalfLetter), style.colour, letter_of(number_of));
  }

  // Lines that end at the same height have their letters one below the other.
  double free_place(double x, double y) {
    const auto taken = [&](const Vertex& other) {
      return std::abs(other.x - x) < kLetterHeight && std::abs(other.y - y) < kLetterHeight;
    };
    while (std::any_of(letters_.begin(), letters_.end(), taken)) {
      y += 1;
    }
    letters_.push_back({x, y});
    return y;
  }

  void draw_times(int y) {
    for (const auto& tick : times_.ticks) {
      add("<text x=\"{}\" y=\"{}\" text-anchor=\"middle\">{}</text>\n", number(x_of(tick.time)), y + 18,
          tick.label);
    }
    add("<text x=\"{}\" y=\"{}\" text-anchor=\"middle\">time ({})</text>\n", kLeft + plot_width_ / 2, y + 42,
        times_.zone);
  }

  const Chart& chart_;
  SvgOptions options_;
  int plot_width_;
  TimeAxis times_;
  std::vector<Vertex> letters_;  // where those of the lines' ends stand
  fmt::memory_buffer body_;
};

}  // namespace

std::string svg(const Chart& chart, const SvgOptions& options) {
  return Drawing(chart, options).draw();
}

std::string xml_text(std::string_view text) {
  // What is no UTF-8 is taken byte by byte, so that names in a PLC's own code page do not spoil the file.
  std::string valid;
  if (utf16_from_utf8(text)) {
    valid = text;
  } else {
    for (const char c : text) {
      valid += static_cast<unsigned char>(c) < 0x80 ? std::string(1, c) : "\xEF\xBF\xBD";
    }
  }
  std::string xml;
  for (const char c : valid) {
    switch (c) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '"':
        xml += "&quot;";
        break;
      default:
        xml += static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' ? "\xEF\xBF\xBD"
                                                                              : std::string(1, c);
    }
  }
  return xml;
}

}  // namespace ostravel::host::plot
