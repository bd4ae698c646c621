// SPDX-License-Identifier: MIT
// Values as people write them on a command line and PLC programs have them:
//
//   true  FALSE  1  -5  1_000  16#FF  2#1010  8#17  0xFF  INT#5  3.25  1e3  inf  'it$'s'  "a\"b"  plain text
//   T#1h_2m and the other times and dates of literaltime.h      [1, 2, 3]
//
// A number written as bits (16#, 2#, 8#) may fill a signed type up to its sign: 16#FFFF is -1 in an INT.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "host/access.h"

namespace ostravel::host {

// The value as write_accesses takes it, which also checks its range. Throws UserError for what cannot be
// meant; what is no value of the type stays text and is refused by write_accesses.
nlohmann::json parse_value(const Selection& selection, std::string_view text);

}  // namespace ostravel::host
