// SPDX-License-Identifier: MIT
#include "tools/duplicates.h"

#include <fmt/format.h>

#include <iterator>

#include "tools/pathcheck.h"

namespace ostravel::tags {
namespace {

using namespace host;

bool overlap(const Tag& a, const Tag& b) {
  return !a.is_array() || !b.is_array() || (*a.first <= b.last() && *b.first <= a.last());
}

}  // namespace

// Parts do not overlap each other, so that only the neighbours of a new one can overlap it.
const Duplicates::Seen* Duplicates::overlapping(std::size_t first, const Tag& tag) {
  const auto found = parts_.find(first);
  if (found == parts_.end() || !tag.is_array()) {
    return overlap(seen_[first].tag, tag) ? &seen_[first] : nullptr;
  }
  const auto& parts = found->second;
  const auto behind = parts.lower_bound(*tag.first);
  if (behind != parts.end() && overlap(seen_[behind->second].tag, tag)) {
    return &seen_[behind->second];
  }
  if (behind != parts.begin() && overlap(seen_[std::prev(behind)->second].tag, tag)) {
    return &seen_[std::prev(behind)->second];
  }
  return nullptr;
}

void Duplicates::keep(std::size_t first, const TagRow& row) {
  auto& parts = parts_[first];
  if (parts.empty()) {
    parts.emplace(*seen_[first].tag.first, first);
  }
  parts.emplace(*row.tag.first, seen_.size());
  seen_.push_back({row.tag, row.place(TagField::Name).line});
}

std::optional<Finding> Duplicates::add(const TagRow& row) {
  const auto& tag = row.tag;
  const auto [entry, is_new] =
      first_of_variable_.emplace(fmt::format("{}:{}", tag.device, path_key(tag.name)), seen_.size());
  if (is_new) {
    seen_.push_back({tag, row.place(TagField::Name).line});
    return std::nullopt;
  }
  const auto* other = overlapping(entry->second, tag);
  if (other == nullptr) {
    keep(entry->second, row);
    return std::nullopt;
  }
  const auto place = row.place(TagField::Name);
  if (other->tag.name != tag.name) {
    return Finding{
        Severity::Warning, place,
        fmt::format("{} is the variable that line {} has as {}", tag.name, other->line, other->tag.name)};
  }
  auto same = other->tag;
  same.id = tag.id;
  if (same == tag) {
    return Finding{Severity::Error, place,
                   fmt::format("{} stands in line {} already; remove one", tag.name, other->line)};
  }
  return Finding{Severity::Warning, place,
                 fmt::format("{} stands in line {} already, as {} {}; by name only that one is found",
                             tag.name, other->line, other->tag.count, other->tag.type->name)};
}

}  // namespace ostravel::tags
