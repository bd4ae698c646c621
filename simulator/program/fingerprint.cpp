// SPDX-License-Identifier: MIT
#include "simulator/program/fingerprint.h"

#include <string_view>

namespace ostravel::plc {
namespace {

// FNV-1a over 64 bits. Numbers go in as eight bytes, least significant first, texts with their length in
// front, so that no two trees give the same row of bytes.
class Hash {
 public:
  void add(std::uint64_t number) {
    for (unsigned i = 0; i < 8; ++i) byte(static_cast<std::uint8_t>(number >> 8U * i));
  }

  void add(std::string_view text) {
    add(text.size());
    for (const char c : text) byte(static_cast<std::uint8_t>(c));
  }

  std::uint64_t value() const { return value_; }

 private:
  void byte(std::uint8_t value) { value_ = (value_ ^ value) * 0x100000001B3U; }

  std::uint64_t value_ = 0xCBF29CE484222325U;
};

void add_symbols(Hash& hash, const std::vector<Symbol>& symbols) {
  hash.add(symbols.size());
  for (const Symbol& symbol : symbols) {
    hash.add(symbol.name);
    hash.add(static_cast<std::uint64_t>(symbol.type));
    hash.add(symbol.type_name);
    hash.add(symbol.string_length);
    hash.add(symbol.dimensions.size());
    for (const Dimension& dimension : symbol.dimensions) {
      hash.add(static_cast<std::uint64_t>(dimension.lower));
      hash.add(static_cast<std::uint64_t>(dimension.upper));
    }
    hash.add(symbol.offset);
    hash.add(symbol.element_size);
    hash.add((symbol.readable ? 1U : 0U) | (symbol.writable ? 2U : 0U));
    add_symbols(hash, symbol.members);
  }
}

}  // namespace

std::uint64_t fingerprint(const std::vector<Symbol>& blocks) {
  Hash hash;
  add_symbols(hash, blocks);
  return hash.value();
}

}  // namespace ostravel::plc
