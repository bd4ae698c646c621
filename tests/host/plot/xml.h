// SPDX-License-Identifier: MIT
// As much of an XML parser as it takes to tell whether a file is well-formed and to find elements in it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::host {

struct XmlElement {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::string text;  // of the element and all in it, with entities resolved
};

// All elements in the order of their start tags. Throws std::runtime_error for what is not well-formed.
std::vector<XmlElement> parse_xml(std::string_view text);

}  // namespace ostravel::host
