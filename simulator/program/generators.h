// SPDX-License-Identifier: MIT
// What the cyclic program does to its variables. A value depends on nothing but the number of the cycle, so
// that whoever knows the number can compute the value again.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/program.h"

namespace ostravel::plc {

enum class GeneratorKind : std::uint8_t {
  Ramp,     // from low up to high in one period, then from low again
  Sine,     // between low and high, one swing a period
  Counter,  // one more each cycle, from low; wraps where high or else the type ends
  Toggle,   // changes between low and high (a Bool: false and true) every period
  Text,     // "cycle 123", a character type the letters A to Z
};

struct GeneratorShape {
  GeneratorKind kind = GeneratorKind::Counter;
  double low = 0;
  double high = 0;           // of a counter: 0 means as far as the type goes
  std::uint32_t period = 1;  // in cycles, at least 1
  bool operator==(const GeneratorShape&) const = default;
};

struct GeneratorError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Generators {
 public:
  // Attaches a generator to what a rule names: PATH=KIND or PATH=KIND(low,high) or
  // PATH=KIND(low,high,period), e.g. Plant.Tank[1].Level=sine(0,100,60). KIND is ramp, sine, counter, toggle
  // or text; PATH=none takes a generator away. An array gets one in each element, each one cycle ahead of the
  // one before. A later rule for the same variable replaces an earlier one. The blocks must outlive this
  // object and stay where they are. Throws GeneratorError with one line that says what is wrong.
  void attach(const std::vector<Symbol>& blocks, std::string_view rule);

  // Attaches to every variable of elementary type inside a block, structure or array of structures whose name
  // is Live (any case) the kind that fits its type: Bool toggle, reals sine 0..100 in 60 cycles, signed
  // integers and times ramp 0..100 in 100 cycles, unsigned integers, bit strings, dates counter, texts text.
  // Rules win over this. At
  // most limit variables; returns how many were left out.
  std::uint64_t attach_live(const std::vector<Symbol>& blocks, std::uint64_t limit = 100'000);

  // Computes the cycle's values of all variables that have a generator.
  void step(std::span<std::uint8_t> memory, std::uint64_t cycle) const;

  std::size_t size() const { return attached_.size(); }

 private:
  struct Attached {
    const Symbol* symbol;
    std::uint64_t address;
    std::uint64_t elements;
    GeneratorShape shape;
  };
  void put(const Attached& attached);

  std::vector<Attached> attached_;
};

// The shape that attach_live gives to a variable of this type.
GeneratorShape natural_shape(DataType type);

// Whether a generator of this kind can drive a variable of this type.
bool can_drive(GeneratorKind kind, DataType type);

// Writes the value at this cycle into one element.
void generate(const Symbol& symbol, const GeneratorShape& shape, std::uint64_t cycle,
              std::span<std::uint8_t> element);

}  // namespace ostravel::plc
