// SPDX-License-Identifier: MIT
// A project as a list of tags in comma-separated values (host/taglist.h says what such a list may be), and
// back. The normal form of a list has commas, LF, all columns in their order, and quotes where they must be.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/project.h"
#include "host/taglist.h"

namespace ostravel::host {

// Throws UserError with one line "file:line:column: what and how to mend it".
Project project_from_csv(std::string_view text, const std::string& source);

// The same; warnings go to warn, and on_tag, unless it is empty, is shown every row in turn.
Project project_from_list(const ListText& list, const std::string& source, const TagListReader::Report& warn,
                          const std::function<void(const TagRow&)>& on_tag = {});

// The normal form: what project_from_csv reads back as the same project.
std::string project_to_csv(const Project& project);

// The list with the project's settings put before its header line, if it says otherwise. The list must have
// been read without an error.
ListText with_settings(ListText list, const Project& project);

// What a project file is made of: the list is kept unless it is in the normal form anyhow.
std::string encode_with_list(const Project& project, const ListText& list);

// The list that a project file was made of, if it still says what the file does; else the normal form.
struct OwnList {
  ListText list;
  bool outdated = false;  // a list is kept in the file and does not say what the file does
};
OwnList list_of(const ProjectFile& file);

}  // namespace ostravel::host
