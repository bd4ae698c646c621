// SPDX-License-Identifier: MIT
// Literals of times and dates.
#include <fmt/format.h>

#include <array>
#include <charconv>
#include <chrono>
#include <limits>

#include "simulator/program/data_type.h"
#include "simulator/program/literal.h"
#include "simulator/program/position.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

constexpr std::uint64_t second_ns = 1'000'000'000;
constexpr std::uint64_t day_ns = 86'400 * second_ns;
constexpr std::int64_t days_to_1990 = 7305;
// The last whole year that nanoseconds since 1970 can count in 64 bits.
constexpr std::uint16_t last_year = 2553;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// Digits off the text's front, underscores left out.
std::optional<std::uint64_t> take_digits(std::string_view& text) {
  std::string found;
  while (!text.empty() && (is_digit(text.front()) || (text.front() == '_' && !found.empty()))) {
    if (text.front() != '_') found.push_back(text.front());
    text.remove_prefix(1);
  }
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(found.data(), found.data() + found.size(), value);
  if (error != std::errc{} || end != found.data() + found.size()) return std::nullopt;
  return value;
}

// A number below limit, then the separator unless it is 0.
std::optional<std::uint32_t> take_part(std::string_view& text, std::uint64_t limit, char separator) {
  const std::optional<std::uint64_t> number = take_digits(text);
  if (!number || *number >= limit) return std::nullopt;
  if (separator != '\0') {
    if (!text.starts_with(separator)) return std::nullopt;
    text.remove_prefix(1);
  }
  return static_cast<std::uint32_t>(*number);
}

// ".25" as a part of unit, which is a power of ten times a small number; digits beyond nanoseconds are lost.
std::optional<std::uint64_t> take_fraction(std::string_view& text, std::uint64_t unit) {
  if (!text.starts_with('.')) return 0;
  text.remove_prefix(1);
  if (text.empty() || !is_digit(text.front())) return std::nullopt;
  std::uint64_t numerator = 0;
  std::uint64_t denominator = 1;
  while (!text.empty() && (is_digit(text.front()) || text.front() == '_')) {
    if (text.front() != '_' && denominator < second_ns) {
      numerator = numerator * 10 + static_cast<std::uint64_t>(text.front() - '0');
      denominator *= 10;
    }
    text.remove_prefix(1);
  }
  // Up to 10^9 times a day in nanoseconds: more than 64 bits.
  const std::uint64_t whole = unit / denominator * numerator;
  return whole + unit % denominator * numerator / denominator;
}

struct Unit {
  std::string_view name;
  std::uint64_t nanoseconds;
};

// Longer names first, for "ms" is not minutes.
constexpr std::array<Unit, 7> units{{{"ms", 1'000'000},
                                     {"us", 1000},
                                     {"ns", 1},
                                     {"d", day_ns},
                                     {"h", 3600 * second_ns},
                                     {"m", 60 * second_ns},
                                     {"s", second_ns}}};

const Unit* take_unit(std::string_view& text) {
  for (const Unit& unit : units) {
    if (text.size() >= unit.name.size() && equal_names(text.substr(0, unit.name.size()), unit.name)) {
      text.remove_prefix(unit.name.size());
      return &unit;
    }
  }
  return nullptr;
}

std::string out_of_range(std::string_view literal, DataType type) {
  return fmt::format("{} is out of the range of the type {}", quoted_piece(literal), type_row(type).name);
}

using Outcome = std::optional<std::string>;

Outcome store_duration(DataType type, std::int64_t ns, std::string_view literal, MutableBytes element) {
  const std::int64_t ms = ns / 1'000'000;
  if (type == DataType::LTime) {
    store_number(element, static_cast<std::uint64_t>(ns));
    return std::nullopt;
  }
  if (type == DataType::Time) {
    if (ms < std::numeric_limits<std::int32_t>::min() || ms > std::numeric_limits<std::int32_t>::max()) {
      return out_of_range(literal, type);
    }
    store_number(element, static_cast<std::uint64_t>(ms));
    return std::nullopt;
  }
  if (ms < 0 || ms > s5time_limit_ms) return out_of_range(literal, type);
  store_number(element, s5time_from_ms(static_cast<std::uint32_t>(ms), false).value_or(0));
  return std::nullopt;
}

Outcome store_date(DataType type, const DateTime& time, std::string_view literal, MutableBytes element) {
  if (type == DataType::Dtl) {
    if (time.year < 1970 || time.year > last_year) return out_of_range(literal, type);
    store_dtl(element, time);
  } else if (type == DataType::DateAndTime) {
    if (!store_date_and_time(element, time)) return out_of_range(literal, type);
  } else if (type == DataType::LDateTime) {
    if (time.year < 1970 || time.year > last_year) return out_of_range(literal, type);
    store_number(element, nanoseconds_of(time));
  } else {
    const std::int64_t days = days_of(time) - days_to_1990;
    if (days < 0 || days > std::numeric_limits<std::uint16_t>::max()) return out_of_range(literal, type);
    store_number(element, static_cast<std::uint64_t>(days));
  }
  return std::nullopt;
}

// "5", "C#5" and "C 5", "T 5": a decimal number goes in as the type counts, one written as bits as it is.
Outcome plain_number(DataType type, std::string_view literal, MutableBytes element) {
  const std::optional<std::string_view> of_block = after_prefix(literal, {"T ", "C ", "Z "});
  const std::string_view digits = after_prefix(literal, {"C#"}).value_or(of_block.value_or(literal));
  const std::optional<IntegerLiteral> number = parse_integer(digits);
  if (!number)
    return fmt::format("{} is no value of the type {}", quoted_piece(literal), type_row(type).name);
  bool stored = false;
  if (number->coded || type_row(type).family != TypeFamily::Bcd) {
    stored = type != DataType::Dtl && type != DataType::DateAndTime &&
             store_integer(*number, type_row(type).family == TypeFamily::Time, element);
  } else if (!number->negative && number->magnitude <= s5time_limit_ms) {
    const auto value = static_cast<std::uint32_t>(number->magnitude);
    const bool count = type == DataType::Counter || of_block.has_value();
    const std::optional<std::uint16_t> coded =
        count ? counter_from_number(value) : s5time_from_ms(value, false);
    if (coded) store_number(element, *coded);
    stored = coded.has_value();
  }
  if (!stored) return out_of_range(literal, type);
  return std::nullopt;
}

}  // namespace

std::optional<std::int64_t> parse_duration(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  constexpr auto limit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  std::uint64_t total = 0;
  while (!text.empty()) {
    const std::optional<std::uint64_t> number = take_digits(text);
    if (!number) return std::nullopt;
    std::string_view fraction = text;
    if (!take_fraction(text, 1)) return std::nullopt;
    const Unit* const unit = take_unit(text);
    if (unit == nullptr || *number > limit / unit->nanoseconds) return std::nullopt;
    const std::uint64_t part =
        *number * unit->nanoseconds + take_fraction(fraction, unit->nanoseconds).value_or(0);
    if (part > limit - total) return std::nullopt;
    total += part;
    if (text.starts_with('_')) text.remove_prefix(1);
  }
  return negative ? -static_cast<std::int64_t>(total) : static_cast<std::int64_t>(total);
}

std::optional<DateTime> parse_date(std::string_view text) {
  const auto year = take_part(text, 10'000, '-');
  const auto month = year ? take_part(text, 13, '-') : std::nullopt;
  const auto day = month ? take_part(text, 32, '\0') : std::nullopt;
  if (!day || !text.empty()) return std::nullopt;
  DateTime date;
  date.year = static_cast<std::uint16_t>(*year);
  date.month = static_cast<std::uint8_t>(*month);
  date.day = static_cast<std::uint8_t>(*day);
  date.weekday = weekday_of(date.year, date.month, date.day);
  if (date.weekday == 0) return std::nullopt;
  return date;
}

std::optional<std::uint64_t> parse_time_of_day(std::string_view text) {
  const auto hour = take_part(text, 24, ':');
  const auto minute = hour ? take_part(text, 60, ':') : std::nullopt;
  const auto second = minute ? take_part(text, 60, '\0') : std::nullopt;
  if (!second) return std::nullopt;
  const std::optional<std::uint64_t> fraction = take_fraction(text, second_ns);
  if (!fraction || !text.empty()) return std::nullopt;
  return (*hour * 3600ULL + *minute * 60ULL + *second) * second_ns + *fraction;
}

std::optional<DateTime> parse_date_and_time(std::string_view text) {
  // The third '-' ends the date.
  std::size_t end = text.find('-');
  for (int i = 0; i < 2 && end != std::string_view::npos; ++i) end = text.find('-', end + 1);
  if (end == std::string_view::npos) return std::nullopt;
  std::optional<DateTime> date = parse_date(text.substr(0, end));
  const std::optional<std::uint64_t> time = parse_time_of_day(text.substr(end + 1));
  if (!date || !time) return std::nullopt;
  const DateTime of_day = date_time_of(*time);
  date->hour = of_day.hour;
  date->minute = of_day.minute;
  date->second = of_day.second;
  date->nanosecond = of_day.nanosecond;
  return date;
}

std::optional<std::string> time_from_literal(DataType type, std::string_view literal, MutableBytes element) {
  const TypeFamily family = type_row(type).family;
  const auto wrong = [&] {
    return fmt::format("{} is no value of the type {}", quoted_piece(literal), type_row(type).name);
  };
  if (family == TypeFamily::Time || type == DataType::S5Time || type == DataType::Timer) {
    if (const auto text = after_prefix(literal, {"T#", "TIME#", "LT#", "LTIME#", "S5T#", "S5TIME#"})) {
      const std::optional<std::int64_t> ns = parse_duration(*text);
      return ns ? store_duration(type, *ns, literal, element) : wrong();
    }
  } else if (type == DataType::TimeOfDay || type == DataType::LTimeOfDay) {
    if (const auto text = after_prefix(literal, {"TOD#", "TIME_OF_DAY#", "LTOD#", "LTIME_OF_DAY#"})) {
      const std::optional<std::uint64_t> ns = parse_time_of_day(*text);
      if (!ns) return wrong();
      store_number(element, type == DataType::TimeOfDay ? *ns / 1'000'000 : *ns);
      return std::nullopt;
    }
  } else if (type == DataType::Date) {
    if (const auto text = after_prefix(literal, {"D#", "DATE#"})) {
      const std::optional<DateTime> date = parse_date(*text);
      return date ? store_date(type, *date, literal, element) : wrong();
    }
  } else if (family == TypeFamily::Date) {
    if (const auto text =
            after_prefix(literal, {"DT#", "DATE_AND_TIME#", "LDT#", "DATE_AND_LTIME#", "DTL#"})) {
      const std::optional<DateTime> time = parse_date_and_time(*text);
      return time ? store_date(type, *time, literal, element) : wrong();
    }
  }
  return plain_number(type, literal, element);
}

std::int64_t days_of(const DateTime& date) {
  const std::chrono::year_month_day calendar{std::chrono::year{date.year}, std::chrono::month{date.month},
                                             std::chrono::day{date.day}};
  return std::chrono::sys_days{calendar}.time_since_epoch().count();
}

DateTime date_of(std::int64_t days) {
  const std::chrono::sys_days point{std::chrono::days{days}};
  const std::chrono::year_month_day calendar{point};
  DateTime date;
  date.year = static_cast<std::uint16_t>(static_cast<int>(calendar.year()));
  date.month = static_cast<std::uint8_t>(static_cast<unsigned>(calendar.month()));
  date.day = static_cast<std::uint8_t>(static_cast<unsigned>(calendar.day()));
  date.weekday = weekday_of(date.year, date.month, date.day);
  return date;
}

DateTime date_time_of(std::uint64_t nanoseconds) {
  DateTime time = date_of(static_cast<std::int64_t>(nanoseconds / day_ns));
  const std::uint64_t seconds = nanoseconds % day_ns / second_ns;
  time.hour = static_cast<std::uint8_t>(seconds / 3600);
  time.minute = static_cast<std::uint8_t>(seconds / 60 % 60);
  time.second = static_cast<std::uint8_t>(seconds % 60);
  time.nanosecond = static_cast<std::uint32_t>(nanoseconds % second_ns);
  return time;
}

std::uint64_t nanoseconds_of(const DateTime& time) {
  const std::uint64_t seconds = time.hour * 3600ULL + time.minute * 60ULL + time.second;
  return static_cast<std::uint64_t>(days_of(time)) * day_ns + seconds * second_ns + time.nanosecond;
}

}  // namespace ostravel::plc
