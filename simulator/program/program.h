// SPDX-License-Identifier: MIT
// The program that a simulated PLC runs: its symbol tree and the layout of its memory. The PLC process
// builds it from text sources; the stand-in library gets the same tree by uploading it from the PLC.
// Memory is big-endian, as in an S7-1500. A Bool takes one byte (0 or 1).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::plc {

enum class DataType : std::uint8_t {
  Bool,
  Byte,
  Word,
  DWord,
  LWord,
  SInt,
  Int,
  DInt,
  LInt,
  USInt,
  UInt,
  UDInt,
  ULInt,
  Real,
  LReal,
  Char,
  WChar,
  String,
  WString,
  Time,
  LTime,
  S5Time,
  Date,
  TimeOfDay,
  LTimeOfDay,
  DateAndTime,
  LDateTime,
  Dtl,
  Counter,
  Timer,
  Struct,  // has members
  Opaque,  // a system type without a known layout: has a name in the tree, cannot be read or written
};

// Bounds of one array dimension, both included.
struct Dimension {
  std::int32_t lower = 0;
  std::int32_t upper = 0;
  bool operator==(const Dimension&) const = default;
};

struct Symbol {
  std::string name;                   // as declared, without quotes
  DataType type = DataType::Struct;   // of one element
  std::string type_name;              // name of the UDT, FB or system type, empty for an elementary type
  std::uint32_t string_length = 0;    // String and WString: the declared length in characters
  std::vector<Dimension> dimensions;  // empty: no array; at most six
  std::uint32_t offset = 0;           // of the first element, from the start of the parent's element;
                                      // of a block, from the start of the program's memory
  std::uint32_t element_size = 0;     // bytes from one element to the next
  bool readable = true;
  bool writable = true;
  std::vector<Symbol> members;  // of a Struct, and the parts of a Dtl
  bool operator==(const Symbol&) const = default;
};

// Number of elements of a symbol: 1 when it is no array.
std::uint64_t element_count(const Symbol& symbol);

// Empty structures, and variables of types without a known layout, inside one element of a symbol, itself
// included. They take no memory, so sizes do not bound their number, and yet whoever goes through all
// elements meets each of them.
std::uint64_t empty_structures(const Symbol& symbol);

struct Program {
  std::vector<Symbol> blocks;         // one per data block, in source order
  std::vector<std::uint8_t> initial;  // the memory at start, with all initial values in place
  // Tells two programs apart whose symbols lie or are typed differently; 64 bits over the whole tree.
  std::uint64_t fingerprint = 0;
};

// What a path leads to: a whole symbol, or one element of an array.
struct Target {
  const Symbol* symbol = nullptr;
  std::uint64_t address = 0;        // in the program's memory, of the (first) element
  bool element = false;             // true: one element of an array; false: the symbol as a whole
  std::vector<std::int32_t> index;  // the index as written, when element is true
};

// Resolves a path such as Plant.Tank[1,2].Level or "Plant"."Tank.1".Level. Names compare without case, quotes
// are optional where the name is a plain identifier. On failure returns nothing and sets *error_position,
// when given, to the offset in path at which it stops to fit.
std::optional<Target> resolve(const std::vector<Symbol>& blocks, std::string_view path,
                              std::size_t* error_position = nullptr);

}  // namespace ostravel::plc
