// SPDX-License-Identifier: MIT
#include "host/plot/liveplot.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/usererror.h"

namespace ostravel::host::plot {

double number_of(const nlohmann::json& value) {
  if (value.is_boolean()) {
    return value.get<bool>() ? 1 : 0;
  }
  return value.is_number() ? value.get<double>() : kGap;
}

void require_number(const Selection& selection, const std::string& label) {
  const auto& tag = selection.tag;
  if (selection.bit) {
    return;
  }
  if (tag.type->is_text()) {
    throw UserError(fmt::format("{} is a text; plot shows numbers", label));
  }
  const bool element = selection.text != tag.name;
  if (tag.count > 1 || (tag.is_array() && !element)) {
    throw UserError(fmt::format("{} is an array; name one element of it, as in {}[{}]", label, label,
                                tag.first.value_or(0)));
  }
}

void LiveSeries::add(const record::Round& round) {
  for (std::size_t i = 0; i < series_.size(); ++i) {
    auto& points = series_[i].points;
    // The clock was put back: what seems to lie ahead would stay for as long.
    if (!points.empty() && points.back().time > round.time) {
      points.clear();
    }
    points.push_back({round.time, number_of(round.samples[i].value)});
    const auto kept = std::find_if(points.begin(), points.end(),
                                   [&](const Point& point) { return point.time >= round.time - window_; });
    points.erase(points.begin(), kept);
  }
}

bool LiveSeries::has_values() const {
  return std::any_of(series_.begin(), series_.end(), [](const Series& series) {
    return std::any_of(series.points.begin(), series.points.end(),
                       [](const Point& point) { return !point.is_gap(); });
  });
}

void LiveLines::draw(const std::vector<std::string>& lines) {
  if (drawn_ > 0) {
    fmt::print(terminal_, "\033[{}A\r", drawn_);
  }
  for (const auto& line : lines) {
    fmt::print(terminal_, "{}\033[K\n", line);
  }
  fmt::print(terminal_, "\033[J");
  std::fflush(terminal_);
  drawn_ = lines.size();
}

}  // namespace ostravel::host::plot
