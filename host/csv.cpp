// SPDX-License-Identifier: MIT
#include "host/csv.h"

#include <fmt/format.h>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

class CsvParser {
 public:
  CsvParser(std::string_view text, const std::string& source) : text_(text), source_(source) {
    if (text_.starts_with("\xEF\xBB\xBF")) {
      text_.remove_prefix(3);
    }
    if (text_.starts_with("\xFF\xFE") || text_.starts_with("\xFE\xFF")) {
      throw UserError(fmt::format("{}:1:1: is UTF-16; save the list as UTF-8", source_));
    }
  }

  CsvTable parse() {
    CsvTable table;
    while (!at_end()) {
      if (table.rows.empty() && peek() == '#') {
        table.comments.push_back(comment());
        continue;
      }
      auto row = parse_row();
      if (row.size() > 1 || !row.front().text.empty()) {
        table.rows.push_back(std::move(row));
      }
    }
    return table;
  }

 private:
  bool at_end() const { return position_ >= text_.size(); }
  char peek() const { return text_[position_]; }

  char take() {
    const char c = text_[position_++];
    if (c == '\n') {
      ++line_;
      line_start_ = position_;
    }
    return c;
  }

  bool at_line_end() const {
    return at_end() || peek() == '\n' || (peek() == '\r' && text_.substr(position_, 2) == "\r\n");
  }

  void skip_line_end() {
    while (!at_end() && take() != '\n') {
    }
  }

  std::string comment() {
    take();
    std::string content;
    while (!at_line_end()) {
      content += take();
    }
    skip_line_end();
    return content;
  }

  CsvRow parse_row() {
    CsvRow row;
    for (;;) {
      row.push_back(parse_field());
      if (at_line_end()) {
        skip_line_end();
        return row;
      }
      take();  // the comma
    }
  }

  CsvField parse_field() {
    CsvField field{{}, line_, position_ - line_start_ + 1};
    if (!at_end() && peek() == '"') {
      quoted(field);
      return field;
    }
    while (!at_line_end() && peek() != ',') {
      field.text += take();
    }
    return field;
  }

  void quoted(CsvField& field) {
    take();
    for (;;) {
      if (at_end()) {
        throw UserError(fmt::format("{}:{}:{}: the quote is never closed; add one at the end of the field",
                                    source_, field.line, field.column));
      }
      const char c = take();
      if (c != '"') {
        field.text += c;
      } else if (!at_end() && peek() == '"') {
        field.text += take();
      } else {
        break;
      }
    }
    if (!at_line_end() && peek() != ',') {
      throw UserError(
          fmt::format("{}:{}:{}: text after the closing quote; write a quote inside a field twice", source_,
                      line_, position_ - line_start_ + 1));
    }
  }

  std::string_view text_;
  const std::string& source_;
  std::size_t position_ = 0;
  std::size_t line_ = 1;
  std::size_t line_start_ = 0;
};

}  // namespace

CsvTable parse_csv(std::string_view text, const std::string& source) {
  return CsvParser(text, source).parse();
}

std::string csv_field(std::string_view text) {
  const bool blank_edge = !text.empty() && (text.front() == ' ' || text.back() == ' ' || text.front() == '#');
  if (!blank_edge && text.find_first_of(",\"\r\n") == std::string_view::npos) {
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
