// SPDX-License-Identifier: MIT
// The one place for the PLC's encodings: every elementary type to and from its big-endian bytes, and values
// as JSON and as literals of the PLC's languages. Functions that take bytes check their length and never go
// beyond it.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/program/program.h"

namespace ostravel::plc {

using Bytes = std::span<const std::uint8_t>;
using MutableBytes = std::span<std::uint8_t>;

// --- Numbers ---

// An unsigned number from all the given bytes, most significant first; at most 8 bytes are taken.
std::uint64_t load_number(Bytes bytes);
// Fills all the given bytes; bits that do not fit are lost. At most the last 8 bytes can hold something.
void store_number(MutableBytes bytes, std::uint64_t number);
float load_real(Bytes bytes);    // of 4 bytes
double load_lreal(Bytes bytes);  // of 8 bytes
void store_real(MutableBytes bytes, float value);
void store_lreal(MutableBytes bytes, double value);

// --- BCD ---

// S5TIME: two bits of time base (10 ms, 100 ms, 1 s, 10 s) above three BCD digits.
constexpr std::uint32_t s5time_limit_ms = 9'990'000;
// The finest time base that can hold the time; what that cannot express is rounded (half up) or cut off.
// Nothing above s5time_limit_ms.
std::optional<std::uint16_t> s5time_from_ms(std::uint32_t ms, bool round);
std::uint32_t ms_from_s5time(std::uint16_t coded);
// Three BCD digits; nothing above 999.
std::optional<std::uint16_t> counter_from_number(std::uint32_t number);
std::uint32_t number_from_counter(std::uint16_t coded);

// --- Date and time ---

struct DateTime {
  std::uint16_t year = 1970;
  std::uint8_t month = 1;
  std::uint8_t day = 1;
  std::uint8_t weekday = 5;  // 1 is Sunday, 7 is Saturday
  std::uint8_t hour = 0;
  std::uint8_t minute = 0;
  std::uint8_t second = 0;
  std::uint32_t nanosecond = 0;
  bool operator==(const DateTime&) const = default;
};

// Weekday of a date, 1 for Sunday; 0 when there is no such date.
std::uint8_t weekday_of(std::uint16_t year, std::uint8_t month, std::uint8_t day);
// A date and time that exists, apart from the weekday, which is not looked at.
bool is_valid(const DateTime& time);

// DTL, 12 bytes: year (2), month, day, weekday, hour, minute, second (1 each), nanosecond (4).
// Stored as given, whatever the parts hold, as a PLC does.
constexpr std::size_t dtl_size = 12;
DateTime load_dtl(Bytes bytes);
void store_dtl(MutableBytes bytes, const DateTime& time);

// DATE_AND_TIME, 8 bytes BCD: year (90 to 99 mean 19xx), month, day, hour, minute, second, two digits of the
// milliseconds, their last digit and the weekday. False and no change outside 1990 to 2089 or for an
// impossible time.
constexpr std::size_t date_and_time_size = 8;
DateTime load_date_and_time(Bytes bytes);
bool store_date_and_time(MutableBytes bytes, const DateTime& time);

// --- Text ---

// STRING: a byte with the maximum, a byte with the current length, then the characters in code page 1252; the
// five codes that the page leaves free stand for the control characters of the same number, so that every
// byte has a character. WSTRING: the same with two 16-bit numbers and UTF-16. Text on this side is UTF-8.
constexpr std::size_t string_header = 2;
constexpr std::size_t wstring_header = 4;
std::string load_string(Bytes bytes);
std::string load_wstring(Bytes bytes);
// False and no change when the text is longer than the bytes have room for or (STRING) holds characters
// beyond the code page, or is not valid UTF-8. The header's maximum is written from the room there is.
bool store_string(MutableBytes bytes, std::string_view text);
bool store_wstring(MutableBytes bytes, std::string_view text);

// --- Values ---

// Bytes that a symbol takes as a whole, that is all elements.
std::uint64_t byte_count(const Symbol& symbol);
// Bytes of what the target leads to: one element or the whole symbol.
std::uint64_t byte_count(const Target& target);
// The part of memory a target leads to; empty when it lies outside.
Bytes bytes_of(const Target& target, Bytes memory);
MutableBytes bytes_of(const Target& target, MutableBytes memory);

// One element as JSON: Bool as true/false; integers, bit strings, Time (ms), LTime (ns), S5Time and Timer
// (ms) and Counter as numbers; reals as numbers, but "inf", "-inf" and "nan" as text; characters and strings
// as text; Date, TimeOfDay, LTimeOfDay, DateAndTime, LDateTime, Dtl as literals such as
// "DTL#2024-03-05-13:14:15.123456789"; a structure as an object; Opaque and whatever the bytes are too short
// for as null.
nlohmann::json element_to_json(const Symbol& symbol, Bytes element);
// The symbol as a whole: an array becomes one JSON array, row-major, whatever its number of dimensions.
nlohmann::json to_json(const Symbol& symbol, Bytes bytes);
nlohmann::json to_json(const Target& target, Bytes memory);

// Writes what element_to_json gives, and for types other than text also a literal as text ("T#5s", "16#FF").
// A structure takes an object that may leave out members; an array takes as many values as it has elements.
// Returns nothing on success, else one line about what does not fit; then the bytes are unchanged.
std::optional<std::string> element_from_json(const Symbol& symbol, const nlohmann::json& value,
                                             MutableBytes element);
std::optional<std::string> from_json(const Symbol& symbol, const nlohmann::json& value, MutableBytes bytes);
std::optional<std::string> from_json(const Target& target, const nlohmann::json& value, MutableBytes memory);

// Writes one element from a literal of the PLC's languages: 16#FF, INT#5, -3.4E+38, T#1d_2h, 'it$'s',
// DT#2024-2-9-1:2:3. Returns nothing on success, else one line about what does not fit; then the bytes are
// unchanged.
std::optional<std::string> element_from_literal(const Symbol& symbol, std::string_view literal,
                                                MutableBytes element);

}  // namespace ostravel::plc
