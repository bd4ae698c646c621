// SPDX-License-Identifier: MIT
// What the plant's program puts into its variables: values that tell the variable and the moment. Each is
// made of a number that mixes the variable's path, the element and the moment; a narrow type shows as much of
// it as it has bits, so that two variables of one bit differ in the course of time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/encoding.h"
#include "simulator/program/program.h"

namespace ostravel::plant {

// Fills one element with the value of the moment. Structures and types without a layout stay as they are.
void put_value(const plc::Symbol& symbol, std::string_view path, std::uint64_t element, std::uint64_t moment,
               plc::MutableBytes memory);

// All variables of a program but those of the simulation's own block, prepared for many moments.
class Values {
 public:
  // The program must outlive this object and stay where it is.
  explicit Values(const plc::Program& program);

  void put(std::uint64_t moment, plc::MutableBytes memory) const;

 private:
  struct Variable {
    std::string path;
    const plc::Symbol* symbol;
    std::uint64_t address;
    std::uint64_t elements;
  };
  std::vector<Variable> variables_;
};

}  // namespace ostravel::plant
