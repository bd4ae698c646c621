// SPDX-License-Identifier: MIT
// How ostravel-tags shows data.
#pragma once

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <string>

#include "host/tag.h"

namespace ostravel::tags {

struct Formats {
  bool json = false;  // one object a line
  bool csv = false;   // a header line, then RFC 4180
};

// Adds --json and --csv, of which one can be given.
void add_format_options(CLI::App& command, Formats& formats);

using Json = nlohmann::ordered_json;

// One line, its end included. Bytes that are no UTF-8 become U+FFFD.
void print_json(const Json& value);

// Its fields by their names; first is null for a tag that is no array.
Json json_of(const host::Tag& tag);
Json json_of(const host::Tag& tag, host::TagField field);

}  // namespace ostravel::tags
