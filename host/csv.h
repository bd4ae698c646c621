// SPDX-License-Identifier: MIT
// Comma-separated values as RFC 4180 has them, with the place of every field. A byte order mark is skipped;
// lines may end in CRLF or LF.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::host {

struct CsvField {
  std::string text;
  std::size_t line = 1;    // of its first character, from 1
  std::size_t column = 1;  // in bytes, from 1
};
using CsvRow = std::vector<CsvField>;

struct CsvTable {
  std::vector<std::string> comments;  // lines before the first row that begin with '#', without it
  std::vector<CsvRow> rows;           // blank lines are left out
};

// Throws UserError for a quote that is never closed or is followed by text; source names the file in it.
CsvTable parse_csv(std::string_view text, const std::string& source);

// The field as it is written, in quotes when it needs them.
std::string csv_field(std::string_view text);

}  // namespace ostravel::host
