// SPDX-License-Identifier: MIT
// Literals of the PLC's languages taken apart, before a type decides what they may mean.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/program/encoding.h"

namespace ostravel::plc {

struct IntegerLiteral {
  std::uint64_t magnitude = 0;
  bool negative = false;
  bool coded = false;  // written as bits (2#, 8#, 16#, B#(...)): may fill a signed type up to its sign bit
};

// 12_345, -7, - 7, 16#FF, INT#5, W#16#FF, B#(1, 2).
std::optional<IntegerLiteral> parse_integer(std::string_view literal);
// The same, when 64 bits with a sign can hold it.
std::optional<std::int64_t> integer_from_literal(std::string_view literal);

// 1.5, - 3.4E+38, REAL#2, also whole numbers. Infinite when too large for 64 bits.
std::optional<double> parse_real(std::string_view literal);

// 'it$'s', WSTRING#'x', CHAR#'c' as UTF-8. wide tells how $-codes are to be read: $XX of the code page or
// $XXXX of UTF-16.
std::optional<std::string> parse_text(std::string_view literal, bool wide);

// What stands behind one of these prefixes; nothing when the literal has none of them. Any letter case.
std::optional<std::string_view> after_prefix(std::string_view literal,
                                             std::initializer_list<std::string_view> prefixes);

// 1d_2h_3m_4s_5ms_6us_7ns with any sign and parts left out, the last with a fraction perhaps; in nanoseconds.
std::optional<std::int64_t> parse_duration(std::string_view text);
// 2024-2-9; days since 1970-01-01 in the calendar, nothing for a date that does not exist.
std::optional<DateTime> parse_date(std::string_view text);
// 1:2:3.4; nanoseconds since midnight.
std::optional<std::uint64_t> parse_time_of_day(std::string_view text);
// 2024-02-09-01:02:03.5, weekday filled in.
std::optional<DateTime> parse_date_and_time(std::string_view text);

// Writes a literal of one of the types Time, LTime, S5Time, Date to Dtl, Counter, Timer; the same contract
// as element_from_literal.
std::optional<std::string> time_from_literal(DataType type, std::string_view literal, MutableBytes element);

// Stores a whole number into an element of a type that holds one, in its plain form: false when it is out of
// range.
bool store_integer(const IntegerLiteral& number, bool is_signed, MutableBytes element);

// Days since 1970-01-01 of a date that exists, and back.
std::int64_t days_of(const DateTime& date);
DateTime date_of(std::int64_t days);
// Nanoseconds since 1970-01-01 split into a date and time, and back (modulo 2^64).
DateTime date_time_of(std::uint64_t nanoseconds);
std::uint64_t nanoseconds_of(const DateTime& time);

}  // namespace ostravel::plc
