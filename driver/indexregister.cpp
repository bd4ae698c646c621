// SPDX-License-Identifier: MIT
#include "driver/indexregister.h"

namespace {

constexpr std::string_view kPlaceholderEnd = "INDEX]";

}  // namespace

bool substitute_index(std::string_view name, WORD array_index, std::string& result) {
  const std::size_t end = name.find(kPlaceholderEnd);
  if (end == std::string_view::npos) return false;
  std::string text(name);
  const std::size_t begin = text.rfind('[', end);
  // Raises when there is no "[", deliberately: such a name means no variable.
  const std::string placeholder = text.substr(begin, end + kPlaceholderEnd.size() - begin);
  text.replace(begin, placeholder.size(), "[" + std::to_string(array_index) + "]");
  result = std::move(text);
  return true;
}
