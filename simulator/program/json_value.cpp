// SPDX-License-Identifier: MIT
// Values as JSON.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <vector>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/literal.h"
#include "simulator/program/position.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using Failure = std::optional<std::string>;

constexpr std::uint64_t second_ns = 1'000'000'000;
constexpr std::int64_t days_to_1990 = 7305;

std::int64_t load_signed(Bytes bytes) {
  const unsigned unused = 64U - 8U * static_cast<unsigned>(std::min<std::size_t>(bytes.size(), 8));
  if (unused == 64U) return 0;
  return static_cast<std::int64_t>(load_number(bytes) << unused) >> unused;
}

json real_to_json(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  return value;
}

std::string date_text(const DateTime& time) {
  return fmt::format("{:04}-{:02}-{:02}", time.year, time.month, time.day);
}

std::string time_text(const DateTime& time, bool nanoseconds) {
  const std::string start = fmt::format("{:02}:{:02}:{:02}", time.hour, time.minute, time.second);
  return nanoseconds ? fmt::format("{}.{:09}", start, time.nanosecond)
                     : fmt::format("{}.{:03}", start, time.nanosecond / 1'000'000);
}

// A time of day beyond midnight is no time; its hours go on counting so that the text still tells what is
// there.
std::string time_of_day_text(std::uint64_t ns, bool nanoseconds) {
  const std::uint64_t seconds = ns / second_ns;
  const std::string start = fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
  return nanoseconds ? fmt::format("LTOD#{}.{:09}", start, ns % second_ns)
                     : fmt::format("TOD#{}.{:03}", start, ns % second_ns / 1'000'000);
}

json date_to_json(DataType type, Bytes element) {
  switch (type) {
    case DataType::Date:
      return "D#" + date_text(date_of(days_to_1990 + static_cast<std::int64_t>(load_number(element))));
    case DataType::TimeOfDay:
      return time_of_day_text(load_number(element) * 1'000'000, false);
    case DataType::LTimeOfDay:
      return time_of_day_text(load_number(element), true);
    case DataType::DateAndTime: {
      const DateTime time = load_date_and_time(element);
      return "DT#" + date_text(time) + '-' + time_text(time, false);
    }
    case DataType::LDateTime: {
      const DateTime time = date_time_of(load_number(element));
      return "LDT#" + date_text(time) + '-' + time_text(time, true);
    }
    default: {
      const DateTime time = load_dtl(element);
      return "DTL#" + date_text(time) + '-' + time_text(time, true);
    }
  }
}

json text_to_json(DataType type, Bytes element) {
  if (type == DataType::String) return load_string(element);
  if (type == DataType::WString) return load_wstring(element);
  std::string text;
  const auto code = static_cast<char32_t>(load_number(element));
  const bool half = code >= 0xD800 && code <= 0xDFFF;
  append_utf8(text, type == DataType::Char ? from_code_page(element[0]) : half ? 0xFFFD : code);
  return text;
}

json bcd_to_json(DataType type, Bytes element) {
  const auto coded = static_cast<std::uint16_t>(load_number(element));
  return type == DataType::Counter ? number_from_counter(coded) : ms_from_s5time(coded);
}

std::string no_value(const json& value, DataType type) {
  return fmt::format("{} is no value of the type {}",
                     quoted_piece(value.dump(-1, ' ', false, json::error_handler_t::replace)),
                     type_row(type).name);
}

Failure text_from_json(const Symbol& symbol, const json& value, MutableBytes element) {
  if (!value.is_string()) return no_value(value, symbol.type);
  const auto& text = value.get_ref<const std::string&>();
  if (symbol.type == DataType::String || symbol.type == DataType::WString) {
    const bool stored =
        symbol.type == DataType::String ? store_string(element, text) : store_wstring(element, text);
    if (stored) return std::nullopt;
    return fmt::format("the text has more than {} characters, or characters that the type {} does not have",
                       symbol.string_length, type_row(symbol.type).name);
  }
  std::string_view rest = text;
  const std::optional<char32_t> character = take_character(rest);
  if (!character || !rest.empty()) return no_value(value, symbol.type);
  const std::optional<std::uint8_t> code = to_code_page(*character);
  if (symbol.type == DataType::Char ? !code : *character > 0xFFFF) return no_value(value, symbol.type);
  store_number(element, symbol.type == DataType::Char ? std::uint64_t{*code} : *character);
  return std::nullopt;
}

Failure real_from_json(const Symbol& symbol, const json& value, MutableBytes element) {
  double number = 0;
  if (value.is_number()) {
    number = value.get<double>();
    const bool too_large = symbol.type == DataType::Real && std::isfinite(number) &&
                           std::abs(number) > double{std::numeric_limits<float>::max()};
    if (too_large) return fmt::format("{} is out of the range of the type Real", number);
  } else if (value == "inf" || value == "-inf") {
    number =
        value == "inf" ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
  } else if (value == "nan") {
    number = std::numeric_limits<double>::quiet_NaN();
  } else {
    return value.is_string() ? element_from_literal(symbol, value.get<std::string>(), element)
                             : no_value(value, symbol.type);
  }
  if (symbol.type == DataType::LReal) {
    store_lreal(element, number);
  } else {
    store_real(element, static_cast<float>(number));
  }
  return std::nullopt;
}

// Whatever JSON gives as a number or as a literal in a text.
Failure number_from_json(const Symbol& symbol, const json& value, MutableBytes element) {
  if (value.is_string()) return element_from_literal(symbol, value.get<std::string>(), element);
  if (value.is_number_integer()) return element_from_literal(symbol, value.dump(), element);
  return no_value(value, symbol.type);
}

Failure structure_from_json(const Symbol& symbol, const json& value, MutableBytes element) {
  if (!value.is_object()) return no_value(value, symbol.type);
  for (const auto& [name, part] : value.items()) {
    const std::string& wanted = name;
    const auto member = std::find_if(symbol.members.begin(), symbol.members.end(),
                                     [&wanted](const Symbol& s) { return equal_names(s.name, wanted); });
    if (member == symbol.members.end()) {
      return fmt::format("{} has no member {}", quoted_piece(symbol.name), quoted_piece(name));
    }
    if (member->offset > element.size()) return no_value(value, symbol.type);
    if (Failure failure = from_json(*member, part, element.subspan(member->offset))) return failure;
  }
  return std::nullopt;
}

Failure write_element(const Symbol& symbol, const json& value, MutableBytes element) {
  switch (type_row(symbol.type).family) {
    case TypeFamily::Bool:
      if (value.is_boolean()) {
        element[0] = value.get<bool>() ? 1 : 0;
        return std::nullopt;
      }
      return number_from_json(symbol, value, element);
    case TypeFamily::Text:
      return text_from_json(symbol, value, element);
    case TypeFamily::Real:
      return real_from_json(symbol, value, element);
    case TypeFamily::Other:
      return symbol.type == DataType::Struct ? structure_from_json(symbol, value, element)
                                             : no_value(value, symbol.type);
    default:
      return number_from_json(symbol, value, element);
  }
}

// Runs write on a copy, so that a value which fits only in part changes nothing.
template <typename Write>
Failure all_or_nothing(MutableBytes bytes, Write write) {
  std::vector<std::uint8_t> copy(bytes.begin(), bytes.end());
  Failure failure = write(MutableBytes(copy));
  if (!failure) std::copy(copy.begin(), copy.end(), bytes.begin());
  return failure;
}

}  // namespace

json element_to_json(const Symbol& symbol, Bytes element) {
  if (element.size() < symbol.element_size) return nullptr;
  element = element.first(symbol.element_size);
  if (symbol.type != DataType::Struct && element.empty()) return nullptr;
  switch (type_row(symbol.type).family) {
    case TypeFamily::Bool:
      return element[0] != 0;
    case TypeFamily::BitString:
    case TypeFamily::Unsigned:
      return load_number(element);
    case TypeFamily::Signed:
    case TypeFamily::Time:
      return load_signed(element);
    case TypeFamily::Real:
      return real_to_json(symbol.type == DataType::Real ? double{load_real(element)} : load_lreal(element));
    case TypeFamily::Text:
      return text_to_json(symbol.type, element);
    case TypeFamily::Date:
      return date_to_json(symbol.type, element);
    case TypeFamily::Bcd:
      return bcd_to_json(symbol.type, element);
    case TypeFamily::Other:
      break;
  }
  if (symbol.type != DataType::Struct) return nullptr;
  json object = json::object();
  for (const Symbol& member : symbol.members) {
    const bool inside = member.offset <= element.size();
    object[member.name] = inside ? to_json(member, element.subspan(member.offset)) : json();
  }
  return object;
}

json to_json(const Symbol& symbol, Bytes bytes) {
  const std::uint64_t whole = byte_count(symbol);
  if (bytes.size() < whole) return nullptr;
  if (symbol.dimensions.empty()) return element_to_json(symbol, bytes);
  json array = json::array();
  const std::uint64_t count = symbol.element_size == 0 ? 0 : element_count(symbol);
  for (std::uint64_t i = 0; i < count; ++i) {
    array.push_back(element_to_json(symbol, bytes.subspan(i * symbol.element_size, symbol.element_size)));
  }
  return array;
}

json to_json(const Target& target, Bytes memory) {
  if (target.symbol == nullptr) return nullptr;
  const Bytes bytes = bytes_of(target, memory);
  return target.element ? element_to_json(*target.symbol, bytes) : to_json(*target.symbol, bytes);
}

Failure element_from_json(const Symbol& symbol, const json& value, MutableBytes element) {
  if (element.size() < symbol.element_size || (symbol.element_size == 0 && symbol.type != DataType::Struct)) {
    return no_value(value, symbol.type);
  }
  return all_or_nothing(element.first(symbol.element_size),
                        [&](MutableBytes bytes) { return write_element(symbol, value, bytes); });
}

Failure from_json(const Symbol& symbol, const json& value, MutableBytes bytes) {
  if (symbol.dimensions.empty()) return element_from_json(symbol, value, bytes);
  const std::uint64_t count = element_count(symbol);
  if (!value.is_array() || value.size() != count || bytes.size() < byte_count(symbol)) {
    return fmt::format("{} takes an array of {} values", quoted_piece(symbol.name), count);
  }
  return all_or_nothing(bytes.first(byte_count(symbol)), [&](MutableBytes copy) -> Failure {
    for (std::uint64_t i = 0; i < count; ++i) {
      const MutableBytes element = copy.subspan(i * symbol.element_size, symbol.element_size);
      if (Failure failure = write_element(symbol, value[i], element)) return failure;
    }
    return std::nullopt;
  });
}

Failure from_json(const Target& target, const json& value, MutableBytes memory) {
  if (target.symbol == nullptr) return "there is no such variable";
  const MutableBytes bytes = bytes_of(target, memory);
  return target.element ? element_from_json(*target.symbol, value, bytes)
                        : from_json(*target.symbol, value, bytes);
}

}  // namespace ostravel::plc
