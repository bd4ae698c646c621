// SPDX-License-Identifier: MIT
// MessagePack bytes from outside are walked once, without allocating, before they are unpacked: the unpacker
// would reserve room for whatever count an array's header claims.
#pragma once

#include <cstddef>
#include <cstdint>
#include <msgpack.hpp>
#include <span>

namespace ostravel::wire {

// A symbol takes two levels (itself and the list of its members); this leaves room for 64 symbols in a chain.
inline constexpr std::size_t kMaxNesting = 144;

// True when the bytes are exactly one complete object, nested at most kMaxNesting deep.
inline bool is_one_object(std::span<const std::uint8_t> bytes) {
  struct Walker : msgpack::null_visitor {
    std::size_t depth = 0;
    bool start_array(std::uint32_t) { return ++depth <= kMaxNesting; }
    bool end_array() { return --depth, true; }
    bool start_map(std::uint32_t) { return false; }
  };
  Walker walker;
  std::size_t offset = 0;
  const auto* data = reinterpret_cast<const char*>(bytes.data());
  return msgpack::parse(data, bytes.size(), offset, walker) && offset == bytes.size();
}

}  // namespace ostravel::wire
