// SPDX-License-Identifier: MIT
#include "host/watch/model.h"

#include <algorithm>

namespace ostravel::host::watch {
namespace {

std::optional<double> number_of(const nlohmann::json& value) {
  if (value.is_boolean()) {
    return value.get<bool>() ? 1.0 : 0.0;
  }
  return value.is_number() ? std::optional(value.get<double>()) : std::nullopt;
}

}  // namespace

std::optional<std::chrono::milliseconds> Row::age(TimePoint now) const {
  if (!delivered_) {
    return std::nullopt;
  }
  const auto age = std::chrono::duration_cast<std::chrono::milliseconds>(now - *delivered_);
  return std::max(age, std::chrono::milliseconds(0));
}

Model::Model(std::vector<RowName> rows, std::vector<DeviceState> devices, TimePoint start)
    : devices_(std::move(devices)), start_(start) {
  rows_.reserve(rows.size());
  for (auto& name : rows) {
    widest_label_ = std::max(widest_label_, cells_of(printable(name.label, Charset::Utf8)));
    widest_type_ = std::max(widest_type_, name.type.size());
    rows_.emplace_back(std::move(name));
  }
}

Second Model::second_of(TimePoint when) const {
  return std::max<Second>(std::chrono::duration_cast<std::chrono::seconds>(when - start_).count(), 0);
}

void Model::take(Reading reading, TimePoint when) {
  ++version_;
  auto& row = rows_.at(reading.row);
  row.error_ = reading.error;
  row.status_ = reading.status;
  if (reading.error != 0) {
    if (row.history_) {
      row.history_->interrupt();
    }
    return;
  }
  const auto second = second_of(when);
  if (row.delivered_ && reading.value != row.value_) {
    row.rate_.add(second);
  }
  row.delivered_ = when;
  row.first_second_ = row.first_second_.value_or(second);
  row.value_ = std::move(reading.value);
  if (const auto number = number_of(row.value_)) {
    if (!row.history_) {
      row.history_ = std::make_unique<History>();
    }
    row.history_->add(second, *number);
  }
}

void Model::take_trouble(std::size_t device, BYTE error, BYTE status) {
  ++version_;
  for (auto& row : rows_) {
    if (row.name_.device == device) {
      row.error_ = error;
      row.status_ = status;
      if (row.history_) {
        row.history_->interrupt();
      }
    }
  }
}

void Model::take_pause() {
  for (auto& row : rows_) {
    if (row.history_) {
      row.history_->interrupt();
    }
  }
}

void Model::take_state(std::size_t device, const DeviceState& state) {
  ++version_;
  devices_[device] = state;
}

std::optional<double> Model::rate(std::size_t row, TimePoint now) const {
  const auto& of = rows_[row];
  if (!of.first_second_) {
    return std::nullopt;
  }
  const auto second = second_of(now);
  return of.rate_.per_second(second, second - *of.first_second_ + 1);
}

std::vector<std::optional<double>> Model::trend(std::size_t row, TimePoint now, std::size_t columns) const {
  const auto& history = rows_[row].history_;
  return history ? history->columns(second_of(now), columns) : std::vector<std::optional<double>>{};
}

}  // namespace ostravel::host::watch
