// SPDX-License-Identifier: MIT
#include "host/csv.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ostravel::host {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Begins with the mark of UTF-16, or with a letter of ASCII in it: spreadsheets leave the mark out at times.
bool is_utf16(std::string_view text) {
  const bool marked = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
  return marked || (text.size() > 1 && (text[0] == '\0') != (text[1] == '\0'));
}

}  // namespace

PlacedError::PlacedError(const std::string& source, Place at, const std::string& what)
    : UserError(fmt::format("{}:{}:{}: {}", source, at.line, at.column, what)), place(at), fault(what) {}

CsvReader::CsvReader(std::string_view text, std::string source, char separator)
    : text_(text), source_(std::move(source)), separator_(separator) {
  if (text_.starts_with(kByteOrderMark)) {
    text_.remove_prefix(kByteOrderMark.size());
  }
  if (is_utf16(text_)) {
    fail({}, "is UTF-16; save the list as UTF-8, which spreadsheets call \"CSV UTF-8\"");
  }
}

void CsvReader::fail(Place place, const char* what) {
  throw PlacedError(source_, place, what);
}

std::size_t CsvReader::column() {
  const auto part = text_.substr(counted_, position_ - counted_);
  characters_ += static_cast<std::size_t>(std::count_if(part.begin(), part.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;  // what continues a character is none
  }));
  counted_ = position_;
  return characters_ + 1;
}

Place CsvReader::place() {
  return {line_, column()};
}

void CsvReader::begin_line() {
  ++line_;
  counted_ = position_;
  characters_ = 0;
}

void CsvReader::skip_line_end() {
  if (at_end()) {
    return;
  }
  position_ += text_.substr(position_, 2) == "\r\n" ? 2 : 1;
  begin_line();
}

std::string_view CsvReader::next_line() {
  const auto begin = position_;
  position_ = std::min(text_.find_first_of("\r\n", position_), text_.size());
  const auto line = text_.substr(begin, position_ - begin);
  skip_line_end();
  return line;
}

bool CsvReader::next(CsvRow& row) {
  if (at_end()) {
    return false;
  }
  std::size_t fields = 0;
  for (;;) {
    if (fields == row.size()) {
      row.emplace_back();
    }
    read_field(row[fields++]);
    if (at_line_end()) {
      break;
    }
    ++position_;  // the separator
  }
  row.resize(fields);
  skip_line_end();
  return true;
}

void CsvReader::read_field(CsvField& field) {
  field.line = line_;
  field.column = column();
  field.quoted = !at_end() && text_[position_] == '"';
  if (field.quoted) {
    read_quoted(field);
    return;
  }
  const auto begin = position_;
  while (!at_line_end() && text_[position_] != separator_) {
    ++position_;
  }
  field.text = text_.substr(begin, position_ - begin);
}

void CsvReader::read_quoted(CsvField& field) {
  field.text.clear();
  ++position_;
  for (;;) {
    if (at_end()) {
      fail(field.place(), "the quote is never closed; add one at the end of the field");
    }
    const char c = text_[position_++];
    const bool pair = position_ < text_.size() && text_[position_] == (c == '\r' ? '\n' : '"');
    if (c == '"' && !pair) {
      break;
    }
    field.text += c;
    if (c == '"') {
      ++position_;
    } else if (c == '\n' || (c == '\r' && !pair)) {
      begin_line();
    }
  }
  if (!at_line_end() && text_[position_] != separator_) {
    const auto where = place();
    next_line();
    fail(where, "text after the closing quote; write a quote inside a field twice");
  }
}

CsvTable parse_csv(std::string_view text, const std::string& source, char separator) {
  CsvReader reader(text, source, separator);
  CsvTable table;
  while (table.rows.empty() && !reader.rest().empty()) {
    if (reader.rest().front() == '#') {
      table.comments.emplace_back(reader.next_line().substr(1));
      continue;
    }
    CsvRow row;
    reader.next(row);
    if (row.size() > 1 || !row.front().text.empty()) {
      table.rows.push_back(std::move(row));
    }
  }
  for (CsvRow row; reader.next(row); row.clear()) {
    if (row.size() > 1 || !row.front().text.empty()) {
      table.rows.push_back(std::move(row));
    }
  }
  return table;
}

std::string csv_field(std::string_view text, char separator) {
  const bool blank_edge = !text.empty() && (text.front() == ' ' || text.back() == ' ' || text.front() == '#');
  const auto needs_quotes = [separator](char c) {
    return c == separator || c == '"' || c == '\r' || c == '\n';
  };
  if (!blank_edge && std::none_of(text.begin(), text.end(), needs_quotes)) {
    return std::string(text);
  }
  std::string quoted = "\"";
  for (const char c : text) {
    quoted += c;
    if (c == '"') {
      quoted += c;
    }
  }
  return quoted + '"';
}

}  // namespace ostravel::host
