// SPDX-License-Identifier: MIT
// The plant's program as text, and the programs that are downloaded in its place.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ostravel::plant {

inline constexpr std::size_t kTags = 500;

// Variant 0 is the program that the runtime's project was made for. The others, each the same at every call,
// have their blocks and variables in another order with others in between, so that all of them have moved;
// some variables have other names, some another type, some arrays more elements, and some are gone.
std::string program_text(unsigned variant);

// What the runtime asks for, as host::select takes it: bits and elements of the variables of variant 0,
// beside the variables themselves.
std::vector<std::string> picked_parts();

}  // namespace ostravel::plant
