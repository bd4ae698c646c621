// SPDX-License-Identifier: MIT
// Times and dates as PLC programs write them, and the numbers or bytes in which they stand in a tag.
//
//   T#1h_2m  TIME#     32 bits: milliseconds; 64 bits: nanoseconds      LT#  LTIME#   64 bits: nanoseconds
//   S5T#80s  S5TIME#   32 bits: milliseconds up to 9990 s; the driver makes a BCD time of them
//   TOD#13:14:15.5     32 bits: milliseconds since midnight; 64 bits: nanoseconds     LTOD#  64 bits
//   D#2024-03-05       16 bits: days since 1990-01-01
//   LDT#2024-03-05-13:14:15.5   64 bits: nanoseconds since 1970-01-01
//   DT#                10 bytes: u16 year, u8 month, day, weekday, hour, minute, second, u16 milliseconds
//   DTL#               12 bytes: the same up to the second, u32 nanoseconds        (weekday 1 is Sunday)
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "host/project.h"

namespace ostravel::host {

// A whole number, or binary JSON for DT and DTL; nothing when the text does not begin like one of these.
// Throws UserError with one line when it does and is wrong, or does not fit the tag. An element of an array
// is looked at by the tag's type alone and cannot be DT or DTL.
std::optional<nlohmann::json> time_value(const Tag& tag, std::string_view text, bool element);

// What stands behind the prefix; nothing when the text does not begin with it. Any letter case.
std::optional<std::string_view> after_prefix(std::string_view text, std::string_view prefix);

}  // namespace ostravel::host
