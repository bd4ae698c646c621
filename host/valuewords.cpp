// SPDX-License-Identifier: MIT
#include "host/valuewords.h"

#include <fmt/format.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "host/text.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

std::uint64_t number_from(std::span<const std::uint16_t> words, int count) {
  std::uint64_t number = 0;
  for (int i = 0; i < count; ++i) {
    const auto at = static_cast<std::size_t>(i);
    number |= static_cast<std::uint64_t>(at < words.size() ? words[at] : 0) << (16 * i);
  }
  return number;
}

Words words_from(std::uint64_t number, int count) {
  Words words;
  for (int i = 0; i < count; ++i) {
    words.push_back(static_cast<std::uint16_t>(number >> (16 * i)));
  }
  return words;
}

json real_to_json(double value) {
  if (std::isnan(value)) {
    return "nan";
  }
  if (std::isinf(value)) {
    return value < 0 ? "-inf" : "inf";
  }
  return value;
}

// "-128 to 127"
std::string range_of(const TagType& type) {
  const auto largest = std::numeric_limits<std::uint64_t>::max() >> (64 - type.bits);
  switch (type.kind) {
    case ValueKind::Bool:
    case ValueKind::Bit:
      return "true or false";
    case ValueKind::Signed:
      return fmt::format("{} to {}", std::numeric_limits<std::int64_t>::min() >> (64 - type.bits),
                         largest >> 1);
    case ValueKind::Real:
      return type.bits == 64 ? fmt::format("{0} to {1}", std::numeric_limits<double>::lowest(),
                                           std::numeric_limits<double>::max())
                             : fmt::format("{0} to {1}", std::numeric_limits<float>::lowest(),
                                           std::numeric_limits<float>::max());
    default:
      return fmt::format("0 to {}", largest);
  }
}

std::int64_t sign_extended(std::uint64_t number, int bits) {
  const int unused = 64 - bits;
  return static_cast<std::int64_t>(number << unused) >> unused;
}

[[noreturn]] void reject(const TagType& type, const json& value) {
  throw UserError(fmt::format("{} does not fit {} ({})",
                              value.dump(-1, ' ', false, json::error_handler_t::replace), type.name,
                              range_of(type)));
}

// A whole number as the PLC's languages and JSON write it: -5, 250, 16#FF, 0xFF, 2#1010.
std::optional<json> parse_whole(std::string_view text) {
  int base = 10;
  bool negative = false;
  if (text.starts_with('-')) {
    negative = true;
    text.remove_prefix(1);
  }
  for (const auto& [prefix, prefix_base] :
       {std::pair<std::string_view, int>{"16#", 16}, {"0x", 16}, {"0X", 16}, {"8#", 8}, {"2#", 2}}) {
    if (text.starts_with(prefix)) {
      base = prefix_base;
      text.remove_prefix(prefix.size());
      break;
    }
  }
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  if (!negative) {
    return value;
  }
  if (value > std::uint64_t{1} << 63) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(~value + 1);
}

std::optional<double> parse_real(const json& value) {
  if (value.is_number()) {
    return value.get<double>();
  }
  if (!value.is_string()) {
    return std::nullopt;
  }
  const auto& text = value.get_ref<const std::string&>();
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return number;
}

bool parse_bool(const TagType& type, const json& value) {
  if (value.is_boolean()) {
    return value.get<bool>();
  }
  if (value == 0 || value == "0" || value == "false" || value == "FALSE") {
    return false;
  }
  if (value == 1 || value == "1" || value == "true" || value == "TRUE") {
    return true;
  }
  reject(type, value);
}

std::uint64_t parse_integer(const TagType& type, const json& value) {
  json whole = value;
  if (value.is_string()) {
    const auto parsed = parse_whole(value.get_ref<const std::string&>());
    if (!parsed) {
      reject(type, value);
    }
    whole = *parsed;
  }
  if (!whole.is_number_integer()) {
    reject(type, value);
  }
  const bool negative = !whole.is_number_unsigned() && whole.get<std::int64_t>() < 0;
  const int value_bits = type.kind == ValueKind::Signed ? type.bits - 1 : type.bits;
  const auto highest = std::numeric_limits<std::uint64_t>::max() >> (64 - value_bits);
  if (negative) {
    const auto number = whole.get<std::int64_t>();
    if (type.kind != ValueKind::Signed || static_cast<std::uint64_t>(~number) > highest) {
      reject(type, value);
    }
    return static_cast<std::uint64_t>(number);
  }
  const auto number = whole.get<std::uint64_t>();
  if (number > highest) {
    reject(type, value);
  }
  return number;
}

std::uint64_t parse_real_bits(const TagType& type, const json& value) {
  const auto number = parse_real(value);
  if (!number) {
    reject(type, value);
  }
  if (type.bits == 64) {
    return std::bit_cast<std::uint64_t>(*number);
  }
  const auto narrow = static_cast<float>(*number);
  if (std::isinf(narrow) && !std::isinf(*number)) {
    reject(type, value);
  }
  return std::bit_cast<std::uint32_t>(narrow);
}

char16_t unit_of_aligned(std::uint16_t word) {
  const bool extended = (word & 0xFF80) == 0xFF80;
  return extended || word < 0x100 ? unit_from_byte(static_cast<std::uint8_t>(word)) : word;
}

// The bytes of a text in code page 1252; nothing when it has other characters.
std::optional<std::vector<std::uint8_t>> page_bytes(const std::u16string& units) {
  std::vector<std::uint8_t> bytes;
  for (const auto unit : units) {
    const auto byte = byte_from_unit(unit);
    if (!byte) {
      return std::nullopt;
    }
    bytes.push_back(*byte);
  }
  return bytes;
}

}  // namespace

json element_from_words(const TagType& type, std::span<const std::uint16_t> words) {
  const auto number = number_from(words, type.words);
  const auto value = type.bits == 64 ? number : number & ((std::uint64_t{1} << type.bits) - 1);
  switch (type.kind) {
    case ValueKind::Bool:
    case ValueKind::Bit:
      return number != 0;
    case ValueKind::Signed:
      return sign_extended(value, type.bits);
    case ValueKind::Real:
      return type.bits == 64 ? real_to_json(std::bit_cast<double>(value))
                             : real_to_json(std::bit_cast<float>(static_cast<std::uint32_t>(value)));
    default:
      return value;
  }
}

Words element_to_words(const TagType& type, const json& value) {
  switch (type.kind) {
    case ValueKind::Bool:
    case ValueKind::Bit:
      return {static_cast<std::uint16_t>(parse_bool(type, value) ? 1 : 0)};
    case ValueKind::Real:
      return words_from(parse_real_bits(type, value), type.words);
    default:
      return words_from(parse_integer(type, value), type.words);
  }
}

std::string text_from_words(TextLayout layout, std::span<const std::uint16_t> words) {
  std::u16string units;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const auto word = words[i];
    const auto low = static_cast<std::uint8_t>(word);
    const auto high = static_cast<std::uint8_t>(word >> 8);
    switch (layout) {
      case TextLayout::WordAligned:
        units += unit_of_aligned(word);
        break;
      case TextLayout::CharPaired:
        units += unit_from_byte(low);
        units += unit_from_byte(high);
        break;
      case TextLayout::WideUnits:
        units += static_cast<char16_t>(word);
        break;
      case TextLayout::WideBytes:
        if (i % 2 == 0) {
          units += low;
        } else {
          units.back() = static_cast<char16_t>(units.back() | low << 8);
        }
        break;
    }
  }
  return utf8_from_utf16(std::u16string_view(units).substr(0, units.find(u'\0')));
}

Words text_to_words(TextLayout layout, std::string_view text, std::size_t limit) {
  const auto units = utf16_from_utf8(text);
  if (!units) {
    throw UserError("the text is not valid UTF-8");
  }
  if (units->size() > limit) {
    throw UserError(fmt::format("the text has {} characters, and {} fit", units->size(), limit));
  }
  Words words;
  if (layout == TextLayout::WideBytes) {
    for (const auto unit : *units) {
      words.push_back(unit & 0xFF);
      words.push_back(static_cast<std::uint16_t>(unit >> 8));
    }
    return words;
  }
  const auto bytes = layout == TextLayout::WideUnits ? std::nullopt : page_bytes(*units);
  if (!bytes) {
    return {units->begin(), units->end()};
  }
  if (layout == TextLayout::WordAligned) {
    return {bytes->begin(), bytes->end()};
  }
  for (std::size_t i = 0; i < bytes->size(); i += 2) {
    const unsigned high = i + 1 < bytes->size() ? (*bytes)[i + 1] : 0;
    words.push_back(static_cast<std::uint16_t>((*bytes)[i] | high << 8));
  }
  return words;
}

}  // namespace ostravel::host
