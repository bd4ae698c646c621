// SPDX-License-Identifier: MIT
// A symbol tree as bytes, the same way in an upload from the PLC and in a symbol file.
//   tree    [symbol, ...]
//   symbol  [name, type, type name, string length, [lower, upper, ...], offset, element size, readable,
//   writable, tree]
#pragma once

#include <cstdint>
#include <msgpack.hpp>
#include <optional>
#include <span>
#include <vector>

#include "simulator/program/program.h"
#include "simulator/wire/frames.h"

namespace ostravel::wire {

Bytes encode_tree(const std::vector<plc::Symbol>& blocks);

// Nothing when the bytes are no tree or the tree is not sound.
std::optional<std::vector<plc::Symbol>> decode_tree(std::span<const std::uint8_t> bytes);

// True when every symbol's bounds, sizes and offsets fit each other and its parent, so that code which trusts
// them stays inside the memory (at most 64 MiB). A tree from outside is used only if it is sound.
bool is_sound(const std::vector<plc::Symbol>& blocks);

}  // namespace ostravel::wire

MSGPACK_ADD_ENUM(ostravel::plc::DataType)

namespace msgpack {
MSGPACK_API_VERSION_NAMESPACE(MSGPACK_DEFAULT_API_NS) {
  namespace adaptor {

  template <>
  struct pack<ostravel::plc::Symbol> {
    template <typename Stream>
    packer<Stream>& operator()(packer<Stream>& out, const ostravel::plc::Symbol& symbol) const {
      std::vector<std::int32_t> bounds;
      for (const auto& dimension : symbol.dimensions) {
        bounds.push_back(dimension.lower);
        bounds.push_back(dimension.upper);
      }
      out.pack_array(10);
      out.pack(symbol.name).pack(symbol.type).pack(symbol.type_name).pack(symbol.string_length).pack(bounds);
      out.pack(symbol.offset).pack(symbol.element_size).pack(symbol.readable).pack(symbol.writable);
      return out.pack(symbol.members);
    }
  };

  template <>
  struct convert<ostravel::plc::Symbol> {
    const msgpack::object& operator()(const msgpack::object& from, ostravel::plc::Symbol& symbol) const {
      if (from.type != type::ARRAY || from.via.array.size != 10) throw type_error();
      const msgpack::object* field = from.via.array.ptr;
      std::vector<std::int32_t> bounds;
      field[0].convert(symbol.name);
      field[1].convert(symbol.type);
      field[2].convert(symbol.type_name);
      field[3].convert(symbol.string_length);
      field[4].convert(bounds);
      field[5].convert(symbol.offset);
      field[6].convert(symbol.element_size);
      field[7].convert(symbol.readable);
      field[8].convert(symbol.writable);
      field[9].convert(symbol.members);
      if (bounds.size() % 2 != 0) throw type_error();
      for (std::size_t i = 0; i < bounds.size(); i += 2)
        symbol.dimensions.push_back({bounds[i], bounds[i + 1]});
      return from;
    }
  };

  }  // namespace adaptor
}
}  // namespace msgpack
