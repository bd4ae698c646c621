// SPDX-License-Identifier: MIT
#include "host/check/valuerules.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>

#include "host/check/textrules.h"

namespace ostravel::host::check {
namespace {

using Findings = std::vector<Finding>;

bool is_bit(const Tag& tag) {
  return tag.type->kind == ValueKind::Bool || tag.type->kind == ValueKind::Bit;
}

std::optional<Finding> judge_bit_type(const Tag& tag, const Variable& variable, PlcShape shape) {
  if (shape.shape == Shape::Bool) {
    return std::nullopt;
  }
  if (shape.bytes == 1) {
    return types_differ(Verdict::Doubtful, tag, variable, ": true for anything but 0");
  }
  return types_differ(Verdict::Bad, tag, variable, "");
}

std::optional<Finding> judge_type(const Tag& tag, const Variable& variable, PlcShape shape) {
  if (is_bit(tag)) {
    return judge_bit_type(tag, variable, shape);
  }
  const auto kind = tag.type->kind;
  const int bytes = tag.type->bits / 8;
  switch (shape.shape) {
    case Shape::Parts:
      if (kind == ValueKind::Unsigned && bytes == 1) {
        return std::nullopt;
      }
      return types_differ(Verdict::Bad, tag, variable,
                          fmt::format("; read it as BYTE with first 0 and count {}", shape.bytes));
    case Shape::Real:
      if (kind == ValueKind::Real && bytes == shape.bytes) {
        return std::nullopt;
      }
      return types_differ(Verdict::Bad, tag, variable, "");
    case Shape::Bool:
      if (bytes == 1) {
        return types_differ(Verdict::Doubtful, tag, variable, ": a number instead of true and false");
      }
      return types_differ(Verdict::Bad, tag, variable, "");
    case Shape::Signed:
    case Shape::Unsigned:
      if (kind == ValueKind::Real || bytes != shape.bytes) {
        return types_differ(Verdict::Bad, tag, variable, "");
      }
      if ((kind == ValueKind::Signed) != (shape.shape == Shape::Signed)) {
        return types_differ(Verdict::Doubtful, tag, variable, ": the same bytes with another sign");
      }
      return std::nullopt;
    default:
      return types_differ(Verdict::Bad, tag, variable, "");
  }
}

// The row of bytes that the driver makes of the variable, and the part of it that the tag takes.
struct Row {
  std::int64_t fill = 0;   // zeros in front; what lies behind a negative bound is out of reach
  std::int64_t value = 1;  // of one element
  std::int64_t total = 0;
  std::int64_t start = 0;
  std::int64_t end = 0;
};

bool one_dimension(const Variable& variable) {
  return variable.dimensions.size() == 1;
}

bool shifted(const Variable& variable) {
  return one_dimension(variable) && variable.dimensions.front().lower != 0;
}

// A name that ends in [INDEX] itself keeps the index of the request for the elements behind it.
Row row_of(const Tag& tag, const Variable& variable, PlcShape shape) {
  Row row;
  const std::int64_t unit = tag.type->bits / 8;
  row.value = shape.bytes;
  row.fill = shifted(variable) ? std::int64_t{variable.element_size} * variable.dimensions.front().lower : 0;
  row.total = row.fill + row.value * variable.elements;
  const bool whole = !tag.first || (variable.element && !one_dimension(variable));
  row.start = whole ? 0 : *tag.first * unit;
  row.end = row.start + unit * tag.count;
  return row;
}

std::string bounds_text(const Variable& variable, PlcShape shape) {
  if (shape.shape == Shape::Parts) {
    return fmt::format("0..{}", std::int64_t{shape.bytes} * variable.elements - 1);
  }
  if (one_dimension(variable)) {
    return fmt::format("{}..{}", variable.dimensions.front().lower, variable.dimensions.front().upper);
  }
  return fmt::format("0..{}", variable.elements - 1);
}

// The driver reads bytes and bits one by one and ends the runtime behind the last one; of wider types it
// leaves zeros behind the last and ends the runtime only when nothing at all is left.
Finding beyond_end(const Tag& tag, const Variable& variable, PlcShape shape, const Row& row) {
  const bool ends = tag.type->bits == 8 || row.start >= row.total;
  const auto after = ends ? "the driver ends the runtime there" : "what is beyond reads as 0";
  const auto last = tag.first.value_or(0) + tag.count - 1;
  if (variable.element || (variable.dimensions.empty() && shape.shape != Shape::Parts)) {
    return {Verdict::Bad, Reason::Index,
            fmt::format("the variable is one {}, and the project reads {} elements from {} on; {}",
                        type_text(variable), tag.count, tag.first.value_or(0), after)};
  }
  return {Verdict::Bad, Reason::Index,
          fmt::format("index {} is outside {}; {}", last, bounds_text(variable, shape), after)};
}

void judge_shifted(const Tag& tag, const Variable& variable, const Row& row, Findings& findings) {
  const auto [lower, upper] = variable.dimensions.front();
  const auto add = [&](Reason reason, std::string text) {
    findings.push_back({Verdict::Bad, reason, std::move(text)});
  };
  if (lower < 0) {
    add(Reason::ArrayBase, fmt::format("an array from {} on reads as zeros; start it at 0", lower));
  } else if (variable.element) {
    add(Reason::ArrayBase,
        fmt::format("an element of an array from {} on reads as 0 under a tag of its own; read it "
                    "by the array's plain name and an index",
                    lower));
  } else if (!tag.first) {
    add(Reason::ArrayBase,
        fmt::format("read without an index, an array from {} on begins with zeros; give first {}", lower,
                    lower));
  } else if (*tag.first < lower) {
    add(Reason::Index, fmt::format("index {} is outside {}..{} and reads as 0", *tag.first, lower, upper));
  } else if (row.value != variable.element_size) {
    add(Reason::ArrayBase,
        fmt::format(
            "the driver makes {} bytes of each element's {}, which shifts an array from {} on; start it at 0",
            row.value, variable.element_size, lower));
  }
}

void judge_place(const Tag& tag, const Variable& variable, PlcShape shape, Findings& findings) {
  const auto row = row_of(tag, variable, shape);
  if (shifted(variable)) {
    judge_shifted(tag, variable, row, findings);
  }
  if (row.end > row.total && (!shifted(variable) || variable.dimensions.front().lower >= 0)) {
    findings.push_back(beyond_end(tag, variable, shape, row));
  }
  if (!findings.empty()) {
    return;
  }
  const bool plain_array = !variable.element && !variable.dimensions.empty();
  if (plain_array && !tag.is_array() && tag.count == 1 && variable.elements > 1) {
    findings.push_back(
        {Verdict::Doubtful, Reason::Index,
         fmt::format("the variable is {}, and only its first element is read; give first and count{}",
                     type_text(variable), tag.type->kind == ValueKind::Bool ? " as BitArray" : "")});
  } else if (variable.dimensions.empty() && tag.is_array() && shape.shape != Shape::Parts) {
    findings.push_back({Verdict::Doubtful, Reason::Index, "the variable is no array; leave first empty"});
  }
}

}  // namespace

Findings judge_value(const Tag& tag, const Variable& variable, PlcShape shape) {
  Findings findings;
  if (auto finding = judge_type(tag, variable, shape)) {
    if (finding->verdict == Verdict::Bad) {
      return {*finding};
    }
    Findings places;
    judge_place(tag, variable, shape, places);
    places.insert(places.begin(), std::move(*finding));
    return places;
  }
  judge_place(tag, variable, shape, findings);
  if (shape.shape == Shape::Parts && findings.empty() && tag.count % shape.bytes != 0) {
    findings.push_back({Verdict::Doubtful, Reason::Length,
                        fmt::format("{} has {} bytes, and the project reads {}", type_text(variable),
                                    shape.bytes, tag.count)});
  }
  return findings;
}

}  // namespace ostravel::host::check
