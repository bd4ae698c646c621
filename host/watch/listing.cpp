// SPDX-License-Identifier: MIT
#include "host/watch/listing.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <sstream>
#include <string_view>
#include <utility>

#include "host/table.h"

namespace ostravel::host::watch {
namespace {

constexpr std::chrono::seconds kShuffleInterval{1};  // oftener, and nobody could read the table

char small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string small(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) { return small(c); });
  return text;
}

// The word is in small letters.
bool contains(std::string_view text, std::string_view word) {
  return std::search(text.begin(), text.end(), word.begin(), word.end(),
                     [](char a, char b) { return small(a) == b; }) != text.end();
}

// Numbers order as numbers, texts as texts.
struct Rank {
  double number = 0;
  std::string text;

  friend bool operator<(const Rank& a, const Rank& b) {
    return a.number < b.number || (a.number == b.number && a.text < b.text);
  }
};

constexpr double kAfterNumbers = std::numeric_limits<double>::infinity();

Rank rank_of_value(const nlohmann::json& value) {
  if (value.is_boolean()) {
    return {value.get<bool>() ? 1.0 : 0.0, {}};
  }
  if (value.is_number()) {
    return {value.get<double>(), {}};
  }
  return {kAfterNumbers, value_text(value)};
}

Rank rank_of(const Model& model, std::size_t row, SortKey key, TimePoint now) {
  const auto& of = model.row(row);
  switch (key) {
    case SortKey::Project:
      break;
    case SortKey::Tag:
      return {0, of.label()};
    case SortKey::Type:
      return {0, of.type()};
    case SortKey::Value:
      return rank_of_value(of.value());
    case SortKey::Quality:
      return {static_cast<double>(of.error()), {}};
    case SortKey::Age: {
      const auto age = of.age(now);
      return {age ? static_cast<double>(age->count()) : kAfterNumbers, {}};
    }
    case SortKey::Rate:
      return {model.rate(row, now).value_or(-1), {}};
  }
  return {};
}

bool varies(SortKey key) {
  return key != SortKey::Project && key != SortKey::Tag && key != SortKey::Type;
}

}  // namespace

Listing::Listing(const Model& model) : model_(model) {}

void Listing::set_filter(const std::string& filter) {
  if (filter == filter_) {
    return;
  }
  filter_ = filter;
  wanted_.clear();
  unwanted_.clear();
  std::istringstream words(small(filter));
  for (std::string word; words >> word;) {
    if (word == "!") {
      continue;  // its word is still being typed
    }
    if (word.front() == '!') {
      unwanted_.push_back(word.substr(1));
    } else {
      wanted_.push_back(word);
    }
  }
  stale_ = true;
}

bool Listing::is_wanted(std::size_t row) const {
  const auto& of = model_.row(row);
  const auto is_in = [&of](const std::string& word) { return contains(of.label(), word); };
  return (!only_bad_ || !of.is_good()) && std::all_of(wanted_.begin(), wanted_.end(), is_in) &&
         std::none_of(unwanted_.begin(), unwanted_.end(), is_in);
}

void Listing::refill() {
  rows_.clear();
  for (std::size_t i = 0; i < model_.size(); ++i) {
    if (is_wanted(i)) {
      rows_.push_back(i);
    }
  }
}

void Listing::sort_rows(TimePoint now) {
  if (sort_ == SortKey::Project) {
    if (descending_) {
      std::reverse(rows_.begin(), rows_.end());
    }
    return;
  }
  std::vector<std::pair<Rank, std::size_t>> ranked;
  ranked.reserve(rows_.size());
  for (const auto row : rows_) {
    ranked.emplace_back(rank_of(model_, row, sort_, now), row);
  }
  const bool descending = descending_;
  std::stable_sort(ranked.begin(), ranked.end(), [descending](const auto& a, const auto& b) {
    return descending ? b.first < a.first : a.first < b.first;
  });
  std::transform(ranked.begin(), ranked.end(), rows_.begin(), [](const auto& pair) { return pair.second; });
}

void Listing::update(TimePoint now) {
  const bool can_vary = varies(sort_) || only_bad_;
  const bool due = can_vary && version_ != model_.version() && now - updated_ >= kShuffleInterval;
  if (!stale_ && !due) {
    return;
  }
  refill();
  sort_rows(now);
  stale_ = false;
  updated_ = now;
  version_ = model_.version();
}

std::optional<std::size_t> Listing::place_of(std::size_t row) const {
  const auto found = std::find(rows_.begin(), rows_.end(), row);
  return found == rows_.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - rows_.begin()));
}

}  // namespace ostravel::host::watch
