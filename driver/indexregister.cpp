// SPDX-License-Identifier: MIT
#include "driver/indexregister.h"

#include "driver/arrayelement.h"

namespace {

constexpr std::string_view kPlaceholderEnd = "INDEX]";

}  // namespace

bool has_index_placeholder(std::string_view name) {
  return name.find(kPlaceholderEnd) != std::string_view::npos;
}

bool substitute_index(std::string_view name, WORD array_index, std::string& result) {
  const std::size_t end = name.find(kPlaceholderEnd);
  if (end == std::string_view::npos) return false;
  const std::size_t begin = name.rfind('[', end);
  // Raises when there is no "[", deliberately: such a name means no variable.
  if (begin == std::string_view::npos) (void)std::string(name).substr(begin);
  result.reserve(name.size());  // the whole of what is needed: nothing is half built
  result.assign(name, 0, begin);
  append_index(result, array_index);
  result.append(name, end + kPlaceholderEnd.size());
  return true;
}
