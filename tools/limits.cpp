// SPDX-License-Identifier: MIT
#include "tools/limits.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/pathcheck.h"

namespace ostravel::tags {
namespace {

using namespace host;

// What a PLC lets a text be declared with.
constexpr int kLongestString = 254;

std::string variable_key(const Tag& tag, std::string_view name) {
  return fmt::format("{}:{}", tag.device, path_key(name));
}

// The array of a name that ends in one index; empty for other names.
std::string_view array_of(std::string_view name) {
  const auto bracket = name.rfind('[');
  if (!name.ends_with(']') || bracket == std::string_view::npos ||
      name.find(',', bracket) != std::string_view::npos) {
    return {};
  }
  return name.substr(0, bracket);
}

}  // namespace

std::vector<Finding> LimitChecker::add(const TagRow& row) {
  const auto& tag = row.tag;
  std::vector<Finding> findings;
  if (tag.type->is_text()) {
    add_text(row, findings);
  }
  if (tag.first && *tag.first < 0) {
    findings.push_back({Severity::Warning, row.place(TagField::First),
                        "an array with a negative lower bound reads as zeros; start it at 0 in the PLC"});
  } else if (tag.count > 1 && tag.type->kind == ValueKind::Unsigned && tag.type->bits == 16) {
    findings.push_back({Severity::Warning, row.place(TagField::Type),
                        fmt::format("a write of several elements of a {} array swaps the bytes of the first "
                                    "one; write that one once more",
                                    tag.type->name)});
  }
  note_array(row);
  return findings;
}

void LimitChecker::add_text(const TagRow& row, std::vector<Finding>& findings) {
  const auto& tag = row.tag;
  const Noted noted{tag, row.place(TagField::Type)};
  if (tag.type->kind == ValueKind::Text) {
    narrow_texts_ = true;
    if (tag.count > kLongestString) {
      findings.push_back({Severity::Error, row.place(TagField::Count),
                          fmt::format("a STRING has at most {} characters in a PLC", kLongestString)});
    }
    return;
  }
  if (first_wide_text_.empty()) {
    first_wide_text_.push_back(noted);
  }
  if (char_paired_) {
    return;
  }
  if (tag.count != kWideDeclaredLength) {
    findings.push_back({Severity::Warning, row.place(TagField::Count),
                        fmt::format("a WSTRING of {} characters comes a byte a word; declare it WString[{}]",
                                    tag.count, kWideDeclaredLength)});
  } else if (first_paired_text_.empty()) {
    first_paired_text_.push_back(noted);
  }
}

void LimitChecker::note_array(const TagRow& row) {
  const auto& tag = row.tag;
  if (tag.first) {
    const auto [entry, is_new] = array_starts_.emplace(variable_key(tag, tag.name), *tag.first);
    entry->second = std::min(entry->second, *tag.first);
    if (*tag.first > 0) {
      raised_arrays_.push_back({tag, row.place(TagField::First)});
    }
  }
  if (!array_of(tag.name).empty()) {
    elements_.push_back({tag, row.place(TagField::Name)});
  }
}

std::vector<std::pair<Finding, std::string>> LimitChecker::finish() const {
  std::vector<std::pair<Finding, std::string>> findings;
  const auto warn = [&findings](const Noted& noted, std::string text) {
    findings.emplace_back(Finding{Severity::Warning, noted.place, std::move(text)}, noted.tag.name);
  };
  for (const auto& noted : raised_arrays_) {
    if (array_starts_.at(variable_key(noted.tag, noted.tag.name)) <= 0) {
      continue;
    }
    if (noted.tag.type->is_text()) {
      warn(noted, "texts of an array that does not start at 0 read as empty; start it at 0 in the PLC");
    } else if (noted.tag.count > 1) {
      warn(noted, fmt::format("a write of several elements starts {} too far on; write one at a time",
                              *noted.tag.first));
    }
  }
  for (const auto& noted : elements_) {
    const auto array = array_of(noted.tag.name);
    const auto found = array_starts_.find(variable_key(noted.tag, array));
    if (found != array_starts_.end() && found->second != 0) {
      warn(noted, fmt::format("an element of an array that does not start at 0 reads as zero by itself; "
                              "read {} with an index",
                              array));
    }
  }
  for (const auto& noted : first_wide_text_) {
    warn(noted, "plain letters written to a WSTRING arrive two to a character; write texts to a STRING");
  }
  for (const auto& noted : first_paired_text_) {
    if (narrow_texts_) {
      warn(noted, "a STRING polled where this one stood in a batch comes paired; poll the two apart");
    }
  }
  return findings;
}

}  // namespace ostravel::tags
