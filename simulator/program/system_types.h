// SPDX-License-Identifier: MIT
// Types that every PLC knows without a source. Those with members are declared in the sources' own language.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "simulator/program/program.h"
#include "simulator/program/syntax.h"

namespace ostravel::plc {

// Declaration of a system type with members, any letter case; lives as long as the program. Null when there
// is none of this name.
const Declaration* system_type(std::string_view name);

// The elementary type that a system type such as HW_IO is another name of.
std::optional<DataType> system_type_alias(std::string_view name);

// Types of parameters, such as Any or Variant: nothing lies in memory that could be read.
bool is_known_opaque_type(std::string_view name);

// The parts of a DTL with their places.
std::vector<Symbol> dtl_members();

}  // namespace ostravel::plc
