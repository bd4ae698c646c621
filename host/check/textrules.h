// SPDX-License-Identifier: MIT
// Whether a text tag fits its variable.
#pragma once

#include <vector>

#include "host/check/findings.h"
#include "host/check/plctype.h"

namespace ostravel::host::check {

std::vector<Finding> judge_text(const Tag& tag, bool char_paired, const Variable& variable, PlcShape shape);

// What a tag and a variable of other types are called in a finding.
Finding types_differ(Verdict verdict, const Tag& tag, const Variable& variable, const std::string& what);

}  // namespace ostravel::host::check
