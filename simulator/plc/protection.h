// SPDX-License-Identifier: MIT
// Which parts of the memory a client may reach. A client asks by address, so the PLC looks up what lies
// there.
#pragma once

#include <cstdint>
#include <vector>

#include "simulator/program/program.h"

namespace ostravel::plc {

enum class Reach { Read, Write };

// True when the bytes lie within one variable (several elements of an array are within one variable) that may
// be read or written from outside, as all structures around it may. Where views overlap, one that permits it
// is enough.
bool permits(const std::vector<Symbol>& blocks, std::uint64_t address, std::uint64_t length, Reach reach);

}  // namespace ostravel::plc
