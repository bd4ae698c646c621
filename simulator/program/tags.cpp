// SPDX-License-Identifier: MIT
#include "simulator/program/tags.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/paths.h"
#include "simulator/program/tag_limits.h"

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
  void add(const Leaf& leaf) {
    const Symbol& symbol = *leaf.symbol;
    const TypeRow& row = type_row(symbol.type);
    if (auto reason = why_unreadable(symbol, leaf.path); !reason.empty())
      return leave_out(leaf, std::move(reason));
    if (symbol.string_length > 0) return add_text(leaf, row);
    if (row.tag_count > 1) return add_parts(leaf, row);
    if (symbol.dimensions.empty()) return add_row(leaf, leaf.path, row.tag_type, 1, "", 1);
    return add_array(leaf, symbol.type == DataType::Bool ? "BitArray" : row.tag_type,
                     tag_word_limit / words_of(row));
  }

  TagTable take() {
    return {"name,type,count,first,elements,device,id\n" + fmt::to_string(text_), std::move(left_out_)};
  }

 private:
  void add_row(const Leaf& leaf, std::string_view name, std::string_view type, std::uint64_t count,
               std::string_view first, std::uint64_t elements) {
    if (rows_ >= tag_row_limit) {
      return leave_out(leaf, fmt::format("the table ends after {} rows; export fewer blocks", tag_row_limit));
    }
    ++rows_;
    fmt::format_to(std::back_inserter(text_), "{},{},{},{},{},1,{}\n", csv_field(name), type, count, first,
                   elements, rows_);
  }

  void add_text(const Leaf& leaf, const TypeRow& row) {
    const Symbol& symbol = *leaf.symbol;
    if (symbol.dimensions.empty()) return add_row(leaf, leaf.path, row.tag_type, symbol.string_length, "", 1);
    const std::uint64_t count = element_count(symbol);
    if (!texts_need_own_names(symbol, leaf.path)) {
      return add_row(leaf, leaf.path, row.tag_type, symbol.string_length, "0", count);
    }
    for (std::uint64_t i = 0; i < count; ++i) {
      add_row(leaf, element_path(leaf, i), row.tag_type, symbol.string_length, "", 1);
    }
  }

  // A type that the driver gives as a row of bytes: each element is an array of its own. Where the elements'
  // array begins above 0, the driver puts the bytes of those that are missing in front.
  void add_parts(const Leaf& leaf, const TypeRow& row) {
    const Symbol& symbol = *leaf.symbol;
    const std::int64_t missing = symbol.dimensions.size() == 1 ? symbol.dimensions.front().lower : 0;
    const std::int64_t first = missing * symbol.element_size;
    if (first + row.tag_count - 1 > tag_index_limit) {
      return leave_out(leaf,
                       fmt::format("the driver's indexes end at {}; begin the array at 0", tag_index_limit));
    }
    for (std::uint64_t i = 0; i < element_count(symbol); ++i) {
      add_row(leaf, element_path(leaf, i), row.tag_type, row.tag_count, std::to_string(first), 1);
    }
  }

  void add_array(const Leaf& leaf, std::string_view type, std::uint64_t most) {
    const Symbol& symbol = *leaf.symbol;
    const std::uint64_t count = element_count(symbol);
    const bool whole_base = symbol.dimensions.size() > 1 || symbol.dimensions.front().lower == 0;
    const auto lower = static_cast<std::uint64_t>(whole_base ? 0 : symbol.dimensions.front().lower);
    const std::uint64_t by_index = std::min<std::uint64_t>(count, tag_index_limit + 1 - lower);
    for (std::uint64_t done = 0; done < by_index; done += most) {
      add_row(leaf, leaf.path, type, std::min(most, by_index - done), std::to_string(lower + done), 1);
    }
    if (by_index == count) return;
    if (!whole_base) {
      return leave_out(leaf,
                       fmt::format("the driver's indexes end at {}; begin the array at 0", tag_index_limit));
    }
    // Those behind have names that need no index.
    for (std::uint64_t i = by_index; i < count; ++i) {
      add_row(leaf, element_path(leaf, i), type_row(symbol.type).tag_type, 1, "", 1);
    }
  }

  static std::string element_path(const Leaf& leaf, std::uint64_t number) {
    return leaf.path + path_index(index_of_element(*leaf.symbol, number));
  }

  void leave_out(const Leaf& leaf, std::string reason) {
    if (left_out_.empty() || left_out_.back().leaf.symbol != leaf.symbol ||
        left_out_.back().leaf.address != leaf.address) {
      left_out_.push_back({leaf, std::move(reason)});
    }
  }

  std::vector<LeftOut> left_out_;
  fmt::memory_buffer text_;
  std::uint64_t rows_ = 0;
};

}  // namespace

TagTable export_tags(const Program& program) {
  Table table;
  for_each_variable(program.blocks, [&table](const Leaf& leaf) {
    table.add(leaf);
    return true;
  });
  return table.take();
}

std::vector<std::string> warnings_of(const TagTable& table) {
  struct Group {
    const LeftOut* first;
    std::uint64_t more;
  };
  std::vector<Group> groups;
  std::map<std::pair<const Symbol*, std::string_view>, std::size_t> known;
  for (const LeftOut& left_out : table.left_out) {
    const auto [place, is_new] = known.try_emplace({left_out.leaf.symbol, left_out.reason}, groups.size());
    if (is_new) {
      groups.push_back({&left_out, 0});
    } else {
      ++groups[place->second].more;
    }
  }
  std::vector<std::string> warnings;
  for (const auto& [first, more] : groups) {
    warnings.push_back(fmt::format("warning: {}{} is left out: {}", first->leaf.path,
                                   more == 0 ? "" : fmt::format(" (and {} more of its kind)", more),
                                   first->reason));
  }
  return warnings;
}

}  // namespace ostravel::plc
