// SPDX-License-Identifier: MIT
// The PLC's types as the driver delivers their values: what kind of bytes, and how many of an element.
#pragma once

#include <cstdint>
#include <string>

#include "aglink/aglenums.h"

namespace ostravel::host::check {

enum class Shape : std::uint8_t {
  Bool,
  Unsigned,
  Signed,
  Real,
  Parts,     // a calendar record, taken apart into bytes
  Text,      // a byte a character
  WideText,  // UTF-16
  Zeros,     // the driver delivers zeros whatever the PLC holds
  Deadly,    // the driver ends its process
};

struct PlcShape {
  Shape shape = Shape::Deadly;
  int bytes = 0;  // of one element's value; of a text 1
};

// For a value whose form the library leaves to the PLC's type, that type decides.
PlcShape shape_of(ValueType_t::enum_t value, SystemType_t::enum_t system);

// "Int", "DTL", ...; "type 1234" for a number that has no name.
std::string name_of(SystemType_t::enum_t system);

}  // namespace ostravel::host::check
