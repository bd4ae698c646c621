// SPDX-License-Identifier: MIT
#include "host/check/findings.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/check/plctype.h"
#include "host/check/textrules.h"
#include "host/check/valuerules.h"

namespace ostravel::host::check {

const char* to_text(Verdict verdict) {
  switch (verdict) {
    case Verdict::Good:
      return "good";
    case Verdict::Doubtful:
      return "doubtful";
    case Verdict::Bad:
      return "bad";
  }
  return "";
}

const char* to_text(Reason reason) {
  switch (reason) {
    case Reason::Name:
      return "name";
    case Reason::Path:
      return "path";
    case Reason::Type:
      return "type";
    case Reason::Index:
      return "index";
    case Reason::ArrayBase:
      return "array-base";
    case Reason::Length:
      return "length";
    case Reason::WideText:
      return "wide-text";
    case Reason::Access:
      return "access";
    case Reason::Library:
      return "library";
  }
  return "";
}

Verdict worst(const std::vector<Finding>& findings) {
  Verdict verdict = Verdict::Good;
  for (const auto& finding : findings) {
    verdict = std::max(verdict, finding.verdict);
  }
  return verdict;
}

std::string type_text(const Variable& variable) {
  std::string text;
  if (!variable.element && !variable.dimensions.empty()) {
    std::string bounds;
    for (const auto& [lower, upper] : variable.dimensions) {
      bounds += fmt::format("{}{}..{}", bounds.empty() ? "" : ", ", lower, upper);
    }
    text = fmt::format("Array[{}] of ", bounds);
  }
  text += name_of(variable.system);
  const auto shape = shape_of(variable.value, variable.system).shape;
  if (shape == Shape::Text || shape == Shape::WideText) {
    text += fmt::format("[{}]", variable.string_size);
  }
  return text;
}

std::vector<Finding> judge_name(const std::string& name) {
  const auto deadly = [](const char* what) {
    return std::vector<Finding>{
        {Verdict::Bad, Reason::Name, fmt::format("{}; the driver ends the runtime on such a name", what)}};
  };
  if (name.empty()) {
    return deadly("the name is empty");
  }
  if (name.ends_with(']') && name.find('[') == std::string::npos) {
    return deadly("ends in ] without any [");
  }
  const auto placeholder = name.find("INDEX]");
  if (placeholder != std::string::npos && name.rfind('[', placeholder) == std::string::npos) {
    return deadly("has INDEX] without a [ before it");
  }
  return {};
}

std::vector<Finding> judge(const Tag& tag, bool char_paired, const Variable& variable) {
  const auto shape = shape_of(variable.value, variable.system);
  if (shape.shape == Shape::Deadly) {
    return {{Verdict::Bad, Reason::Type,
             fmt::format("the driver ends the runtime on a value of {}", name_of(variable.system))}};
  }
  if (shape.shape == Shape::Zeros) {
    return {{Verdict::Bad, Reason::Type,
             fmt::format("{} reads as 0 whatever the PLC holds; use WString", name_of(variable.system))}};
  }
  return tag.type->is_text() ? judge_text(tag, char_paired, variable, shape)
                             : judge_value(tag, variable, shape);
}

}  // namespace ostravel::host::check
