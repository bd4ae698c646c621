// SPDX-License-Identifier: MIT
// The memory of a program at start: the types' own initial values, then those of the declarations from the
// inside out, then the assignments of the blocks.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "simulator/program/catalogue.h"
#include "simulator/program/program.h"
#include "simulator/program/syntax.h"

namespace ostravel::plc {

// Fills the bytes with copies of their first pattern bytes; the last copy may be cut off.
void repeat_pattern(std::span<std::uint8_t> bytes, std::size_t pattern);

class Image {
 public:
  // The catalogue must outlive this object. Warnings are appended to *warnings unless it is null.
  Image(const Catalogue& catalogue, std::vector<std::string>* warnings)
      : catalogue_(catalogue), warnings_(warnings) {}

  // Fills the memory of one block, whose symbol is blocks[number], without its assignments.
  void fill_block(const Declaration& block, const Symbol& symbol, std::span<std::uint8_t> memory);

  // Carries out the block's assignments in their order. Throws SourceError for a path or a value that does
  // not fit.
  void assign(const Declaration& block, const std::vector<Symbol>& blocks, std::span<std::uint8_t> memory);

 private:
  using Memory = std::span<std::uint8_t>;

  // image.cpp
  void fill(const Symbol& symbol, const TypeUse& use, const Declaration* scope, Memory whole);
  void fill_element(const Symbol& symbol, const TypeUse& use, const Declaration* scope, Memory element);
  std::string path_text(const Declaration& block, const Assignment& assignment) const;

  // initial_value.cpp
  void apply(const Symbol& symbol, const Value& value, const Declaration* scope, Memory whole);
  void apply_element(const Symbol& symbol, const Value& value, const Declaration* scope, Memory element);
  void apply_members(const Symbol& symbol, const Value& value, const Declaration* scope, Memory element);
  void apply_single(const Symbol& symbol, const Value& value, const Declaration* scope, Memory element);
  std::uint64_t apply_items(const Symbol& symbol, std::span<const Value> items, const Declaration* scope,
                            Memory whole, std::uint64_t from);
  std::uint64_t apply_repeat(const Symbol& symbol, const Value& repeat, const Declaration* scope,
                             Memory whole, std::uint64_t from);

  const Catalogue& catalogue_;
  std::vector<std::string>* warnings_;
};

}  // namespace ostravel::plc
