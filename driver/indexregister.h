// SPDX-License-Identifier: MIT
// Tag names whose array index the runtime supplies: Motor[INDEX].Speed.
#pragma once

#include <string>
#include <string_view>

#include "driver/hostrecords.h"

// Whether the runtime's index has to be put into the name.
bool has_index_placeholder(std::string_view name);

// Writes name with its placeholder replaced by "[" array_index "]" into result, which must not be what name
// looks at. The placeholder is the first "INDEX]" and what stands before it from the nearest "[" on. False,
// and result untouched, when name has none; std::out_of_range when no "[" stands before it.
bool substitute_index(std::string_view name, WORD array_index, std::string& result);
