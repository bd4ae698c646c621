// SPDX-License-Identifier: MIT
#include "host/tag.h"

#include <fmt/format.h>

namespace ostravel::host {

std::string field_text(const Tag& tag, TagField field) {
  switch (field) {
    case TagField::Name:
      return tag.name;
    case TagField::Type:
      return std::string(tag.type->name);
    case TagField::Count:
      return std::to_string(tag.count);
    case TagField::First:
      return tag.first ? std::to_string(*tag.first) : std::string();
    case TagField::Elements:
      return std::to_string(tag.elements);
    case TagField::Device:
      return std::to_string(tag.device);
    case TagField::Id:
      return std::to_string(tag.id);
  }
  return {};
}

std::uint32_t words_of(const Tag& tag, bool char_paired) {
  const auto count = static_cast<std::uint32_t>(tag.count);
  if (tag.type->kind == ValueKind::Text && char_paired) {
    return (count + 1) / 2;
  }
  if (tag.type->kind == ValueKind::WideText && !char_paired && tag.count != kWideDeclaredLength) {
    return 2 * count;  // the driver does not see that it is wide and gives each byte a word of its own
  }
  return count * static_cast<std::uint32_t>(tag.type->words);
}

std::vector<TagFault> tag_faults(const Tag& tag, bool char_paired) {
  std::vector<TagFault> faults;
  if (tag.count == 0) {
    faults.push_back({TagField::Count, "count must be at least 1"});
  }
  if (const auto words = words_of(tag, char_paired); words > kRecordWords) {
    faults.push_back(
        {TagField::Count, fmt::format("{} x {} needs {} words, and a record holds {}; split the tag",
                                      tag.count, tag.type->name, words, kRecordWords)});
  }
  if (tag.elements == 0) {
    faults.push_back({TagField::Elements, "elements must be at least 1"});
  }
  if (tag.elements > 1 && !(tag.type->is_text() && tag.is_array())) {
    faults.push_back({TagField::Elements, "elements belongs to arrays of texts; leave it 1, or give first"});
  }
  if (tag.type->kind == ValueKind::Bool && (tag.count > 1 || tag.is_array())) {
    faults.push_back({TagField::Type, "an array of Bool has the type BitArray; change the type"});
  }
  if (!tag.first) {
    return faults;
  }
  if (*tag.first < kFirstLowest || *tag.first > kFirstHighest) {
    faults.push_back({TagField::First, fmt::format("first must be {} to {}", kFirstLowest, kFirstHighest)});
  } else if (tag.last() > kFirstHighest) {
    faults.push_back({TagField::First,
                      fmt::format("the last index is {}, and the highest is {}", tag.last(), kFirstHighest)});
  }
  return faults;
}

std::string tag_fault(const Tag& tag, bool char_paired) {
  auto faults = tag_faults(tag, char_paired);
  return faults.empty() ? std::string() : std::move(faults.front().text);
}

}  // namespace ostravel::host
