// SPDX-License-Identifier: MIT
#include "host/record/recordrows.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/format.h"

namespace ostravel::host::record {

using nlohmann::json;

RecordRows::RecordRows(Form form, std::vector<std::string> tags, bool on_change)
    : form_(form), tags_(std::move(tags)), on_change_(on_change) {
  last_.resize(form_ == Form::Wide ? 1 : tags_.size());
}

std::string RecordRows::header() const {
  if (form_ == Form::Long) {
    return "time,tag,value,status\n";
  }
  std::vector<json> cells{"time", "status"};
  cells.insert(cells.end(), tags_.begin(), tags_.end());
  return csv_line(cells) + "\n";
}

std::string RecordRows::rows(const Round& round) {
  count_gaps(round);
  return form_ == Form::Wide ? wide_row(round) : long_rows(round);
}

std::string RecordRows::gap(Moment time, const std::string& status) {
  return rows({time, status, std::vector<Sample>(tags_.size(), Sample{nullptr, status})});
}

std::string RecordRows::wide_row(const Round& round) {
  const auto missing = std::count_if(round.samples.begin(), round.samples.end(),
                                     [](const Sample& sample) { return sample.status != kStatusOk; });
  std::vector<json> cells;
  cells.emplace_back(round.link == kStatusOk && missing > 0 ? fmt::format("{} without data", missing)
                                                            : round.link);
  for (const auto& sample : round.samples) {
    cells.push_back(sample.value);
  }
  auto row = csv_line(cells);
  if (on_change_ && row == last_.front()) {
    return {};
  }
  last_.front() = row;
  ++written_;
  return fmt::format("{},{}\n", iso_text(round.time), row);
}

std::string RecordRows::long_rows(const Round& round) {
  std::string text;
  const auto time = iso_text(round.time);
  for (std::size_t i = 0; i < tags_.size(); ++i) {
    const auto& sample = round.samples[i];
    auto row = csv_line({tags_[i], sample.value, sample.status});
    if (on_change_ && row == last_[i]) {
      continue;
    }
    text += fmt::format("{},{}\n", time, row);
    last_[i] = std::move(row);
    ++written_;
  }
  return text;
}

void RecordRows::count_gaps(const Round& round) {
  const bool complete = std::all_of(round.samples.begin(), round.samples.end(),
                                    [](const Sample& sample) { return sample.status == kStatusOk; });
  gaps_ += complete_ && !complete ? 1U : 0U;
  complete_ = complete;
}

}  // namespace ostravel::host::record
