// SPDX-License-Identifier: MIT
// The form in which the driver delivers what the PLC holds.
//
//   DATE, TIME_OF_DAY, LTIME_OF_DAY, LDT   the number in the PLC's memory
//   CHAR                                   the number of the character in the PLC's code page
//   DTL                                    12 bytes: year (low byte first), month, day, weekday, hour,
//   minute,
//                                          second, nanoseconds (4, low byte first)
//   DATE_AND_TIME                          10 bytes: the same with milliseconds (2)
//   everything else                        as the PLC shows it
#pragma once

#include <nlohmann/json.hpp>

#include "simulator/program/program.h"

namespace ostravel::trial {

// One element, from what the PLC's console shows of it.
nlohmann::json delivered_form(const plc::Symbol& symbol, const nlohmann::json& shown);

// A value for one element that differs from those for other seeds, in the form in which the console takes it.
nlohmann::json distinct_value(const plc::Symbol& symbol, std::uint64_t seed);

}  // namespace ostravel::trial
