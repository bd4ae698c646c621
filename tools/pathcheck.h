// SPDX-License-Identifier: MIT
// What keeps a tag's name from being the path of a variable in any PLC.
//
//   path  = part { "." part }          part  = name [ index ]
//   name  = letter or "_" { letter or digit or "_" } | quote { anything but a quote } quote
//   index = "[" number { "," number } "]" | "[" ... "INDEX]"     the runtime supplies the latter, once a path
//
// Letters beyond ASCII are letters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/taglist.h"

namespace ostravel::tags {

struct PathFault {
  host::Severity severity = host::Severity::Error;
  std::size_t position = 0;  // in the name, in bytes, from 0
  std::string text;
};

// In the order of their positions.
std::vector<PathFault> path_faults(std::string_view name);

// Names with the same key are paths of the same variable: letter case and quotes that need not be are gone.
// Letters beyond Latin keep their case.
std::string path_key(std::string_view name);

// Characters of a text in UTF-8.
std::size_t characters(std::string_view text);

}  // namespace ostravel::tags
