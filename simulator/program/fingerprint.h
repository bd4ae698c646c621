// SPDX-License-Identifier: MIT
// Tells programs apart whose symbols lie or are typed differently.
#pragma once

#include <cstdint>
#include <vector>

#include "simulator/program/program.h"

namespace ostravel::plc {

// 64 bits over names, types, bounds, places and access rights of the whole tree; initial values do not count.
// The same tree gives the same number on every machine and in every version.
std::uint64_t fingerprint(const std::vector<Symbol>& blocks);

}  // namespace ostravel::plc
