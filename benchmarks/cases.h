// SPDX-License-Identifier: MIT
// The rows of the bench's table.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/work.h"

namespace bench {

struct Case {
  std::string id;     // its name in results and budgets
  std::string group;  // heading of the table
  std::string label;
  int units;         // of what one run works on
  const char* unit;  // "tag", "element", "character", "row" or "call"
  int runs;          // that are measured: few for work that takes long
  std::function<std::unique_ptr<Work>(const Driver&)> make;
};

const std::vector<Case>& cases();

}  // namespace bench
