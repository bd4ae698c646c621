// SPDX-License-Identifier: MIT
#include "host/literaltime.h"

#include <fmt/format.h>
#include <strings.h>

#include <array>
#include <charconv>
#include <chrono>
#include <limits>
#include <vector>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

constexpr std::uint64_t kMillisecond = 1'000'000;  // in nanoseconds, as all times here
constexpr std::uint64_t kSecond = 1'000'000'000;
constexpr std::uint64_t kLongestS5Time = 9'990'000;  // milliseconds

enum class Form : std::uint8_t {
  Time,
  LTime,
  S5Time,
  TimeOfDay,
  LTimeOfDay,
  Date,
  DateAndTime,
  LDateTime,
  Dtl
};

struct Prefix {
  std::string_view text;
  Form form;
};
constexpr std::array kPrefixes{
    Prefix{"T#", Form::Time},          Prefix{"TIME#", Form::Time},
    Prefix{"LT#", Form::LTime},        Prefix{"LTIME#", Form::LTime},
    Prefix{"S5T#", Form::S5Time},      Prefix{"S5TIME#", Form::S5Time},
    Prefix{"TOD#", Form::TimeOfDay},   Prefix{"TIME_OF_DAY#", Form::TimeOfDay},
    Prefix{"LTOD#", Form::LTimeOfDay}, Prefix{"LTIME_OF_DAY#", Form::LTimeOfDay},
    Prefix{"D#", Form::Date},          Prefix{"DATE#", Form::Date},
    Prefix{"DT#", Form::DateAndTime},  Prefix{"DATE_AND_TIME#", Form::DateAndTime},
    Prefix{"LDT#", Form::LDateTime},   Prefix{"DATE_AND_LTIME#", Form::LDateTime},
    Prefix{"DTL#", Form::Dtl},
};

struct Unit {
  std::string_view name;
  std::uint64_t nanoseconds;
};
constexpr std::array kUnits{Unit{"ms", kMillisecond},    Unit{"us", 1000},          Unit{"ns", 1},
                            Unit{"d", 86'400 * kSecond}, Unit{"h", 3600 * kSecond}, Unit{"m", 60 * kSecond},
                            Unit{"s", kSecond}};

std::optional<std::uint64_t> take_number(std::string_view& text) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc()) {
    return std::nullopt;
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

// Takes ".25" off the front: that part of the unit, 0 when there is none. Digits beyond a nanosecond are cut.
std::optional<std::uint64_t> take_fraction(std::string_view& text, std::uint64_t unit) {
  if (!text.starts_with('.')) {
    return 0;
  }
  text.remove_prefix(1);
  std::uint64_t value = 0;
  std::size_t digits = 0;
  for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits) {
    unit /= 10;
    value += static_cast<std::uint64_t>(text[digits] - '0') * unit;
  }
  text.remove_prefix(digits);
  return digits == 0 ? std::nullopt : std::optional(value);
}

// 1d_2h_3m_4s_5ms_6us_7ns with a sign, parts left out, and a fraction in any of them.
std::optional<std::int64_t> parse_duration(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) {
    text.remove_prefix(1);
  }
  constexpr auto kLimit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  std::uint64_t total = 0;
  do {
    const auto number = take_number(text);
    const auto fraction_text = text;
    if (!number || !take_fraction(text, kSecond)) {
      return std::nullopt;
    }
    const Unit* unit = nullptr;
    for (const auto& candidate : kUnits) {
      if (unit == nullptr && after_prefix(text, candidate.name)) {
        unit = &candidate;
      }
    }
    if (unit == nullptr || *number > kLimit / unit->nanoseconds) {
      return std::nullopt;
    }
    text.remove_prefix(unit->name.size());
    auto fraction = fraction_text;
    const auto part = *number * unit->nanoseconds + *take_fraction(fraction, unit->nanoseconds);
    if (part > kLimit - total) {
      return std::nullopt;
    }
    total += part;
    if (text.size() > 1 && text.front() == '_') {
      text.remove_prefix(1);
    }
  } while (!text.empty());
  return negative ? -static_cast<std::int64_t>(total) : static_cast<std::int64_t>(total);
}

// 13:14:15.5, in nanoseconds since midnight.
std::optional<std::uint64_t> parse_time_of_day(std::string_view text) {
  std::uint64_t total = 0;
  for (const auto& [limit, seconds] :
       {std::pair<std::uint64_t, std::uint64_t>{24, 3600}, {60, 60}, {60, 1}}) {
    const auto part = take_number(text);
    if (!part || *part >= limit) {
      return std::nullopt;
    }
    total += *part * seconds * kSecond;
    if (seconds > 1) {
      if (!text.starts_with(':')) {
        return std::nullopt;
      }
      text.remove_prefix(1);
    }
  }
  const auto fraction = take_fraction(text, kSecond);
  return fraction && text.empty() ? std::optional(total + *fraction) : std::nullopt;
}

struct Moment {
  std::chrono::year_month_day date;
  std::uint64_t of_day = 0;  // nanoseconds

  std::chrono::sys_days day() const { return date; }
  int year() const { return static_cast<int>(date.year()); }
};

// Takes 2024-03-05 off the front.
std::optional<Moment> take_date(std::string_view& text) {
  std::array<unsigned, 3> parts{};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const auto part = take_number(text);
    if (!part || *part > 9999 || (i < 2 && !text.starts_with('-'))) {
      return std::nullopt;
    }
    parts[i] = static_cast<unsigned>(*part);
    if (i < 2) {
      text.remove_prefix(1);
    }
  }
  const Moment moment{{std::chrono::year(static_cast<int>(parts[0])), std::chrono::month(parts[1]),
                       std::chrono::day(parts[2])},
                      0};
  return moment.date.ok() ? std::optional(moment) : std::nullopt;
}

std::optional<Moment> parse_moment(std::string_view text) {
  auto moment = take_date(text);
  if (!moment || !text.starts_with('-')) {
    return std::nullopt;
  }
  const auto time = parse_time_of_day(text.substr(1));
  if (!time) {
    return std::nullopt;
  }
  moment->of_day = *time;
  return moment;
}

// One literal on its way into one tag.
struct Literal {
  const Tag& tag;
  std::string_view text;  // with its prefix
  bool element;

  int bits() const {
    const auto kind = tag.type->kind;
    return kind == ValueKind::Signed || kind == ValueKind::Unsigned ? tag.type->bits : 0;
  }

  [[noreturn]] void refuse(std::string_view why) const { throw UserError(fmt::format("{} {}", text, why)); }

  void need_bits(bool fits, std::string_view where) const {
    if (!fits) {
      refuse(fmt::format("does not fit {}; it goes to {}", tag.type->name, where));
    }
  }

  std::int64_t milliseconds(std::int64_t nanoseconds) const {
    if (nanoseconds % static_cast<std::int64_t>(kMillisecond) != 0) {
      refuse("is finer than milliseconds, in which it stands in the PLC");
    }
    return nanoseconds / static_cast<std::int64_t>(kMillisecond);
  }

  json ranged(std::int64_t number, std::int64_t lowest, std::int64_t highest, std::string_view unit) const {
    if (number < lowest || number > highest) {
      refuse(fmt::format("does not fit {} ({} to {} {})", tag.type->name, lowest, highest, unit));
    }
    return number;
  }

  void need_years(const Moment& moment, int first, int last) const {
    if (moment.year() < first || moment.year() > last) {
      refuse(fmt::format("is out of range (years {} to {})", first, last));
    }
  }
};

std::int64_t lowest_of(const TagType& type) {
  return type.kind == ValueKind::Signed ? std::numeric_limits<std::int64_t>::min() >> (64 - type.bits) : 0;
}

std::int64_t highest_of(const TagType& type) {
  const int value_bits = type.kind == ValueKind::Signed ? type.bits - 1 : type.bits;
  return value_bits >= 63 ? std::numeric_limits<std::int64_t>::max() : (std::int64_t{1} << value_bits) - 1;
}

json duration(const Literal& literal, Form form, std::string_view rest) {
  const auto time = parse_duration(rest);
  if (!time) {
    literal.refuse("is no time; write it like T#1h_2m_3.5s, with d, h, m, s, ms, us or ns");
  }
  const auto& type = *literal.tag.type;
  if (form == Form::S5Time) {
    literal.need_bits(literal.bits() == 32, "UDINT or DINT, in milliseconds");
    return literal.ranged(literal.milliseconds(*time), 0, kLongestS5Time, "ms");
  }
  if (form == Form::Time && literal.bits() == 32) {
    return literal.ranged(literal.milliseconds(*time), lowest_of(type), highest_of(type), "ms");
  }
  literal.need_bits(literal.bits() == 64, form == Form::Time
                                              ? "DINT, in milliseconds, or LINT, in nanoseconds"
                                              : "LINT, in nanoseconds");
  return literal.ranged(*time, lowest_of(type), highest_of(type), "ns");
}

json time_of_day(const Literal& literal, Form form, std::string_view rest) {
  const auto time = parse_time_of_day(rest);
  if (!time) {
    literal.refuse("is no time of day; write it like TOD#13:14:15.5");
  }
  if (form == Form::TimeOfDay && literal.bits() == 32) {
    return literal.milliseconds(static_cast<std::int64_t>(*time));
  }
  literal.need_bits(literal.bits() == 64, form == Form::TimeOfDay
                                              ? "UDINT, in milliseconds, or ULINT, in nanoseconds"
                                              : "ULINT, in nanoseconds");
  return *time;
}

json date(const Literal& literal, std::string_view rest) {
  const auto moment = take_date(rest);
  if (!moment || !rest.empty()) {
    literal.refuse("is no date; write it like D#2024-03-05");
  }
  literal.need_bits(literal.bits() == 16, "UINT, in days since 1990-01-01");
  literal.need_years(*moment, 1990, 2168);
  using namespace std::chrono;
  return literal.ranged((moment->day() - sys_days(1990y / January / 1)).count(), 0,
                        highest_of(*literal.tag.type), "days");
}

// The parts of DT and DTL in the order in which the driver takes them.
json packed(const Literal& literal, Form form, const Moment& moment) {
  const bool dtl = form == Form::Dtl;
  const int size = dtl ? 12 : 10;
  if (literal.element || literal.bits() * literal.tag.count != size * 8) {
    literal.refuse(
        fmt::format("takes {} bytes; it goes to a tag of {} BYTE or {} WORD", size, size, size / 2));
  }
  dtl ? literal.need_years(moment, 1970, 2262) : literal.need_years(moment, 1990, 2089);
  const auto seconds = moment.of_day / kSecond;
  const auto fraction = moment.of_day % kSecond;
  std::vector<std::uint8_t> bytes;
  const auto put = [&bytes](std::uint64_t value, int count) {
    for (int i = 0; i < count; ++i) {
      bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
  };
  put(static_cast<std::uint64_t>(moment.year()), 2);
  put(static_cast<unsigned>(moment.date.month()), 1);
  put(static_cast<unsigned>(moment.date.day()), 1);
  put(std::chrono::weekday(moment.day()).c_encoding() + 1, 1);
  put(seconds / 3600, 1);
  put(seconds / 60 % 60, 1);
  put(seconds % 60, 1);
  if (dtl) {
    put(fraction, 4);
  } else {
    put(static_cast<std::uint64_t>(literal.milliseconds(static_cast<std::int64_t>(fraction))), 2);
  }
  return json::binary(std::move(bytes));
}

json date_and_time(const Literal& literal, Form form, std::string_view rest) {
  const auto moment = parse_moment(rest);
  if (!moment) {
    literal.refuse("is no date and time; write it like DTL#2024-03-05-13:14:15.5");
  }
  if (form != Form::LDateTime) {
    return packed(literal, form, *moment);
  }
  literal.need_bits(literal.bits() == 64, "ULINT, in nanoseconds since 1970-01-01");
  literal.need_years(*moment, 1970, 2261);
  return static_cast<std::uint64_t>(moment->day().time_since_epoch().count()) * 86'400 * kSecond +
         moment->of_day;
}

}  // namespace

std::optional<std::string_view> after_prefix(std::string_view text, std::string_view prefix) {
  const bool same =
      text.size() >= prefix.size() && strncasecmp(text.data(), prefix.data(), prefix.size()) == 0;
  return same ? std::optional(text.substr(prefix.size())) : std::nullopt;
}

std::optional<json> time_value(const Tag& tag, std::string_view text, bool element) {
  for (const auto& prefix : kPrefixes) {
    const auto rest = after_prefix(text, prefix.text);
    if (!rest) {
      continue;
    }
    const Literal literal{tag, text, element};
    switch (prefix.form) {
      case Form::Time:
      case Form::LTime:
      case Form::S5Time:
        return duration(literal, prefix.form, *rest);
      case Form::TimeOfDay:
      case Form::LTimeOfDay:
        return time_of_day(literal, prefix.form, *rest);
      case Form::Date:
        return date(literal, *rest);
      default:
        return date_and_time(literal, prefix.form, *rest);
    }
  }
  return std::nullopt;
}

}  // namespace ostravel::host
