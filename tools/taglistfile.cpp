// SPDX-License-Identifier: MIT
#include "tools/taglistfile.h"

#include <fmt/format.h>

#include <cstdio>
#include <utility>

#include "host/files.h"
#include "host/text.h"
#include "tools/progress.h"

namespace ostravel::tags {

using namespace host;

TagListFile open_tag_list(const std::string& name, std::optional<char> separator) {
  auto bytes = read_file(name);
  if (!is_project(bytes)) {
    return {name, {std::move(bytes), separator}, false, false};
  }
  auto own = list_of(decode_project(bytes, name, TagFaults::Keep));
  return {name, std::move(own.list), true, own.outdated};
}

PlacedProject load_tags(const std::string& name, std::optional<char> separator) {
  const auto file = open_tag_list(name, separator);
  PlacedProject placed{name, {}, {}};
  const auto warn = file.is_project ? TagListReader::Report([](const Finding&) {}) : warn_on_stderr(name);
  RowProgress progress(name);
  placed.project = project_from_list(file.list, name, warn, [&](const TagRow& row) {
    placed.places.push_back(row.place(TagField::Name));
    progress.step();
  });
  return placed;
}

void add_separator_option(CLI::App& command, std::optional<char>& separator) {
  command
      .add_option_function<std::string>(
          "--separator", [&separator](const std::string& word) { separator = separator_from(word); },
          "what separates fields of a list; without it found out")
      ->check(CLI::IsMember({"comma", "semicolon", "tab"}));
}

std::string place_text(const std::string& name, const Place& place) {
  return fmt::format("{}:{}:{}", name, place.line, place.column);
}

TagListReader::Report warn_on_stderr(const std::string& name) {
  return [name](const Finding& finding) {
    fmt::print(stderr, "ostravel-tags: {}: warning: {}\n", visible(place_text(name, finding.place)),
               visible(finding.text));
  };
}

std::string counted(std::size_t number, const char* what) {
  return fmt::format("{} {}{}", number, what, number == 1 ? "" : "s");
}

}  // namespace ostravel::tags
