// SPDX-License-Identifier: MIT
#include "host/plot/plotoutput.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "host/files.h"
#include "host/plot/svgchart.h"
#include "host/usererror.h"

namespace ostravel::host::plot {
namespace {

constexpr int kUsualLines = 24;
constexpr int kUsualColumns = 80;
constexpr int kLeastHeight = 6;
constexpr int kMostHeight = 30;
constexpr int kAxisLines = 4;  // axis, labels, zone, and the prompt that follows

std::optional<Moment> moment_of(const std::string& option, const std::string& text) {
  if (text.empty()) {
    return std::nullopt;
  }
  const auto moment = record::parse_iso(text);
  if (!moment) {
    throw UserError(fmt::format("{} '{}' is no time; write it like 2024-03-05T13:14:15Z", option, text));
  }
  return moment;
}

bool within(const Point& point, const ChartOptions& options) {
  return point.time >= options.begin.value_or(point.time) && point.time <= options.end.value_or(point.time);
}

void print_points(std::FILE* out, const std::vector<Series>& series, const ChartOptions& options,
                  Format format) {
  RowWriter rows(out, format, {"time", "tag", "value"});
  for (const auto& one : series) {
    for (const auto& point : one.points) {
      if (within(point, options)) {
        rows.write({record::iso_text(point.time), one.name,
                    point.is_gap() ? nlohmann::json() : nlohmann::json(point.value)});
      }
    }
  }
  rows.finish();
}

}  // namespace

ChartOptions chart_options(const PlotOptions& options, const std::vector<Series>& series) {
  ChartOptions chart;
  chart.title = options.title;
  chart.unit = options.unit;
  chart.stacked = options.stacked;
  chart.begin = moment_of("--from", options.from);
  chart.end = moment_of("--to", options.to);
  if (chart.begin && chart.end && *chart.begin >= *chart.end) {
    throw UserError("--from must be earlier than --to");
  }
  for (const auto& one : series) {
    if (!one.points.empty()) {
      chart.offset = local_offset(one.points.front().time);
    }
  }
  return chart;
}

TerminalOptions terminal_options(std::FILE* out, const PlotOptions& options, std::size_t series) {
  winsize size{};
  const bool sized = ioctl(fileno(out), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0;
  const int columns = sized ? size.ws_col : kUsualColumns;
  const int lines = sized ? size.ws_row : kUsualLines;
  TerminalOptions terminal;
  terminal.width = options.width > 0 ? options.width : columns;
  const int others = kAxisLines + static_cast<int>(series) + (options.title.empty() ? 0 : 1);
  terminal.height =
      options.height > 0 ? options.height : std::clamp(lines - others, kLeastHeight, kMostHeight);
  terminal.unicode = !options.ascii && locale_is_unicode();
  const char* no_color = std::getenv("NO_COLOR");
  terminal.colours = isatty(fileno(out)) == 1 && (no_color == nullptr || *no_color == 0);
  return terminal;
}

void put_out(std::FILE* out, const std::vector<Series>& series, const PlotOptions& options, Format format) {
  auto wanted = chart_options(options, series);
  if (format != Format::Text && options.svg.empty()) {
    return print_points(out, series, wanted, format);
  }
  const Chart chart(series, std::move(wanted));
  if (options.svg.empty()) {
    for (const auto& line : draw(chart, terminal_options(out, options, series.size()))) {
      fmt::print(out, "{}\n", line);
    }
    return;
  }
  write_file(options.svg, svg(chart), options.force);
  std::size_t values = 0;
  for (std::size_t i = 0; i < series.size(); ++i) {
    values += chart.summary(i).values;
  }
  if (format == Format::Text) {
    fmt::print(out, "{}: {} tags, {} values\n", options.svg, series.size(), values);
  } else {
    RowWriter(out, format, {"file", "tags", "values"}).write({options.svg, series.size(), values});
  }
}

}  // namespace ostravel::host::plot
