// SPDX-License-Identifier: MIT
// Rows of named cells as a table for people, as JSON lines or as CSV: the same data in each.
#pragma once

#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/table.h"

namespace ostravel::host {

enum class Format : std::uint8_t {
  Text,  // a table with the columns' names in capitals, once all rows are there
  Json,  // one object a line, its members in the order of the columns
  Csv,   // a line with the columns' names, then a line a row, as RFC 4180 has fields; lines end in LF
};

// In the table and in CSV a text cell stands as it is, any other as JSON; null is "-" and empty respectively.
// Lists and objects are JSON everywhere. Control characters are shown as \uXXXX in the table.
class RowWriter {
 public:
  // Prints the header line of CSV at once. The stream must outlive the writer.
  RowWriter(std::FILE* out, Format format, std::vector<std::string> columns);

  // As many cells as there are columns. JSON and CSV lines go out whole, at once, but are not flushed.
  void write(const std::vector<nlohmann::json>& cells);

  // Prints the table. Nothing when no row was written.
  void finish();

 private:
  std::FILE* out_;
  Format format_;
  std::vector<std::string> columns_;
  std::vector<TableRow> rows_;
};

// One line of each, without its end.
std::string json_line(const std::vector<std::string>& columns, const std::vector<nlohmann::json>& cells);
std::string csv_line(const std::vector<nlohmann::json>& cells);

}  // namespace ostravel::host
