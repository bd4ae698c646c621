// SPDX-License-Identifier: MIT
// What a check finds about a tag, and by which rules a tag fits the variable that it names.
//
// The rules are those of the driver, which reads a variable as one row of bytes: an array of one dimension is
// preceded by as many elements of zeros as its lower bound says, the index of the request counts from there,
// and texts of an array are read by a path each.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "aglink/aglenums.h"
#include "host/project.h"

namespace ostravel::host::check {

enum class Verdict : std::uint8_t {
  Good,
  Doubtful,  // delivers values, which may not be what is meant
  Bad,       // delivers nothing, zeros, garbage, or ends the runtime
};
const char* to_text(Verdict verdict);

// One word, the same in every output format.
enum class Reason : std::uint8_t { Name, Path, Type, Index, ArrayBase, Length, WideText, Access, Library };
const char* to_text(Reason reason);

struct Finding {
  Verdict verdict = Verdict::Good;
  Reason reason = Reason::Path;
  std::string text;  // one line
  bool operator==(const Finding&) const = default;
};

Verdict worst(const std::vector<Finding>& findings);

struct Bounds {
  std::int32_t lower = 0;
  std::int32_t upper = 0;
};

// What the library says of the variable that a tag names.
struct Variable {
  ValueType_t::enum_t value = ValueType_t::vt_UNDEFINED;
  SystemType_t::enum_t system = SystemType_t::st_UNDEFINED;
  std::int32_t elements = 1;
  std::int32_t element_size = 0;   // in the PLC's buffer, in bytes
  std::int32_t string_size = 0;    // declared characters of a text
  std::vector<Bounds> dimensions;  // of the array that the path names, or of whose elements it names one
  bool element = false;            // the path names one element
};

// "Array[1..6] of DInt", "String[20]".
std::string type_text(const Variable& variable);

// What is wrong with a name whatever the PLC has: the driver ends the runtime on it.
std::vector<Finding> judge_name(const std::string& name);

// Whether the tag fits. Nothing found: it does.
std::vector<Finding> judge(const Tag& tag, bool char_paired, const Variable& variable);

}  // namespace ostravel::host::check
