// SPDX-License-Identifier: MIT
// Whether a tag that is no text fits its variable.
#pragma once

#include <vector>

#include "host/check/findings.h"
#include "host/check/plctype.h"

namespace ostravel::host::check {

std::vector<Finding> judge_value(const Tag& tag, const Variable& variable, PlcShape shape);

}  // namespace ostravel::host::check
