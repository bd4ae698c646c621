// SPDX-License-Identifier: MIT
// Names of single array elements.
#pragma once

#include <string>
#include <string_view>

#include "driver/hostrecords.h"

// name "[" index "]"
inline std::string with_index(std::string_view name, unsigned index) {
  std::string path(name);
  path += '[';
  path += std::to_string(index);
  path += ']';
  return path;
}

// The name up to its last "[", whole when it has none.
inline std::string_view without_index(std::string_view name) {
  return name.substr(0, name.rfind('['));
}
