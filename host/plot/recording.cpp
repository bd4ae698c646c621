// SPDX-License-Identifier: MIT
#include "host/plot/recording.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

#include "host/csv.h"
#include "host/record/recordrows.h"

namespace ostravel::host::plot {
namespace {

// A series as it is being read.
struct Reading {
  Series series;
  bool only_truths = true;
  std::optional<PlacedError> fault;  // of the first cell that is no number
};

// Nothing for what is no number.
std::optional<double> number_of(const std::string& text, bool& truth) {
  truth = text == "true" || text == "false";
  if (truth) {
    return text == "true" ? 1 : 0;
  }
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size() || text.empty()) {
    return std::nullopt;
  }
  return error == std::errc() && std::isfinite(value) ? value : kGap;
}

class Reader {
 public:
  Reader(std::string_view text, const std::string& source, const std::vector<std::string>& names)
      : csv_(text, source),
        source_(source),
        names_(names),
        whole_(text.ends_with('\n') || text.ends_with('\r')) {}

  std::vector<Series> read() {
    CsvRow row;
    if (!csv_.next(row) || !take_header(row)) {
      throw UserError(fmt::format(
          "{}:1:1: is no recording; its first line must be time,status,TAG,... or time,tag,value,status",
          source_));
    }
    CsvRow next;
    bool more = csv_.next(next);
    while (more) {
      std::swap(row, next);
      more = csv_.next(next);
      if (row.size() == 1 && row.front().text.empty()) {
        continue;
      }
      // Half a row may even look like a whole one whose last value is shorter.
      if (!more && !whole_) {
        break;
      }
      take(row);
    }
    return result();
  }

 private:
  bool take_header(const CsvRow& row) {
    if (row.size() == 4 && row[0].text == "time" && row[1].text == "tag" && row[2].text == "value" &&
        row[3].text == "status") {
      columns_ = row.size();
      long_ = true;
      return true;
    }
    if (row.size() < 3 || row[0].text != "time" || row[1].text != "status") {
      return false;
    }
    columns_ = row.size();
    for (std::size_t i = 2; i < row.size(); ++i) {
      reading(row[i].text);
      column_tags_.push_back(row[i].text);
    }
    return true;
  }

  Reading& reading(const std::string& tag) {
    const auto [found, fresh] = readings_.try_emplace(tag);
    if (fresh) {
      found->second.series.name = tag;
      order_.push_back(tag);
    }
    return found->second;
  }

  void take(const CsvRow& row) {
    if (row.size() != columns_) {
      throw PlacedError(source_, row.front().place(),
                        fmt::format("{} cells, and the first line has {}", row.size(), columns_));
    }
    const auto time = record::parse_iso(row.front().text);
    if (!time) {
      throw PlacedError(
          source_, row.front().place(),
          fmt::format("'{}' is no time; write it like 2024-03-05T13:14:15.500Z", row.front().text));
    }
    if (long_) {
      add(reading(row[1].text), *time, row[2], row[3].text == record::kStatusOk);
      return;
    }
    for (std::size_t i = 0; i < column_tags_.size(); ++i) {
      auto& into = readings_.find(column_tags_[i])->second;
      add(into, *time, row[i + 2], !row[i + 2].text.empty());
    }
  }

  void add(Reading& reading, Moment time, const CsvField& cell, bool valid) {
    if (!valid) {
      reading.series.points.push_back({time, kGap});
      return;
    }
    bool truth = false;
    const auto value = number_of(cell.text, truth);
    if (!value && !reading.fault) {
      const auto& tag = reading.series.name;
      reading.fault.emplace(
          source_, cell.place(),
          cell.text.starts_with('[')
              ? fmt::format("{} is an array; record one element of it, as in {}[0]", tag, tag)
              : fmt::format("'{}' of {} is no number", cell.text, tag));
    }
    reading.only_truths = reading.only_truths && truth;
    reading.series.points.push_back({time, value.value_or(kGap)});
  }

  std::vector<Series> result() {
    std::vector<Series> series;
    for (const auto& name : names_) {
      const auto found = readings_.find(name);
      if (found == readings_.end()) {
        throw UserError(fmt::format("{}: has no tag {}; it has {}", source_, name, known_tags()));
      }
      if (found->second.fault) {
        throw *found->second.fault;
      }
      series.push_back(finish(found->second));
    }
    for (const auto& tag : order_) {
      auto& reading = readings_.find(tag)->second;
      const bool any = std::any_of(reading.series.points.begin(), reading.series.points.end(),
                                   [](const Point& point) { return !point.is_gap(); });
      if (names_.empty() && !reading.fault && any) {
        series.push_back(finish(reading));
      }
    }
    return series;
  }

  static Series finish(const Reading& reading) {
    Series series = reading.series;
    series.stepped = reading.only_truths;
    // A clock that was put back while recording.
    std::stable_sort(series.points.begin(), series.points.end(),
                     [](const Point& a, const Point& b) { return a.time < b.time; });
    return series;
  }

  std::string known_tags() const {
    constexpr std::size_t kMost = 5;
    std::string text;
    for (std::size_t i = 0; i < order_.size() && i < kMost; ++i) {
      text += (i == 0 ? "" : ", ") + order_[i];
    }
    return order_.size() > kMost ? fmt::format("{} and {} more", text, order_.size() - kMost)
           : order_.empty()      ? "none"
                                 : text;
  }

  CsvReader csv_;
  const std::string& source_;
  const std::vector<std::string>& names_;
  bool whole_;
  bool long_ = false;
  std::size_t columns_ = 0;
  std::vector<std::string> column_tags_;
  std::vector<std::string> order_;
  std::map<std::string, Reading> readings_;
};

}  // namespace

std::vector<Series> read_recording(std::string_view text, const std::string& source,
                                   const std::vector<std::string>& names) {
  return Reader(text, source, names).read();
}

}  // namespace ostravel::host::plot
