// SPDX-License-Identifier: MIT
#include "host/plot/chart.h"

#include <algorithm>
#include <utility>

#include "host/usererror.h"

namespace ostravel::host::plot {
namespace {

// From the last value before each gap of a series to the first one after it.
std::vector<std::pair<Moment, Moment>> gaps_of(const Series& series) {
  std::vector<std::pair<Moment, Moment>> gaps;
  std::optional<Moment> last;
  bool open = false;
  for (const auto& point : series.points) {
    if (point.is_gap()) {
      open = last.has_value();
      continue;
    }
    if (open) {
      gaps.emplace_back(*last, point.time);
    }
    open = false;
    last = point.time;
  }
  return gaps;
}

std::vector<std::pair<Moment, Moment>> common(const std::vector<std::pair<Moment, Moment>>& a,
                                              const std::vector<std::pair<Moment, Moment>>& b) {
  std::vector<std::pair<Moment, Moment>> both;
  for (auto i = a.begin(), j = b.begin(); i != a.end() && j != b.end();) {
    const auto from = std::max(i->first, j->first);
    const auto to = std::min(i->second, j->second);
    if (from < to) {
      both.emplace_back(from, to);
    }
    ++(i->second < j->second ? i : j);
  }
  return both;
}

}  // namespace

std::string letter_of(std::size_t series) {
  constexpr std::size_t kLetters = 26;
  return series < kLetters ? std::string(1, static_cast<char>('A' + series)) : std::to_string(series + 1);
}

Summary summary_of(const Series& series, Moment begin, Moment end) {
  Summary summary;
  for (const auto& point : series.points) {
    if (point.is_gap() || point.time < begin || point.time > end) {
      continue;
    }
    ++summary.values;
    summary.last = point.value;
    summary.low = std::fmin(summary.low, point.value);
    summary.high = std::fmax(summary.high, point.value);
  }
  return summary;
}

Chart::Chart(std::span<const Series> series, ChartOptions options)
    : series_(series), options_(std::move(options)) {
  std::optional<Moment> first;
  std::optional<Moment> last;
  for (const auto& one : series_) {
    if (!one.points.empty()) {
      first = std::min(first.value_or(one.points.front().time), one.points.front().time);
      last = std::max(last.value_or(one.points.back().time), one.points.back().time);
    }
  }
  begin_ = options_.begin.value_or(first.value_or(Moment()));
  end_ = options_.end.value_or(last.value_or(Moment()));
  std::size_t values = 0;
  for (const auto& one : series_) {
    values += summaries_.emplace_back(summary_of(one, begin_, end_)).values;
  }
  if (values == 0) {
    throw UserError("there is no value to plot in the time asked for");
  }
  if (!options_.stacked) {
    panels_.emplace_back();
  }
  for (std::size_t i = 0; i < series_.size(); ++i) {
    if (options_.stacked) {
      panels_.emplace_back();
    }
    panels_.back().push_back(i);
  }
}

ValueAxis Chart::values(std::size_t panel, int at_most) const {
  double low = kGap;
  double high = kGap;
  for (const auto number : panels_[panel]) {
    low = std::fmin(low, summaries_[number].low);
    high = std::fmax(high, summaries_[number].high);
  }
  return std::isfinite(low) ? value_axis(low, high, at_most) : value_axis(0, 1, at_most);
}

std::vector<std::pair<Moment, Moment>> Chart::gaps(std::size_t panel) const {
  std::vector<std::pair<Moment, Moment>> gaps{{begin_, end_}};
  for (const auto number : panels_[panel]) {
    gaps = common(gaps, gaps_of(series_[number]));
  }
  return gaps;
}

}  // namespace ostravel::host::plot
