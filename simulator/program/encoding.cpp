// SPDX-License-Identifier: MIT
#include "simulator/program/encoding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <limits>

#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

std::uint8_t bcd(unsigned value) {
  return static_cast<std::uint8_t>((value / 10 % 10) << 4U | value % 10);
}
// A nibble above 9 is no digit, but a PLC may hold anything: it counts for its value.
unsigned from_bcd(std::uint8_t coded) {
  return (coded >> 4U) * 10U + (coded & 0x0FU);
}

constexpr std::array<std::uint32_t, 4> s5time_bases_ms{10, 100, 1000, 10'000};

std::uint16_t three_digits(std::uint32_t number) {
  return static_cast<std::uint16_t>(number / 100 << 8U | bcd(number % 100));
}

std::uint32_t from_three_digits(std::uint16_t coded) {
  return (coded >> 8U & 0x0FU) * 100U + from_bcd(static_cast<std::uint8_t>(coded));
}

}  // namespace

std::uint64_t load_number(Bytes bytes) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : bytes.first(std::min<std::size_t>(bytes.size(), 8))) {
    number = number << 8U | byte;
  }
  return number;
}

void store_number(MutableBytes bytes, std::uint64_t number) {
  for (std::size_t i = bytes.size(); i-- > 0;) {
    bytes[i] = static_cast<std::uint8_t>(number);
    number >>= 8U;
  }
}

float load_real(Bytes bytes) {
  return std::bit_cast<float>(static_cast<std::uint32_t>(load_number(bytes)));
}
double load_lreal(Bytes bytes) {
  return std::bit_cast<double>(load_number(bytes));
}
void store_real(MutableBytes bytes, float value) {
  store_number(bytes, std::bit_cast<std::uint32_t>(value));
}
void store_lreal(MutableBytes bytes, double value) {
  store_number(bytes, std::bit_cast<std::uint64_t>(value));
}

std::optional<std::uint16_t> s5time_from_ms(std::uint32_t ms, bool round) {
  if (ms > s5time_limit_ms) return std::nullopt;
  for (unsigned code = 0; code < s5time_bases_ms.size(); ++code) {
    const std::uint32_t base = s5time_bases_ms.at(code);
    // 9.994 s still belongs to the 10 ms base when cut off, and so it does when rounded: 999 units.
    const std::uint32_t units = (round ? ms + base / 2 : ms) / base;
    if (units <= 999) return static_cast<std::uint16_t>(code << 12U | three_digits(units));
  }
  return std::nullopt;
}

std::uint32_t ms_from_s5time(std::uint16_t coded) {
  return from_three_digits(coded) * s5time_bases_ms.at(coded >> 12U & 3U);
}

std::optional<std::uint16_t> counter_from_number(std::uint32_t number) {
  if (number > 999) return std::nullopt;
  return three_digits(number);
}

std::uint32_t number_from_counter(std::uint16_t coded) {
  return from_three_digits(coded);
}

std::uint8_t weekday_of(std::uint16_t year, std::uint8_t month, std::uint8_t day) {
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month},
                                         std::chrono::day{day}};
  if (!date.ok()) return 0;
  return static_cast<std::uint8_t>(std::chrono::weekday{std::chrono::sys_days{date}}.c_encoding() + 1);
}

bool is_valid(const DateTime& time) {
  return weekday_of(time.year, time.month, time.day) != 0 && time.hour < 24 && time.minute < 60 &&
         time.second < 60 && time.nanosecond < 1'000'000'000;
}

DateTime load_dtl(Bytes bytes) {
  if (bytes.size() < dtl_size) return {};
  return {static_cast<std::uint16_t>(load_number(bytes.first(2))),
          bytes[2],
          bytes[3],
          bytes[4],
          bytes[5],
          bytes[6],
          bytes[7],
          static_cast<std::uint32_t>(load_number(bytes.subspan(8, 4)))};
}

void store_dtl(MutableBytes bytes, const DateTime& time) {
  if (bytes.size() < dtl_size) return;
  store_number(bytes.first(2), time.year);
  bytes[2] = time.month;
  bytes[3] = time.day;
  bytes[4] = time.weekday;
  bytes[5] = time.hour;
  bytes[6] = time.minute;
  bytes[7] = time.second;
  store_number(bytes.subspan(8, 4), time.nanosecond);
}

DateTime load_date_and_time(Bytes bytes) {
  if (bytes.size() < date_and_time_size) return {};
  const auto part = [&bytes](std::size_t i) { return static_cast<std::uint8_t>(from_bcd(bytes[i])); };
  const unsigned milliseconds = from_bcd(bytes[6]) * 10U + (bytes[7] >> 4U);
  return {static_cast<std::uint16_t>(part(0) + (part(0) < 90 ? 2000 : 1900)),
          part(1),
          part(2),
          static_cast<std::uint8_t>(bytes[7] & 0x0FU),
          part(3),
          part(4),
          part(5),
          milliseconds * 1'000'000U};
}

bool store_date_and_time(MutableBytes bytes, const DateTime& time) {
  if (bytes.size() < date_and_time_size || !is_valid(time) || time.year < 1990 || time.year > 2089)
    return false;
  const unsigned milliseconds = time.nanosecond / 1'000'000;
  bytes[0] = bcd(time.year % 100U);
  bytes[1] = bcd(time.month);
  bytes[2] = bcd(time.day);
  bytes[3] = bcd(time.hour);
  bytes[4] = bcd(time.minute);
  bytes[5] = bcd(time.second);
  bytes[6] = bcd(milliseconds / 10);
  bytes[7] =
      static_cast<std::uint8_t>((milliseconds % 10) << 4U | weekday_of(time.year, time.month, time.day));
  return true;
}

std::string load_string(Bytes bytes) {
  if (bytes.size() < string_header) return {};
  const std::size_t length = std::min<std::size_t>({bytes[0], bytes[1], bytes.size() - string_header});
  std::string text;
  for (const std::uint8_t code : bytes.subspan(string_header, length))
    append_utf8(text, from_code_page(code));
  return text;
}

std::string load_wstring(Bytes bytes) {
  if (bytes.size() < wstring_header) return {};
  const std::size_t length = std::min<std::size_t>(
      {load_number(bytes.first(2)), load_number(bytes.subspan(2, 2)), (bytes.size() - wstring_header) / 2});
  const auto unit = [&bytes](std::size_t i) {
    return static_cast<char32_t>(load_number(bytes.subspan(wstring_header + 2 * i, 2)));
  };
  std::string text;
  for (std::size_t i = 0; i < length; ++i) {
    char32_t character = unit(i);
    if (character >= 0xD800 && character <= 0xDFFF) {
      const char32_t low = character < 0xDC00 && i + 1 < length ? unit(i + 1) : 0;
      const bool pair = low >= 0xDC00 && low <= 0xDFFF;
      if (pair) ++i;
      character = pair ? 0x10000 + ((character - 0xD800) << 10U) + (low - 0xDC00) : 0xFFFD;
    }
    append_utf8(text, character);
  }
  return text;
}

bool store_string(MutableBytes bytes, std::string_view text) {
  if (bytes.size() < string_header) return false;
  const std::size_t room = std::min<std::size_t>(bytes.size() - string_header, 254);
  std::string codes;
  while (!text.empty()) {
    const std::optional<char32_t> character = take_character(text);
    const std::optional<std::uint8_t> code = character ? to_code_page(*character) : std::nullopt;
    if (!code || codes.size() == room) return false;
    codes.push_back(static_cast<char>(*code));
  }
  bytes[0] = static_cast<std::uint8_t>(room);
  bytes[1] = static_cast<std::uint8_t>(codes.size());
  std::transform(codes.begin(), codes.end(), bytes.begin() + string_header,
                 [](char code) { return static_cast<std::uint8_t>(code); });
  return true;
}

bool store_wstring(MutableBytes bytes, std::string_view text) {
  if (bytes.size() < wstring_header) return false;
  const std::size_t room = std::min<std::size_t>((bytes.size() - wstring_header) / 2, 16'382);
  std::u16string units;
  while (!text.empty()) {
    const std::optional<char32_t> character = take_character(text);
    if (!character) return false;
    if (*character >= 0x10000) {
      units.push_back(static_cast<char16_t>(0xD800 + ((*character - 0x10000) >> 10U)));
      units.push_back(static_cast<char16_t>(0xDC00 + ((*character - 0x10000) & 0x3FFU)));
    } else {
      units.push_back(static_cast<char16_t>(*character));
    }
    if (units.size() > room) return false;
  }
  store_number(bytes.first(2), room);
  store_number(bytes.subspan(2, 2), units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    store_number(bytes.subspan(wstring_header + 2 * i, 2), units[i]);
  }
  return true;
}

std::uint64_t byte_count(const Symbol& symbol) {
  return element_count(symbol) * symbol.element_size;
}

std::uint64_t byte_count(const Target& target) {
  if (target.symbol == nullptr) return 0;
  return target.element ? target.symbol->element_size : byte_count(*target.symbol);
}

MutableBytes bytes_of(const Target& target, MutableBytes memory) {
  const std::uint64_t count = byte_count(target);
  if (target.address > memory.size() || count > memory.size() - target.address) return {};
  return memory.subspan(target.address, count);
}

Bytes bytes_of(const Target& target, Bytes memory) {
  const std::uint64_t count = byte_count(target);
  if (target.address > memory.size() || count > memory.size() - target.address) return {};
  return memory.subspan(target.address, count);
}

}  // namespace ostravel::plc
