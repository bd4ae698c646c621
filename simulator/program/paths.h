// SPDX-License-Identifier: MIT
// The way back from symbols to paths: how a name is written in a path, and every variable of a program with
// its path. resolve() of program.h reads what is written here.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/program.h"

namespace ostravel::plc {

// A name as it stands in a path: in quotes unless it is a plain identifier (letters, digits and underscores,
// no digit in front; letters beyond ASCII count as letters).
std::string path_name(std::string_view name);

// An index as it stands in a path: "[1,2]"; empty when there is none.
std::string path_index(const std::vector<std::int32_t>& index);

// The path of what a target of these blocks leads to, with quotes only where needed. Nothing when the
// target's symbol does not lie at its address in these blocks.
std::optional<std::string> path_of(const std::vector<Symbol>& blocks, const Target& target);

// One variable: a symbol that is no structure, scalar or whole array, inside one element of each of its
// parents.
struct Leaf {
  std::string path;
  const Symbol* symbol = nullptr;
  std::uint64_t address = 0;  // in the program's memory, of the first element
};

// Visits every readable variable in the order of declaration: an array of elementary values once, as a whole;
// an array of structures element by element, row-major. A DTL is one variable; its parts are not visited.
// Stops when visit returns false, and returns false then.
bool for_each_leaf(const std::vector<Symbol>& blocks, const std::function<bool(const Leaf&)>& visit);

// Visits every variable in that way, also what cannot be read and what has no layout.
bool for_each_variable(const std::vector<Symbol>& blocks, const std::function<bool(const Leaf&)>& visit);

// The index list of the element with this row-major number, 0 for the first.
std::vector<std::int32_t> index_of_element(const Symbol& symbol, std::uint64_t number);

// The opposite; nothing when the list does not fit the symbol's dimensions.
std::optional<std::uint64_t> element_of_index(const Symbol& symbol, const std::vector<std::int32_t>& index);

}  // namespace ostravel::plc
