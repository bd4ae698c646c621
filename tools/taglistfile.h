// SPDX-License-Identifier: MIT
// Files that hold tags, whether lists or project files.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "host/tagscsv.h"

namespace ostravel::tags {

// What a file says, as a list; places in a project file are those in the list that dump prints of it.
struct TagListFile {
  std::string name;
  host::ListText list;
  bool is_project = false;
  bool outdated = false;  // a project file with a list that is not its tags'
};

// The separator is for lists. A project file may have tags that cannot be used. Throws UserError.
TagListFile open_tag_list(const std::string& name, std::optional<char> separator);

struct PlacedProject {
  std::string name;
  host::Project project;
  std::vector<host::Place> places;  // of the tags
};

// Throws UserError for the first error in the file. Warnings go to standard error.
PlacedProject load_tags(const std::string& name, std::optional<char> separator);

// Adds --separator to a command.
void add_separator_option(CLI::App& command, std::optional<char>& separator);

// "FILE:LINE:COLUMN"
std::string place_text(const std::string& name, const host::Place& place);

// Prints a finding that is no error to standard error, for use where errors end the command.
host::TagListReader::Report warn_on_stderr(const std::string& name);

// "1 tag", "2 tags"
std::string counted(std::size_t number, const char* what);

}  // namespace ostravel::tags
