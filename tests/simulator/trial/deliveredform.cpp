// SPDX-License-Identifier: MIT
#include "tests/simulator/trial/deliveredform.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/text.h"

namespace ostravel::trial {
namespace {

using nlohmann::json;
using plc::DataType;

void add_number(json& bytes, std::uint64_t number, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(number >> (8 * i) & 0xFF);
}

json parts_of(const plc::DateTime& time, std::uint64_t fraction, int fraction_bytes) {
  json bytes = json::array();
  add_number(bytes, time.year, 2);
  for (const auto part : {time.month, time.day, time.weekday, time.hour, time.minute, time.second}) {
    bytes.push_back(part);
  }
  add_number(bytes, fraction, fraction_bytes);
  return bytes;
}

// Numbers that use all bytes of their type and are not alike in any.
std::uint64_t scattered(std::uint64_t seed) {
  std::uint64_t mixed = (seed + 1) * 0x9E3779B97F4A7C15U;
  mixed ^= mixed >> 29;
  mixed *= 0xBF58476D1CE4E5B9U;
  return mixed ^ mixed >> 32;
}

json whole_number(const plc::Symbol& symbol, std::uint64_t mixed, bool is_signed) {
  const unsigned unused = 64 - 8 * symbol.element_size;
  if (is_signed) return static_cast<std::int64_t>(mixed << unused) >> unused;
  return mixed << unused >> unused;
}

// As long as fits, so that no part of a text's memory passes untested.
json text(const plc::Symbol& symbol, std::uint64_t mixed) {
  const bool wide = symbol.type == DataType::WString;
  std::string value;
  for (std::uint64_t i = 0; i < symbol.string_length; ++i) {
    const auto letter = (mixed >> i % 48) % 26;
    if (wide && letter > 20) {
      plc::append_utf8(value, static_cast<char32_t>(0x3A0 + letter));
    } else if (letter == 0) {
      plc::append_utf8(value, U'ü');
    } else {
      value += static_cast<char>('A' + letter);
    }
  }
  return value;
}

json date(const plc::Symbol& symbol, std::uint64_t mixed) {
  const auto day =
      fmt::format("{}-{:02}-{:02}", 1990 + mixed % 90, 1 + mixed / 90 % 12, 1 + mixed / 1080 % 28);
  const auto clock = fmt::format("{:02}:{:02}:{:02}.", mixed >> 20 & 15, mixed >> 24 & 31, mixed >> 29 & 31);
  const auto time = clock + fmt::format("{:03}", (mixed >> 34) % 1000);
  const auto long_time = clock + fmt::format("{:09}", (mixed >> 34) % 1'000'000'000);
  switch (symbol.type) {
    case DataType::Date:
      return "D#" + day;
    case DataType::TimeOfDay:
      return "TOD#" + time;
    case DataType::LTimeOfDay:
      return "LTOD#" + long_time;
    case DataType::DateAndTime:
      return "DT#" + day + "-" + time;
    case DataType::LDateTime:
      return "LDT#" + day + "-" + long_time;
    default:
      return "DTL#" + day + "-" + long_time;
  }
}

}  // namespace

json delivered_form(const plc::Symbol& symbol, const json& shown) {
  plc::Symbol element = symbol;
  element.dimensions.clear();
  std::vector<std::uint8_t> memory(symbol.element_size);
  if (plc::element_from_json(element, shown, memory)) return nullptr;
  switch (symbol.type) {
    case DataType::Date:
    case DataType::TimeOfDay:
    case DataType::LTimeOfDay:
    case DataType::LDateTime:
    case DataType::Char:
      return plc::load_number(memory);
    case DataType::Dtl: {
      const auto time = plc::load_dtl(memory);
      return parts_of(time, time.nanosecond, 4);
    }
    case DataType::DateAndTime: {
      const auto time = plc::load_date_and_time(memory);
      return parts_of(time, time.nanosecond / 1'000'000, 2);
    }
    default:
      return shown;
  }
}

json distinct_value(const plc::Symbol& symbol, std::uint64_t seed) {
  using enum plc::TypeFamily;
  const auto mixed = scattered(seed);
  switch (plc::type_row(symbol.type).family) {
    case Bool:
      return (mixed & 1) != 0;
    case BitString:
    case Unsigned:
      return whole_number(symbol, mixed, false);
    case Signed:
    case Time:
      return whole_number(symbol, mixed, true);
    case Real:
      return static_cast<double>(mixed % 2'000'000) / 64 - 10'000;
    case Text:
      return symbol.string_length > 0 ? text(symbol, mixed)
                                      : json(std::string(1, static_cast<char>('A' + mixed % 26)));
    case Date:
      return date(symbol, mixed);
    case Bcd:
      return symbol.type == DataType::Counter ? mixed % 1000 : mixed % 1000 * 10;
    default:
      return nullptr;
  }
}

}  // namespace ostravel::trial
