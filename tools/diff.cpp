// SPDX-License-Identifier: MIT
#include "tools/diff.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <unordered_map>

namespace ostravel::tags {
namespace {

using namespace host;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::string part_key(const Tag& tag) {
  return fmt::format("{}:{}:{}", tag.device, field_text(tag, TagField::First), tag.name);
}

std::string name_key(const Tag& tag) {
  return tag.name;
}

// Matches rows of two lists in order, those with the same key.
class Matcher {
 public:
  Matcher(const std::vector<Tag>& before, const std::vector<Tag>& after)
      : before_(before), after_(after), match_(after.size(), kNone), taken_(before.size(), false) {}

  template <typename Key>
  void match_by(Key key_of) {
    std::unordered_map<std::string, std::vector<std::size_t>> free;
    for (auto row = before_.size(); row-- > 0;) {
      if (!taken_[row]) {
        free[key_of(before_[row])].push_back(row);
      }
    }
    for (std::size_t row = 0; row < after_.size(); ++row) {
      if (match_[row] != kNone) {
        continue;
      }
      const auto found = free.find(key_of(after_[row]));
      if (found != free.end() && !found->second.empty()) {
        match_[row] = found->second.back();
        taken_[match_[row]] = true;
        found->second.pop_back();
      }
    }
  }

  std::size_t match(std::size_t row_after) const { return match_[row_after]; }
  bool taken(std::size_t row_before) const { return taken_[row_before]; }

 private:
  const std::vector<Tag>& before_;
  const std::vector<Tag>& after_;
  std::vector<std::size_t> match_;
  std::vector<bool> taken_;
};

std::vector<TagField> different_fields(const Tag& a, const Tag& b) {
  std::vector<TagField> fields;
  for (std::size_t i = 0; i < kTagFields; ++i) {
    const auto field = static_cast<TagField>(i);
    if (field_text(a, field) != field_text(b, field)) {
      fields.push_back(field);
    }
  }
  return fields;
}

}  // namespace

std::size_t Difference::count(Change change) const {
  return static_cast<std::size_t>(std::count_if(
      tags.begin(), tags.end(), [change](const TagDifference& tag) { return tag.change == change; }));
}

Difference diff(const Project& before, const Project& after) {
  Difference difference;
  difference.password = before.password != after.password;
  difference.strings = before.char_paired != after.char_paired;
  Matcher matcher(before.tags, after.tags);
  matcher.match_by(part_key);
  matcher.match_by(name_key);
  for (std::size_t row = 0; row < before.tags.size(); ++row) {
    if (!matcher.taken(row)) {
      difference.tags.push_back({Change::Removed, &before.tags[row], nullptr, {}});
    }
  }
  std::size_t furthest = 0;
  for (std::size_t row = 0; row < after.tags.size(); ++row) {
    const auto& tag = after.tags[row];
    const auto match = matcher.match(row);
    if (match == kNone) {
      difference.tags.push_back({Change::Added, nullptr, &tag, {}});
      continue;
    }
    if (match < furthest && difference.moved == nullptr) {
      difference.moved = &tag;
    }
    furthest = std::max(furthest, match);
    if (before.tags[match] != tag) {
      difference.tags.push_back(
          {Change::Changed, &before.tags[match], &tag, different_fields(before.tags[match], tag)});
    }
  }
  return difference;
}

}  // namespace ostravel::tags
