// SPDX-License-Identifier: MIT
// What watch knows of each tag. Pure: it is told what was read and what time it is.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "host/poller.h"
#include "host/watch/history.h"

namespace ostravel::host::watch {

using TimePoint = std::chrono::steady_clock::time_point;

// One answer for one tag.
// NOLINTNEXTLINE(bugprone-exception-escape): moving a JSON value checks itself and could throw in theory
struct Reading {
  std::size_t row = 0;
  BYTE error = 0;
  BYTE status = 0;
  nlohmann::json value;  // when error is 0
};

struct RowName {
  std::string label;
  std::string type;
  std::size_t device = 0;
};

// How a device stands.
struct DeviceState {
  std::string name;     // empty when there is one only
  std::string address;  // IPv4
  LinkState link = LinkState::Connecting;
  bool served = false;                      // ever
  std::uint64_t recoveries = 0;             // times that it served again after it had not
  std::uint64_t attempts = 0;               // initialisations since it last served
  std::uint64_t rounds = 0;                 // times that every tag was answered
  std::uint64_t polls = 0;                  // rounds, and answers that were none
  std::chrono::microseconds round_time{0};  // that asking for every tag took, the last time
};

class Row {
 public:
  explicit Row(RowName name) : name_(std::move(name)) {}

  const std::string& label() const { return name_.label; }
  const std::string& type() const { return name_.type; }
  std::size_t device() const { return name_.device; }

  const nlohmann::json& value() const { return value_; }  // the last one delivered; null before the first
  BYTE error() const { return error_; }
  BYTE status() const { return status_; }
  bool is_good() const { return error_ == 0; }
  // Since the last delivery; nothing before the first.
  std::optional<std::chrono::milliseconds> age(TimePoint now) const;

 private:
  friend class Model;
  RowName name_;
  nlohmann::json value_;
  BYTE error_ = TagState::kNotAsked;
  BYTE status_ = 0;
  std::optional<TimePoint> delivered_;
  std::optional<Second> first_second_;
  ChangeRate rate_;
  std::unique_ptr<History> history_;  // of numbers and Booleans only
};

class Model {
 public:
  Model(std::vector<RowName> rows, std::vector<DeviceState> devices, TimePoint start);

  void take(Reading reading, TimePoint when);
  // What the driver answered for a whole device: every tag of it has this status.
  void take_trouble(std::size_t device, BYTE error, BYTE status);
  // Polling goes on after a pause, in which nobody knows what the values were.
  void take_pause();
  void take_state(std::size_t device, const DeviceState& state);

  std::size_t size() const { return rows_.size(); }
  const Row& row(std::size_t i) const { return rows_[i]; }
  const std::vector<DeviceState>& devices() const { return devices_; }
  // Cells of the longest name and of the longest type name.
  std::size_t widest_label() const { return widest_label_; }
  std::size_t widest_type() const { return widest_type_; }
  // Counts whatever was taken, so that a caller sees whether anything was.
  std::uint64_t version() const { return version_; }

  // Changes a second of late; nothing before the first value.
  std::optional<double> rate(std::size_t row, TimePoint now) const;
  // Nothing for what is no number.
  std::vector<std::optional<double>> trend(std::size_t row, TimePoint now, std::size_t columns) const;

 private:
  Second second_of(TimePoint when) const;

  std::vector<Row> rows_;
  std::vector<DeviceState> devices_;
  TimePoint start_;
  std::size_t widest_label_ = 0;
  std::size_t widest_type_ = 0;
  std::uint64_t version_ = 0;
};

}  // namespace ostravel::host::watch
