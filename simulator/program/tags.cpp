// SPDX-License-Identifier: MIT
#include "simulator/program/tags.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/paths.h"

namespace ostravel::plc {
namespace {

// A field as RFC 4180 wants it: in quotes when it holds a comma, a quote or a line's end; quotes doubled.
std::string csv_field(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + '"';
}

// Words that one element of the driver's type takes: bytes take a whole word each.
unsigned words_of(const TypeRow& row) {
  return row.size > 4 && row.tag_count == 1 ? 4 : row.size > 2 && row.tag_count == 1 ? 2 : 1;
}

class Table {
 public:
  explicit Table(std::vector<std::string>* warnings) : warnings_(warnings) {}

  // False when the table is full.
  bool add(const Leaf& leaf) {
    const Symbol& symbol = *leaf.symbol;
    const TypeRow& row = type_row(symbol.type);
    if (row.tag_type.empty()) {
      warn(fmt::format("{} is left out: the driver has no type for {}", leaf.path, row.name));
      return true;
    }
    if (symbol.string_length > 0) return add_text(leaf, row);
    if (row.tag_count > 1) return add_parts(leaf, row);
    if (symbol.dimensions.empty()) return add_row(leaf.path, row.tag_type, 1, "", 1);
    return add_array(leaf, symbol.type == DataType::Bool ? "BitArray" : row.tag_type,
                     tag_word_limit / words_of(row));
  }

  std::string take() { return fmt::to_string(text_); }

 private:
  bool add_row(std::string_view name, std::string_view type, std::uint64_t count, std::string_view first,
               std::uint64_t elements) {
    if (rows_ >= tag_row_limit) {
      warn(fmt::format("the table stops after {} rows, at {}; export fewer blocks", tag_row_limit, name));
      return false;
    }
    ++rows_;
    fmt::format_to(std::back_inserter(text_), "{},{},{},{},{},1,{}\n", csv_field(name), type, count, first,
                   elements, rows_);
    return true;
  }

  bool add_text(const Leaf& leaf, const TypeRow& row) {
    const Symbol& symbol = *leaf.symbol;
    if (symbol.string_length > tag_word_limit) {
      warn(fmt::format("{} is left out: {} characters do not fit into the driver's {} words", leaf.path,
                       symbol.string_length, tag_word_limit));
      return true;
    }
    return add_row(leaf.path, row.tag_type, symbol.string_length, first_of(symbol), element_count(symbol));
  }

  // A type that the driver gives as a row of bytes: each element is an array of its own.
  bool add_parts(const Leaf& leaf, const TypeRow& row) {
    const std::uint64_t count = element_count(*leaf.symbol);
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::string name = leaf.path + path_index(index_of_element(*leaf.symbol, i));
      if (!add_row(name, row.tag_type, row.tag_count, "0", 1)) return false;
    }
    return true;
  }

  bool add_array(const Leaf& leaf, std::string_view type, std::uint64_t most) {
    const Symbol& symbol = *leaf.symbol;
    const std::uint64_t count = element_count(symbol);
    if (symbol.dimensions.size() > 1) {
      if (count <= most) return add_row(leaf.path, type, count, "0", 1);
      warn(fmt::format(
          "{} is left out: {} elements of several dimensions do not fit into the driver's {} words",
          leaf.path, count, tag_word_limit));
      return true;
    }
    for (std::uint64_t done = 0; done < count; done += most) {
      const std::int64_t first = symbol.dimensions.front().lower + static_cast<std::int64_t>(done);
      if (!add_row(leaf.path, type, std::min(most, count - done), std::to_string(first), 1)) return false;
    }
    return true;
  }

  static std::string first_of(const Symbol& symbol) {
    if (symbol.dimensions.empty()) return {};
    return symbol.dimensions.size() > 1 ? "0" : std::to_string(symbol.dimensions.front().lower);
  }

  void warn(std::string message) {
    if (warnings_ != nullptr) warnings_->push_back("warning: " + std::move(message));
  }

  std::vector<std::string>* warnings_;
  fmt::memory_buffer text_;
  std::uint64_t rows_ = 0;
};

}  // namespace

std::string export_tags_csv(const Program& program, std::vector<std::string>* warnings) {
  Table table(warnings);
  for_each_leaf(program.blocks, [&table](const Leaf& leaf) { return table.add(leaf); });
  return "name,type,count,first,elements,device,id\n" + table.take();
}

}  // namespace ostravel::plc
