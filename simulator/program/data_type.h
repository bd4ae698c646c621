// SPDX-License-Identifier: MIT
// The elementary types of a PLC program: one row a type, everything else is looked up here.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "simulator/program/program.h"

namespace ostravel::plc {

// How a value of a type is to be understood, for all that treats types alike.
enum class TypeFamily : std::uint8_t {
  Bool,
  BitString,
  Signed,
  Unsigned,
  Real,
  Text,
  Time,
  Date,
  Bcd,
  Other
};

struct TypeRow {
  DataType type;
  std::string_view name;  // as the PLC's languages write it
  TypeFamily family;
  std::uint8_t size;          // bytes of one element; 0: the declaration decides
  std::string_view tag_type;  // the driver's name of the type; empty: cannot be addressed
  std::uint8_t tag_count =
      1;  // driver's elements to one of the PLC's; more than 1: always addressed as an array
};

const TypeRow& type_row(DataType type);

// The elementary type that a name in a declaration means, aliases such as DT or TOD included, any letter
// case.
std::optional<DataType> elementary_type(std::string_view name);

}  // namespace ostravel::plc
