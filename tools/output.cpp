// SPDX-License-Identifier: MIT
#include "tools/output.h"

#include <fmt/format.h>

namespace ostravel::tags {

using namespace host;

void add_format_options(CLI::App& command, Formats& formats) {
  auto* json = command.add_flag("--json", formats.json, "one JSON object a line");
  command.add_flag("--csv", formats.csv, "comma-separated values with a header line")->excludes(json);
}

void print_json(const Json& value) {
  fmt::print("{}\n", value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

Json json_of(const Tag& tag, TagField field) {
  switch (field) {
    case TagField::Count:
      return tag.count;
    case TagField::First:
      return tag.first ? Json(*tag.first) : Json();
    case TagField::Elements:
      return tag.elements;
    case TagField::Device:
      return tag.device;
    case TagField::Id:
      return tag.id;
    case TagField::Name:
    case TagField::Type:
      break;
  }
  return field_text(tag, field);
}

Json json_of(const Tag& tag) {
  Json object;
  for (std::size_t i = 0; i < kTagFields; ++i) {
    object[std::string(kTagFieldNames[i])] = json_of(tag, static_cast<TagField>(i));
  }
  return object;
}

}  // namespace ostravel::tags
