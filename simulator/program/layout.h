// SPDX-License-Identifier: MIT
// Turns declarations into symbols: where everything lies and how large it is. Members follow each other
// without gaps; a Bool takes a byte, a String its length and two, a WString twice its length and four.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/catalogue.h"
#include "simulator/program/program.h"
#include "simulator/program/syntax.h"

namespace ostravel::plc {

class Layout {
 public:
  // All arguments must outlive the layout. Warnings are appended to *warnings unless it is null.
  Layout(const Catalogue& catalogue, std::uint64_t memory_limit, std::vector<std::string>* warnings);

  // Symbol of a data block, placed behind the blocks before. Throws SourceError.
  Symbol place(const Declaration& block);

  // Bytes of all blocks so far.
  std::uint64_t size() const { return size_; }

 private:
  struct Structure {
    std::vector<Symbol> members;
    std::uint64_t size = 0;
    std::uint64_t symbols = 0;
  };

  // scope is the declaration whose constants the use may name.
  Symbol describe(const TypeUse& use, const Declaration* scope);
  void describe_element(Symbol& symbol, const TypeUse& use, const Declaration* scope);
  void describe_text(Symbol& symbol, const TypeUse& use, const Declaration* scope);
  void take_structure(Symbol& symbol, const Structure& structure, const Position& position);
  void read_bounds(Symbol& symbol, const TypeUse& use, const Declaration* scope);
  const Structure& declared(const Declaration& declaration, const Position& use);
  Structure structure_of(const std::vector<Member>& members, const Declaration* scope);
  void lay_over(Symbol& view, const Member& member, const Structure& structure);
  void count_symbols(std::uint64_t count, const Position& position);
  void check_size(std::uint64_t size, const Position& position) const;
  void warn(const Position& position, std::string_view message);

  const Catalogue& catalogue_;
  std::uint64_t memory_limit_;
  std::vector<std::string>* warnings_;
  std::uint64_t size_ = 0;
  std::uint64_t symbols_ = 0;
  unsigned depth_ = 0;  // of structures being worked on, declared in place or as types
  std::map<const Declaration*, Structure> structures_;
  std::vector<const Declaration*> open_;  // declarations being worked on, the outermost first
};

}  // namespace ostravel::plc
