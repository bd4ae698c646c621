// SPDX-License-Identifier: MIT
#include "simulator/program/tag_limits.h"

#include <fmt/format.h>

#include "simulator/program/data_type.h"

namespace ostravel::plc {
namespace {

// Lower bound of an array of one dimension; the driver brings only those to a base of 0.
std::int64_t base_of(const Symbol& symbol) {
  return symbol.dimensions.size() == 1 ? symbol.dimensions.front().lower : 0;
}

std::string why_array_unreadable(const Symbol& symbol) {
  const auto base = base_of(symbol);
  if (base < 0) return "the driver reads arrays that begin below 0 as zeros; begin it at 0";
  if (base > tag_index_limit) {
    return fmt::format("the driver's indexes end at {}; begin the array below", tag_index_limit);
  }
  if (base > 0 && symbol.string_length > 0) {
    return "the driver reads the texts of an array that does not begin at 0 as empty; begin it at 0";
  }
  // It skips what lies in front of the array by the PLC's two bytes, and counts elements by its own four.
  if (base > 0 && (symbol.type == DataType::S5Time || symbol.type == DataType::Timer)) {
    return fmt::format("the driver reads arrays of {} that do not begin at 0 shifted; begin it at 0",
                       type_row(symbol.type).name);
  }
  return {};
}

}  // namespace

std::string why_unreadable(const Symbol& symbol, std::string_view path) {
  if (symbol.type == DataType::Opaque) {
    return symbol.type_name.empty()
               ? "it has no memory of its own that can be read: a view of bits, or an array of any size"
               : fmt::format("the layout of the type {} is not known", symbol.type_name);
  }
  if (!symbol.readable) return "it is not accessible from outside (ExternalAccessible)";
  const TypeRow& row = type_row(symbol.type);
  if (row.tag_type.empty()) return fmt::format("the driver has no type for {}", row.name);
  if (path.find("INDEX]") != std::string_view::npos)
    return "the driver takes INDEX] in a name for a placeholder";
  const bool bytes_as_words = symbol.type == DataType::WString && symbol.string_length != paired_wide_length;
  const auto most = bytes_as_words ? tag_word_limit / 2 : tag_word_limit;
  if (symbol.string_length > most) {
    return fmt::format("{} characters do not fit into the driver's {} words; {} do", symbol.string_length,
                       tag_word_limit, most);
  }
  return why_array_unreadable(symbol);
}

bool texts_need_own_names(const Symbol& symbol, std::string_view path) {
  return symbol.dimensions.size() > 1 || path.find('[') != std::string_view::npos ||
         (!symbol.dimensions.empty() && symbol.dimensions.front().upper > tag_index_limit);
}

}  // namespace ostravel::plc
