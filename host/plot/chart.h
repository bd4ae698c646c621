// SPDX-License-Identifier: MIT
// What a chart shows, whatever it is drawn on: panels one above the other that share their time.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/plot/series.h"
#include "host/plot/ticks.h"
#include "host/plot/timeaxis.h"

namespace ostravel::host::plot {

struct ChartOptions {
  std::string title;
  std::string unit;      // of the values
  bool stacked = false;  // a panel for each series
  std::chrono::minutes offset{0};
  // The time to show; without them that of all points.
  std::optional<Moment> begin;
  std::optional<Moment> end;
};

// Letters that stand for the series in legends and beside their lines: A to Z, then numbers.
std::string letter_of(std::size_t series);

// What a legend says of a series within the time shown.
struct Summary {
  std::size_t values = 0;
  double last = kGap;
  double low = kGap;
  double high = kGap;
};
Summary summary_of(const Series& series, Moment begin, Moment end);

class Chart {
 public:
  // The series must outlive the chart. Throws UserError when there is nothing to show in the time asked for.
  Chart(std::span<const Series> series, ChartOptions options);

  const ChartOptions& options() const { return options_; }
  std::span<const Series> series() const { return series_; }
  // Numbers of the series in each panel.
  const std::vector<std::vector<std::size_t>>& panels() const { return panels_; }
  const Summary& summary(std::size_t series) const { return summaries_[series]; }

  TimeAxis times(int at_most) const { return time_axis(begin_, end_, at_most, options_.offset); }
  ValueAxis values(std::size_t panel, int at_most) const;

  // Times in which no series of the panel has a value, though there are values before and after.
  std::vector<std::pair<Moment, Moment>> gaps(std::size_t panel) const;

 private:
  std::span<const Series> series_;
  ChartOptions options_;
  std::vector<std::vector<std::size_t>> panels_;
  std::vector<Summary> summaries_;
  Moment begin_;
  Moment end_;
};

}  // namespace ostravel::host::plot
