// SPDX-License-Identifier: MIT
#include "tools/listcheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

#include "tools/duplicates.h"
#include "tools/limits.h"
#include "tools/pathcheck.h"

namespace ostravel::tags {
namespace {

using namespace host;

// A position in a name as a place in the list: quotes in a field in quotes are written twice.
Place place_in_name(const TagRow& row, std::size_t position) {
  auto place = row.place(TagField::Name);
  const auto before = std::string_view(row.tag.name).substr(0, position);
  if (before.find_first_of("\r\n") != std::string_view::npos) {
    return place;
  }
  place.column += characters(before);
  if (row.quoted_name) {
    place.column += 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '"'));
  }
  return place;
}

class ListChecker {
 public:
  ListCheck check(const ListText& list, const std::function<void()>& on_tag) {
    try {
      TagListReader reader(list.text, {}, list.separator, [this](const Finding& finding) {
        add(finding.severity, finding.place, finding.text, {});
      });
      read(reader, on_tag);
    } catch (const PlacedError& error) {
      add(Severity::Error, error.place, error.fault, {});
    }
    auto& findings = check_.findings;
    std::stable_sort(findings.begin(), findings.end(), [](const TagFinding& a, const TagFinding& b) {
      const auto& x = a.finding.place;
      const auto& y = b.finding.place;
      return std::tie(x.line, x.column) < std::tie(y.line, y.column);
    });
    return std::move(check_);
  }

 private:
  void add(Severity severity, Place place, std::string text, const std::string& tag) {
    check_.findings.push_back({{severity, place, std::move(text)}, tag});
  }

  void read(TagListReader& reader, const std::function<void()>& on_tag) {
    char_paired_ = reader.settings().char_paired;
    LimitChecker limits(char_paired_);
    auto told = check_.findings.size();
    for (TagRow row; reader.next(row);) {
      ++check_.tags;
      if (on_tag) {
        on_tag();
      }
      // What the reader told meanwhile is about this row, or about a line before it that is no row at all.
      for (; told < check_.findings.size(); ++told) {
        auto& found = check_.findings[told];
        found.tag = found.finding.place.line >= row.place(TagField::Name).line ? row.tag.name : std::string();
      }
      if (!row.tag.name.empty()) {
        check_name(row);
      }
      if (row.whole) {
        check_tag(row, limits);
      }
      told = check_.findings.size();
    }
    for (const auto& [finding, tag] : limits.finish()) {
      add(finding.severity, finding.place, finding.text, tag);
    }
  }

  void check_tag(const TagRow& row, LimitChecker& limits) {
    for (const auto& fault : tag_faults(row.tag, char_paired_)) {
      add(Severity::Error, row.place(fault.field), fault.text, row.tag.name);
    }
    if (const auto finding = duplicates_.add(row)) {
      add(finding->severity, finding->place, finding->text, row.tag.name);
    }
    for (const auto& finding : limits.add(row)) {
      add(finding.severity, finding.place, finding.text, row.tag.name);
    }
  }

  void check_name(const TagRow& row) {
    for (const auto& fault : path_faults(row.tag.name)) {
      add(fault.severity, place_in_name(row, fault.position), fault.text, row.tag.name);
    }
  }

  ListCheck check_;
  Duplicates duplicates_;
  bool char_paired_ = false;
};

}  // namespace

std::size_t ListCheck::count(Severity severity) const {
  return static_cast<std::size_t>(
      std::count_if(findings.begin(), findings.end(),
                    [severity](const TagFinding& found) { return found.finding.severity == severity; }));
}

ListCheck check_list(const ListText& list, const std::function<void()>& on_tag) {
  return ListChecker().check(list, on_tag);
}

}  // namespace ostravel::tags
