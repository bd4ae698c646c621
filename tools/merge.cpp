// SPDX-License-Identifier: MIT
#include "tools/merge.h"

#include <fmt/format.h>

#include <map>
#include <unordered_map>
#include <utility>

namespace ostravel::tags {
namespace {

using namespace host;

constexpr const char* kRemedy = "make them the same, or give --prefer first or --prefer last";

class Merger {
 public:
  explicit Merger(const MergeRules& rules) : rules_(rules) {}

  void add(const PlacedProject& list) {
    merge_settings(list);
    for (std::size_t i = 0; i < list.project.tags.size(); ++i) {
      merge_tag(list.project.tags[i], {&list, list.places[i]});
    }
  }

  Project take() {
    if (rules_.renumber) {
      std::uint32_t id = 0;
      for (auto& tag : merged_.tags) {
        tag.id = ++id;
      }
    }
    return std::move(merged_);
  }

 private:
  struct Origin {
    const PlacedProject* list;
    Place place;
    std::string text() const { return place_text(list->name, place); }
  };

  // A list without a password has nothing against another's.
  void merge_settings(const PlacedProject& list) {
    const auto& project = list.project;
    if (project.password) {
      if (merged_.password && merged_.password != project.password && rules_.prefer == Prefer::Neither) {
        throw UserError(fmt::format("{}:1:1: the password is not that of {}; {}", list.name,
                                    password_of_->name, kRemedy));
      }
      if (!merged_.password || rules_.prefer == Prefer::Last) {
        merged_.password = project.password;
        password_of_ = &list;
      }
    }
    if (strings_of_ != nullptr && merged_.char_paired != project.char_paired &&
        rules_.prefer == Prefer::Neither) {
      throw UserError(fmt::format("{}:1:1: strings are {}, and {} in {}; {}", list.name,
                                  strings_text(project), strings_text(merged_), strings_of_->name, kRemedy));
    }
    if (strings_of_ == nullptr || rules_.prefer == Prefer::Last) {
      merged_.char_paired = project.char_paired;
      strings_of_ = &list;
    }
  }

  static const char* strings_text(const Project& project) {
    return project.char_paired ? "char-paired" : "word-aligned";
  }

  void merge_tag(const Tag& tag, const Origin& origin) {
    // Parts of an array differ in where they begin.
    auto& parts = rows_[fmt::format("{}:{}", tag.device, tag.name)];
    const auto row = find(parts, tag);
    if (row == kNone) {
      parts.emplace(start_of(tag), merged_.tags.size());
      merged_.tags.push_back(tag);
      origins_.push_back(origin);
      return;
    }
    auto& old = merged_.tags[row];
    const auto difference = difference_text(tag, old, !rules_.renumber);
    if (difference.empty() || rules_.prefer == Prefer::First) {
      return;
    }
    if (rules_.prefer == Prefer::Neither) {
      throw UserError(fmt::format("{}: {} is not as at {}: {}; {}", origin.text(), tag.name,
                                  origins_[row].text(), difference, kRemedy));
    }
    parts.erase(start_of(old));
    if (const auto another = find(parts, tag); another != kNone) {
      throw UserError(fmt::format("{}: {} covers the rows at {} and {}; make them the same", origin.text(),
                                  tag.name, origins_[row].text(), origins_[another].text()));
    }
    parts.emplace(start_of(tag), row);
    old = tag;
    origins_[row] = origin;
  }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static constexpr int kNoArray = kFirstLowest - 1;
  using Parts = std::map<int, std::size_t>;  // rows of one name by their first index

  static int start_of(const Tag& tag) { return tag.first.value_or(kNoArray); }

  // The row that the tag cannot stand beside: what is no array beside anything, and parts that overlap.
  std::size_t find(const Parts& parts, const Tag& tag) const {
    if (parts.empty()) {
      return kNone;
    }
    if (!tag.is_array() || parts.begin()->first == kNoArray) {
      return parts.begin()->second;
    }
    auto behind = parts.lower_bound(*tag.first);
    if (behind != parts.end() && behind->first <= tag.last()) {
      return behind->second;
    }
    if (behind != parts.begin() && merged_.tags[(--behind)->second].last() >= *tag.first) {
      return behind->second;
    }
    return kNone;
  }

  MergeRules rules_;
  Project merged_;
  std::vector<Origin> origins_;  // of the tags
  const PlacedProject* password_of_ = nullptr;
  const PlacedProject* strings_of_ = nullptr;
  std::unordered_map<std::string, Parts> rows_;
};

}  // namespace

std::string difference_text(const Tag& a, const Tag& b, bool with_ids) {
  std::string text;
  for (std::size_t i = 0; i < kTagFields; ++i) {
    const auto field = static_cast<TagField>(i);
    const auto left = field_text(a, field);
    const auto right = field_text(b, field);
    if (left == right || (field == TagField::Id && !with_ids)) {
      continue;
    }
    text += fmt::format("{}{} {} and {}", text.empty() ? "" : ", ", field_name(field),
                        left.empty() ? "none" : left, right.empty() ? "none" : right);
  }
  return text;
}

Project merge(const std::vector<PlacedProject>& lists, const MergeRules& rules) {
  Merger merger(rules);
  for (const auto& list : lists) {
    merger.add(list);
  }
  return merger.take();
}

}  // namespace ostravel::tags
