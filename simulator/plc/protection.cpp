// SPDX-License-Identifier: MIT
#include "simulator/plc/protection.h"

#include <algorithm>

namespace ostravel::plc {
namespace {

bool permits(const Symbol& symbol, std::uint64_t address, std::uint64_t length, Reach reach) {
  const std::uint64_t size = element_count(symbol) * symbol.element_size;
  if (address < symbol.offset || length > size || address - symbol.offset > size - length) return false;
  if (!(reach == Reach::Read ? symbol.readable : symbol.readable && symbol.writable)) return false;
  if (symbol.type == DataType::Opaque) return false;
  if (symbol.type != DataType::Struct) return true;
  if (symbol.element_size == 0) return false;
  const std::uint64_t inside = (address - symbol.offset) % symbol.element_size;
  return permits(symbol.members, inside, length, reach);
}

}  // namespace

bool permits(const std::vector<Symbol>& blocks, std::uint64_t address, std::uint64_t length, Reach reach) {
  return std::any_of(blocks.begin(), blocks.end(),
                     [&](const Symbol& symbol) { return permits(symbol, address, length, reach); });
}

}  // namespace ostravel::plc
