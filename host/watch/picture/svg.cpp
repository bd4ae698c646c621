// SPDX-License-Identifier: MIT
#include "host/watch/picture/svg.h"

#include <fmt/format.h>

#include <array>
#include <optional>
#include <string_view>

#include "host/watch/cells.h"

namespace ostravel::host::picture {
namespace {

constexpr double kCellWidth = 8.4;
constexpr double kCellHeight = 18;
constexpr double kBaseline = 13.5;  // from the top of a cell
constexpr double kMargin = 14;
constexpr double kTitleHeight = 34;

constexpr std::string_view kInk = "#1f2328";
constexpr std::string_view kPaper = "#ffffff";
constexpr std::string_view kFaintInk = "#656d76";
// Colours 0 to 7 of the terminal, dark enough to be read on paper.
constexpr std::array<std::string_view, 8> kInks{"#1f2328", "#b3261e", "#116329", "#8a5a00",
                                                "#0550ae", "#7d3c98", "#0b6e75", "#656d76"};

std::string escaped(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

struct Colours {
  std::string_view ink;
  std::string_view paper;
};

std::string_view colour(int number, std::string_view own) {
  return number >= 0 && number < static_cast<int>(kInks.size()) ? kInks[static_cast<std::size_t>(number)]
                                                                : own;
}

Colours colours_of(const Look& look) {
  const auto own = look.dim && !look.reverse ? kFaintInk : kInk;
  const Colours colours{colour(look.foreground, own), colour(look.background, kPaper)};
  return look.reverse ? Colours{colours.paper, colours.ink} : colours;
}

// Eighths of a cell that a block character fills from below; nothing for any other character.
std::optional<int> eighths_of(const std::string& text) {
  constexpr std::string_view kFirst = "▁";
  if (text.size() != kFirst.size() || text.substr(0, 2) != kFirst.substr(0, 2)) {
    return std::nullopt;
  }
  const int eighths = static_cast<unsigned char>(text[2]) - static_cast<unsigned char>(kFirst[2]) + 1;
  return eighths >= 1 && eighths <= 8 ? std::optional(eighths) : std::nullopt;
}

std::string rectangle(double x, double y, double width, double height, std::string_view fill) {
  return fmt::format("<rect x=\"{:.1f}\" y=\"{:.2f}\" width=\"{:.1f}\" height=\"{:.2f}\" fill=\"{}\"/>\n", x,
                     y, width, height, fill);
}

// Cells from one column to another that look alike.
struct Run {
  std::size_t from;
  std::size_t to;
};

class Picture {
 public:
  explicit Picture(const Terminal& terminal) : terminal_(terminal) {}

  std::string draw(const std::string& title) {
    const double width = static_cast<double>(terminal_.columns()) * kCellWidth + 2 * kMargin;
    const double height = static_cast<double>(terminal_.lines()) * kCellHeight + kTitleHeight + kMargin;
    svg_ = fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0:.0f} {1:.0f}\" width=\"{0:.0f}\" "
        "height=\"{1:.0f}\" role=\"img\" aria-label=\"{2}\">\n<title>{2}</title>\n"
        "<rect x=\"0.5\" y=\"0.5\" width=\"{3:.0f}\" height=\"{4:.0f}\" rx=\"8\" fill=\"#f6f8fa\" "
        "stroke=\"#d0d7de\"/>\n",
        width, height, escaped(title), width - 1, height - 1);
    svg_ += fmt::format(
        "<g font-family=\"ui-monospace, 'DejaVu Sans Mono', Menlo, Consolas, monospace\" font-size=\"14\" "
        "xml:space=\"preserve\">\n<text x=\"{:.1f}\" y=\"22\" fill=\"{}\" font-size=\"13\">{}</text>\n",
        kMargin, kFaintInk, escaped(title));
    svg_ +=
        rectangle(kMargin / 2, kTitleHeight - kMargin / 2, width - kMargin, height - kTitleHeight, kPaper);
    for (std::size_t line = 0; line < terminal_.lines(); ++line) {
      draw_line(line);
    }
    return svg_ + "</g>\n</svg>\n";
  }

 private:
  const Look& look(std::size_t line, std::size_t column) const { return terminal_.cell(line, column).look; }

  static double x_of(std::size_t column) { return kMargin + static_cast<double>(column) * kCellWidth; }

  void draw_line(std::size_t line) {
    Run run{0, 0};
    for (std::size_t column = 0; column <= terminal_.columns(); ++column) {
      if (column == terminal_.columns() || look(line, column) != look(line, run.from)) {
        draw_run(line, {run.from, column});
        run.from = column;
      }
    }
  }

  void draw_run(std::size_t line, Run run) {
    const double y = kTitleHeight + static_cast<double>(line) * kCellHeight;
    const auto colours = colours_of(look(line, run.from));
    if (colours.paper != kPaper) {
      svg_ += rectangle(x_of(run.from), y, static_cast<double>(run.to - run.from) * kCellWidth, kCellHeight,
                        colours.paper);
    }
    // Words stand each at their own place, so that a font of another width moves nothing far.
    std::size_t start = run.from;
    std::string word;
    for (std::size_t column = run.from; column <= run.to; ++column) {
      const auto text = column < run.to ? terminal_.cell(line, column).text : std::string(" ");
      const auto eighths = eighths_of(text);
      if (text == " " || eighths) {
        draw_word(line, start, word, colours.ink);
        word.clear();
        start = column + 1;
      } else {
        word += text;
      }
      if (eighths) {
        const double height = kCellHeight * 0.8 * *eighths / 8;
        svg_ += rectangle(x_of(column), y + kCellHeight * 0.9 - height, kCellWidth - 1, height, colours.ink);
      }
    }
  }

  void draw_word(std::size_t line, std::size_t column, const std::string& word, std::string_view ink) {
    if (word.empty()) {
      return;
    }
    const double y = kTitleHeight + static_cast<double>(line) * kCellHeight + kBaseline;
    const auto cells = static_cast<double>(watch::cells_of(word));
    svg_ += fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" textLength=\"{:.1f}\" fill=\"{}\"{}>{}</text>\n",
                        x_of(column), y, cells * kCellWidth, ink,
                        look(line, column).bold ? " font-weight=\"bold\"" : "", escaped(word));
  }

  const Terminal& terminal_;
  std::string svg_;
};

}  // namespace

std::string svg_of(const Terminal& terminal, const std::string& title) {
  return Picture(terminal).draw(title);
}

}  // namespace ostravel::host::picture
