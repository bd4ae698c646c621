// SPDX-License-Identifier: MIT
// How the library names the PLC's types.
#pragma once

#include "simulator/program/program.h"
#include "simulator/standin/agltypes.h"

namespace ostravel::standin {

struct ElementType {
  ValueType_t::enum_t value = ValueType_t::vt_UNDEFINED;
  SystemType_t::enum_t system = SystemType_t::st_UNDEFINED;
};

// Undefined types for a structure and for what has no known layout.
ElementType element_type(plc::DataType type);

}  // namespace ostravel::standin
