// SPDX-License-Identifier: MIT
// Tables as text: columns as wide as their cells, and on a terminal drawn again in place.
#pragma once

#include <cstddef>
#include <cstdio>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::host {

using TableRow = std::vector<std::string>;

// The first row is the heading. Cells longer than the limit are cut and end in "...".
std::vector<std::string> layout_table(const std::vector<TableRow>& rows, std::size_t cell_limit = 44);

// A value on one line; arrays as JSON, text in quotes.
std::string value_text(const nlohmann::json& value);

// Draws over what it drew before.
class LiveTable {
 public:
  explicit LiveTable(std::FILE* terminal) : terminal_(terminal) {}
  // Lines that do not fit the terminal's height are left out, and a last line says how many.
  void draw(const std::vector<std::string>& lines);

 private:
  std::FILE* terminal_;
  std::size_t drawn_ = 0;
};

}  // namespace ostravel::host
