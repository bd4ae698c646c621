// SPDX-License-Identifier: MIT
// Names of single array elements.
#pragma once

#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include "driver/hostrecords.h"

// "[" index "]" behind the path.
inline void append_index(std::string& path, unsigned index) {
  std::array<char, 10> digits;
  const std::to_chars_result end = std::to_chars(digits.data(), digits.data() + digits.size(), index);
  path += '[';
  path.append(digits.data(), end.ptr);
  path += ']';
}

// name "[" index "]"
inline std::string with_index(std::string_view name, unsigned index) {
  std::string path(name);
  append_index(path, index);
  return path;
}

// The name up to its last "[", whole when it has none.
inline std::string_view without_index(std::string_view name) {
  return name.substr(0, name.rfind('['));
}
