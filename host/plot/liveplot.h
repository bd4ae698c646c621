// SPDX-License-Identifier: MIT
// Polled values as series that keep the last while only, and the lines that show them drawn again in place.
#pragma once

#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/access.h"
#include "host/plot/series.h"
#include "host/record/recordrows.h"

namespace ostravel::host::plot {

// 1 and 0 for true and false; a gap for null and for what JSON has as text ("inf").
double number_of(const nlohmann::json& value);

// Throws UserError for a tag that is no single number, with its label.
void require_number(const Selection& selection, const std::string& label);

class LiveSeries {
 public:
  // Points older than the window, seen from the last round, are forgotten.
  LiveSeries(const std::vector<Series>& empty, std::chrono::milliseconds window)
      : series_(empty), window_(window) {}

  void add(const record::Round& round);
  const std::vector<Series>& series() const { return series_; }
  bool has_values() const;

 private:
  std::vector<Series> series_;
  std::chrono::milliseconds window_;
};

// Draws over what it drew before.
class LiveLines {
 public:
  explicit LiveLines(std::FILE* terminal) : terminal_(terminal) {}
  void draw(const std::vector<std::string>& lines);

 private:
  std::FILE* terminal_;
  std::size_t drawn_ = 0;
};

}  // namespace ostravel::host::plot
