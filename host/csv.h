// SPDX-License-Identifier: MIT
// Comma-separated values as RFC 4180 has them and as spreadsheets write them: another separator, lines that
// end in LF, CRLF or CR, a byte order mark in front. Every field knows its place.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/usererror.h"

namespace ostravel::host {

// In a text: both from 1, columns in characters. A byte order mark has none.
struct Place {
  std::size_t line = 1;
  std::size_t column = 1;
  bool operator==(const Place&) const = default;
};

// What is wrong with a text, with its place; what() is "source:line:column: fault".
struct PlacedError : UserError {
  PlacedError(const std::string& source, Place at, const std::string& what);
  Place place;
  std::string fault;
};

struct CsvField {
  std::string text;
  std::size_t line = 1;  // of its first character, or of the quote in front of that
  std::size_t column = 1;
  bool quoted = false;

  Place place() const { return {line, column}; }
};
using CsvRow = std::vector<CsvField>;

// Takes row by row from a text, which must outlive it.
class CsvReader {
 public:
  // Throws PlacedError for a text in UTF-16; source names the file in messages.
  CsvReader(std::string_view text, std::string source, char separator = ',');

  void set_separator(char separator) { separator_ = separator; }

  // What is left, from the beginning of the next line on; empty at the end.
  std::string_view rest() const { return text_.substr(position_); }
  Place place();

  // False at the end. A blank line is a row of one empty field. Throws PlacedError for a quote that is never
  // closed or is followed by text; the next call goes on behind the line of the error.
  bool next(CsvRow& row);
  // The next line as it stands, without its end.
  std::string_view next_line();

 private:
  bool at_end() const { return position_ >= text_.size(); }
  bool at_line_end() const { return at_end() || text_[position_] == '\n' || text_[position_] == '\r'; }
  void skip_line_end();
  void begin_line();
  std::size_t column();
  void read_field(CsvField& field);
  void read_quoted(CsvField& field);
  [[noreturn]] void fail(Place place, const char* what);

  std::string_view text_;
  std::string source_;
  char separator_;
  std::size_t position_ = 0;
  std::size_t line_ = 1;
  // Characters of the line in front of counted_.
  std::size_t counted_ = 0;
  std::size_t characters_ = 0;
};

struct CsvTable {
  std::vector<std::string> comments;  // lines before the first row that begin with '#', without it
  std::vector<CsvRow> rows;           // blank lines are left out
};

// Throws PlacedError as CsvReader does.
CsvTable parse_csv(std::string_view text, const std::string& source, char separator = ',');

// The field as it is written, in quotes when it needs them.
std::string csv_field(std::string_view text, char separator = ',');

}  // namespace ostravel::host
