// SPDX-License-Identifier: MIT
#include "simulator/program/paths.h"

#include <fmt/format.h>

#include <algorithm>

#include "simulator/program/encoding.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

std::string joined(const std::string& parent, const Symbol& symbol) {
  return parent.empty() ? path_name(symbol.name) : parent + '.' + path_name(symbol.name);
}

// Searches symbols, whose parent's element starts at base, for the target. Symbols may overlap: a view lies
// over another symbol, so a place alone does not tell which one is meant.
std::optional<std::string> search(const std::vector<Symbol>& symbols, std::uint64_t base,
                                  const std::string& parent, const Target& target) {
  for (const Symbol& symbol : symbols) {
    const std::uint64_t start = base + symbol.offset;
    if (target.address < start) continue;
    const std::uint64_t distance = target.address - start;
    if (&symbol == target.symbol) {
      if (!target.element) {
        if (distance == 0) return joined(parent, symbol);
        continue;
      }
      const std::optional<std::uint64_t> number = element_of_index(symbol, target.index);
      if (!number || *number * symbol.element_size != distance) continue;
      return joined(parent, symbol) + path_index(target.index);
    }
    if (symbol.members.empty()) continue;
    const std::uint64_t number = symbol.element_size == 0 ? 0 : distance / symbol.element_size;
    if (number >= element_count(symbol)) continue;
    std::string path = joined(parent, symbol);
    if (!symbol.dimensions.empty()) path += path_index(index_of_element(symbol, number));
    auto found = search(symbol.members, start + number * symbol.element_size, path, target);
    if (found) return found;
  }
  return std::nullopt;
}

bool visit_symbol(const Symbol& symbol, std::uint64_t base, const std::string& parent,
                  const std::function<bool(const Leaf&)>& visit) {
  const std::uint64_t start = base + symbol.offset;
  const std::string path = joined(parent, symbol);
  if (symbol.type != DataType::Struct) return visit(Leaf{path, &symbol, start});
  if (symbol.members.empty()) return true;
  const std::uint64_t count = element_count(symbol);
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::string element =
        symbol.dimensions.empty() ? path : path + path_index(index_of_element(symbol, i));
    for (const Symbol& member : symbol.members) {
      if (!visit_symbol(member, start + i * symbol.element_size, element, visit)) return false;
    }
  }
  return true;
}

}  // namespace

std::string path_name(std::string_view name) {
  return is_plain_identifier(name) ? std::string(name) : fmt::format("\"{}\"", name);
}

std::string path_index(const std::vector<std::int32_t>& index) {
  return index.empty() ? std::string() : fmt::format("[{}]", fmt::join(index, ","));
}

std::optional<std::string> path_of(const std::vector<Symbol>& blocks, const Target& target) {
  return search(blocks, 0, {}, target);
}

bool for_each_leaf(const std::vector<Symbol>& blocks, const std::function<bool(const Leaf&)>& visit) {
  return for_each_variable(blocks, [&visit](const Leaf& leaf) {
    return !leaf.symbol->readable || leaf.symbol->type == DataType::Opaque || visit(leaf);
  });
}

bool for_each_variable(const std::vector<Symbol>& blocks, const std::function<bool(const Leaf&)>& visit) {
  return std::all_of(blocks.begin(), blocks.end(),
                     [&visit](const Symbol& block) { return visit_symbol(block, 0, {}, visit); });
}

std::vector<std::int32_t> index_of_element(const Symbol& symbol, std::uint64_t number) {
  std::vector<std::int32_t> index(symbol.dimensions.size());
  for (std::size_t i = index.size(); i-- > 0;) {
    const Dimension& dimension = symbol.dimensions[i];
    const auto extent = static_cast<std::uint64_t>(std::int64_t{dimension.upper} - dimension.lower + 1);
    index[i] = static_cast<std::int32_t>(dimension.lower + static_cast<std::int64_t>(number % extent));
    number /= extent;
  }
  return index;
}

std::optional<std::uint64_t> element_of_index(const Symbol& symbol, const std::vector<std::int32_t>& index) {
  if (index.size() != symbol.dimensions.size()) return std::nullopt;
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < index.size(); ++i) {
    const Dimension& dimension = symbol.dimensions[i];
    if (index[i] < dimension.lower || index[i] > dimension.upper) return std::nullopt;
    const auto extent = static_cast<std::uint64_t>(std::int64_t{dimension.upper} - dimension.lower + 1);
    number = number * extent + static_cast<std::uint64_t>(std::int64_t{index[i]} - dimension.lower);
  }
  return number;
}

}  // namespace ostravel::plc
