// SPDX-License-Identifier: MIT
#include "host/check/textrules.h"

#include <fmt/format.h>

namespace ostravel::host::check {
namespace {

using Findings = std::vector<Finding>;

// Texts of an array are asked for one by one, as NAME[INDEX].
void judge_place(const Tag& tag, const Variable& variable, Findings& findings) {
  const auto add = [&](Reason reason, std::string text) {
    findings.push_back({Verdict::Bad, reason, std::move(text)});
  };
  const auto& dimensions = variable.dimensions;
  if (dimensions.empty()) {
    if (tag.is_array()) {
      add(Reason::Index, "the variable is no array; leave first empty");
    }
    return;
  }
  const bool one = dimensions.size() == 1;
  const auto [lower, upper] = dimensions.front();
  if (!variable.element && !tag.is_array()) {
    add(Reason::Index, fmt::format("the variable is {}; give first and elements", type_text(variable)));
    return;
  }
  if (!variable.element && !one) {
    add(Reason::Index, fmt::format("texts of an array of {} dimensions need a tag each, named with its index",
                                   dimensions.size()));
    return;
  }
  if (one && lower != 0) {
    add(Reason::ArrayBase, fmt::format("texts of an array from {} on read as empty; start it at 0", lower));
  }
  if (variable.element) {
    return;
  }
  const auto last = *tag.first + tag.elements - 1;
  if (*tag.first < lower || last > upper) {
    add(Reason::Index,
        fmt::format("index {} is outside {}..{}", *tag.first < lower ? *tag.first : last, lower, upper));
  }
}

void judge_length(const Tag& tag, const Variable& variable, Findings& findings) {
  if (variable.string_size > tag.count) {
    findings.push_back(
        {Verdict::Bad, Reason::Length,
         fmt::format("too long for the layout: the PLC's text has up to {} characters, and {} of "
                     "them are read; pack it with count {}",
                     variable.string_size, tag.count, variable.string_size)});
  } else if (variable.string_size < tag.count) {
    findings.push_back(
        {Verdict::Doubtful, Reason::Length,
         fmt::format("the PLC's text has up to {} characters, the project's {}: what is written is cut",
                     variable.string_size, tag.count)});
  }
}

// Where texts travel a byte a word, the driver knows a wide one by its declared length alone.
void judge_width(const Tag& tag, const Variable& variable, Findings& findings) {
  const bool known = variable.string_size == kWideDeclaredLength;
  const bool expected = tag.count == kWideDeclaredLength;
  if (known != expected) {
    findings.push_back(
        {Verdict::Bad, Reason::WideText,
         fmt::format("arrives garbled: a wide text is known by its declared length of {}, which is {} "
                     "in the PLC and {} in the project",
                     kWideDeclaredLength, variable.string_size, tag.count)});
  } else if (!known) {
    findings.push_back({Verdict::Doubtful, Reason::WideText,
                        fmt::format("a wide text of {} characters arrives a byte a word; declare WString[{}]",
                                    variable.string_size, kWideDeclaredLength)});
  }
}

}  // namespace

Finding types_differ(Verdict verdict, const Tag& tag, const Variable& variable, const std::string& what) {
  return {verdict, Reason::Type,
          fmt::format("the PLC has {}, the project {}{}", type_text(variable), tag.type->name, what)};
}

Findings judge_text(const Tag& tag, bool char_paired, const Variable& variable, PlcShape shape) {
  const bool wide_tag = tag.type->kind == ValueKind::WideText;
  const bool wide = shape.shape == Shape::WideText;
  if (!wide && (wide_tag || shape.shape != Shape::Text)) {
    return {types_differ(Verdict::Bad, tag, variable, "")};
  }
  Findings findings;
  if (wide && !wide_tag) {
    // The driver has one type for both; but of a plain one that is char-paired it has half the words.
    findings.push_back(
        types_differ(char_paired ? Verdict::Bad : Verdict::Doubtful, tag, variable, "; pack it as WSTRING"));
  }
  judge_place(tag, variable, findings);
  judge_length(tag, variable, findings);
  if (wide && !char_paired) {
    judge_width(tag, variable, findings);
  }
  return findings;
}

}  // namespace ostravel::host::check
