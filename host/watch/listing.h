// SPDX-License-Identifier: MIT
// Which tags are shown, and in which order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/watch/model.h"

namespace ostravel::host::watch {

enum class SortKey : std::uint8_t { Project, Tag, Type, Value, Quality, Age, Rate };
inline constexpr int kSortKeys = 7;

class Listing {
 public:
  // The model must outlive it.
  explicit Listing(const Model& model);

  // Words that must all be in a tag's name, or must not with a '!' in front; upper and lower case of letters
  // A to Z are the same.
  void set_filter(const std::string& filter);
  const std::string& filter() const { return filter_; }
  // Only tags without a good value.
  void set_only_bad(bool only) { change(only_bad_, only); }
  bool only_bad() const { return only_bad_; }
  // Numbers come before texts, the longest without a value is the oldest; equal tags keep the project's
  // order.
  void set_sort(SortKey key) { change(sort_, key); }
  SortKey sort() const { return sort_; }
  void set_descending(bool descending) { change(descending_, descending); }
  bool descending() const { return descending_; }

  // Brings rows() up to date: at once after one of the above, else once a second when what is sorted or
  // filtered by can have changed.
  void update(TimePoint now);
  const std::vector<std::size_t>& rows() const { return rows_; }
  // Place of a model row in rows(); nothing when it is not shown.
  std::optional<std::size_t> place_of(std::size_t row) const;

 private:
  template <typename Value>
  void change(Value& setting, Value value) {
    stale_ = stale_ || setting != value;
    setting = value;
  }
  void refill();
  void sort_rows(TimePoint now);
  bool is_wanted(std::size_t row) const;

  const Model& model_;
  std::string filter_;
  std::vector<std::string> wanted_;    // small letters
  std::vector<std::string> unwanted_;  // small letters
  bool only_bad_ = false;
  SortKey sort_ = SortKey::Project;
  bool descending_ = false;
  bool stale_ = true;
  TimePoint updated_{};
  std::uint64_t version_ = 0;
  std::vector<std::size_t> rows_;
};

}  // namespace ostravel::host::watch
