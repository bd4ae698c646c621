// SPDX-License-Identifier: MIT
#include "host/format.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "host/csv.h"
#include "host/text.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

// Texts of other people's making may not be UTF-8; the dump then has U+FFFD.
template <class Json>
std::string dump(const Json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string plain_text(const json& cell) {
  return cell.is_string() ? cell.get<std::string>() : dump(cell);
}

std::string table_cell(const json& cell) {
  return cell.is_null() ? "-" : visible(plain_text(cell));
}

std::string capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c == '_' ? ' ' : c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return text;
}

}  // namespace

std::string json_line(const std::vector<std::string>& columns, const std::vector<json>& cells) {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    object[columns[i]] = cells.at(i);
  }
  return dump(object);
}

std::string csv_line(const std::vector<json>& cells) {
  std::string line;
  for (const auto& cell : cells) {
    line += &cell == cells.data() ? "" : ",";
    line += cell.is_null() ? "" : csv_field(plain_text(cell));
  }
  return line;
}

RowWriter::RowWriter(std::FILE* out, Format format, std::vector<std::string> columns)
    : out_(out), format_(format), columns_(std::move(columns)) {
  if (format_ == Format::Csv) {
    fmt::print(out_, "{}\n", csv_line({columns_.begin(), columns_.end()}));
  }
}

void RowWriter::write(const std::vector<json>& cells) {
  if (cells.size() != columns_.size()) {
    throw std::invalid_argument("a row needs a cell for each column");
  }
  if (format_ == Format::Text) {
    auto& row = rows_.emplace_back();
    std::transform(cells.begin(), cells.end(), std::back_inserter(row), table_cell);
    return;
  }
  fmt::print(out_, "{}\n", format_ == Format::Json ? json_line(columns_, cells) : csv_line(cells));
}

void RowWriter::finish() {
  if (rows_.empty()) {
    return;
  }
  TableRow heading;
  std::transform(columns_.begin(), columns_.end(), std::back_inserter(heading), capitals);
  rows_.insert(rows_.begin(), std::move(heading));
  for (const auto& line : layout_table(rows_)) {
    fmt::print(out_, "{}\n", line);
  }
  rows_.clear();
}

}  // namespace ostravel::host
