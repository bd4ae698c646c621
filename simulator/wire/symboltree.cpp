// SPDX-License-Identifier: MIT
#include "simulator/wire/symboltree.h"

#include <algorithm>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/wire/unpack.h"

namespace ostravel::wire {
namespace {

using plc::DataType;
using plc::Symbol;

constexpr std::uint64_t kMaxMemory = std::uint64_t{64} << 20;
constexpr std::uint32_t kMaxString = 254;
constexpr std::uint32_t kMaxWideString = 16382;
constexpr std::size_t kMaxDimensions = 6;

// Bytes that one element needs at least.
std::uint64_t smallest_size(const Symbol& symbol) {
  if (symbol.type == DataType::String) return plc::string_header + std::uint64_t{symbol.string_length};
  if (symbol.type == DataType::WString) return plc::wstring_header + 2 * std::uint64_t{symbol.string_length};
  return plc::type_row(symbol.type).size;
}

// Bytes of all elements; nothing when the bounds are wrong or the memory could not hold them.
std::optional<std::uint64_t> extent(const Symbol& symbol) {
  if (symbol.dimensions.size() > kMaxDimensions) return std::nullopt;
  // An empty structure takes no bytes, so the count of them is bounded as well.
  std::uint64_t size = std::max<std::uint64_t>(symbol.element_size + plc::empty_structures(symbol), 1);
  if (size > kMaxMemory) return std::nullopt;
  std::uint64_t count = 1;
  for (const auto& dimension : symbol.dimensions) {
    if (dimension.lower > dimension.upper) return std::nullopt;
    const auto elements = static_cast<std::uint64_t>(std::int64_t{dimension.upper} - dimension.lower + 1);
    size *= elements;
    count *= elements;
    if (size > kMaxMemory) return std::nullopt;
  }
  return count * symbol.element_size;
}

bool is_sound(const std::vector<Symbol>& symbols, std::uint64_t room) {
  return std::all_of(symbols.begin(), symbols.end(), [room](const Symbol& symbol) {
    const auto size = extent(symbol);
    const bool long_text = (symbol.type == DataType::String && symbol.string_length > kMaxString) ||
                           (symbol.type == DataType::WString && symbol.string_length > kMaxWideString);
    return symbol.type <= DataType::Opaque && size && !long_text &&
           symbol.element_size >= smallest_size(symbol) && symbol.offset + *size <= room &&
           is_sound(symbol.members, symbol.element_size);
  });
}

}  // namespace

Bytes encode_tree(const std::vector<Symbol>& blocks) {
  msgpack::sbuffer out;
  msgpack::pack(out, blocks);
  return {out.data(), out.data() + out.size()};
}

std::optional<std::vector<Symbol>> decode_tree(std::span<const std::uint8_t> bytes) {
  if (!is_one_object(bytes)) return std::nullopt;
  try {
    const auto object = msgpack::unpack(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    auto blocks = object->as<std::vector<Symbol>>();
    if (is_sound(blocks)) return blocks;
  } catch (const msgpack::type_error&) {
  } catch (const msgpack::unpack_error&) {
  }
  return std::nullopt;
}

bool is_sound(const std::vector<Symbol>& blocks) {
  return is_sound(blocks, kMaxMemory);
}

}  // namespace ostravel::wire
