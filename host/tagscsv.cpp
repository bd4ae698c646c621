// SPDX-License-Identifier: MIT
#include "host/tagscsv.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

namespace ostravel::host {
namespace {

void ignore(const Finding&) {}

// How the line at the beginning of text ends; as the normal form does when it does not.
std::string_view line_end_of(std::string_view text) {
  const auto end = text.find_first_of("\r\n");
  if (end == std::string_view::npos) {
    return "\n";
  }
  return text.substr(end, text.substr(end, 2) == "\r\n" ? 2 : 1);
}

}  // namespace

Project project_from_list(const ListText& list, const std::string& source, const TagListReader::Report& warn,
                          const std::function<void(const TagRow&)>& on_tag) {
  const auto report = [&](const Finding& finding) {
    if (finding.severity == Severity::Error) {
      throw PlacedError(source, finding.place, finding.text);
    }
    warn(finding);
  };
  TagListReader reader(list.text, source, list.separator, report);
  Project project = reader.settings();
  for (TagRow row; reader.next(row);) {
    for (const auto& fault : tag_faults(row.tag, project.char_paired)) {
      throw PlacedError(source, row.place(fault.field), fault.text);
    }
    if (on_tag) {
      on_tag(row);
    }
    project.tags.push_back(std::move(row.tag));
  }
  return project;
}

Project project_from_csv(std::string_view text, const std::string& source) {
  return project_from_list({std::string(text), std::nullopt}, source, ignore);
}

std::string project_to_csv(const Project& project) {
  fmt::memory_buffer text;
  const auto out = std::back_inserter(text);
  fmt::format_to(out, "{}{}\n", setting_lines(project, "\n"), fmt::join(kTagFieldNames, ","));
  for (const auto& tag : project.tags) {
    fmt::format_to(out, "{},{},{},", csv_field(tag.name), tag.type->name, tag.count);
    if (tag.first) {
      fmt::format_to(out, "{}", *tag.first);
    }
    fmt::format_to(out, ",{},{},{}\n", tag.elements, tag.device, tag.id);
  }
  return fmt::to_string(text);
}

ListText with_settings(ListText list, const Project& project) {
  const TagListReader reader(list.text, {}, list.separator, ignore);
  Project changed;
  if (project.password != reader.settings().password) {
    changed.password = project.password;
  }
  changed.char_paired = project.char_paired && !reader.settings().char_paired;
  const auto header = reader.header_position();
  list.text.insert(header, setting_lines(changed, line_end_of(std::string_view(list.text).substr(header))));
  return list;
}

std::string encode_with_list(const Project& project, const ListText& list) {
  if (list.text == project_to_csv(project)) {
    return encode_project(project);
  }
  return encode_project(project, list);
}

OwnList list_of(const ProjectFile& file) {
  if (file.list) {
    try {
      if (project_from_list(*file.list, {}, ignore) == file.project) {
        return {*file.list, false};
      }
    } catch (const UserError&) {
      // Falls through: a list that cannot be read is not the file's.
    }
  }
  return {{project_to_csv(file.project), std::nullopt}, file.list.has_value()};
}

}  // namespace ostravel::host
