// SPDX-License-Identifier: MIT
#include "host/literal.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <vector>

#include "host/literaltime.h"
#include "host/text.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Without underscores, which only make a number readable.
std::string compact(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c != '_') {
      result += c;
    }
  }
  return result;
}

// INT#5 is 5; that it fits the tag is checked like any other 5.
std::string_view without_type(std::string_view text) {
  for (const std::string_view type :
       {"BOOL#", "BYTE#",  "WORD#",  "DWORD#", "LWORD#", "SINT#", "INT#", "DINT#", "LINT#", "USINT#",
        "UINT#", "UDINT#", "ULINT#", "REAL#",  "LREAL#", "B#",    "W#",   "DW#",   "LW#",   "L#"}) {
    if (const auto rest = after_prefix(text, type)) {
      return *rest;
    }
  }
  return text;
}

std::optional<std::uint64_t> digits(std::string_view text, int base) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

struct Whole {
  std::uint64_t magnitude = 0;
  bool negative = false;
  bool coded = false;  // written as bits
};

std::optional<Whole> parse_whole(std::string_view text) {
  Whole whole;
  whole.negative = text.starts_with('-');
  if (whole.negative || text.starts_with('+')) {
    text.remove_prefix(1);
  }
  int base = 10;
  for (const auto& [prefix, prefix_base] :
       {std::pair<std::string_view, int>{"16#", 16}, {"0x", 16}, {"8#", 8}, {"2#", 2}}) {
    if (const auto rest = after_prefix(text, prefix)) {
      base = prefix_base;
      whole.coded = true;
      text = *rest;
      break;
    }
  }
  const auto magnitude = digits(text, base);
  if (!magnitude || (whole.negative && *magnitude > std::uint64_t{1} << 63)) {
    return std::nullopt;
  }
  whole.magnitude = *magnitude;
  return whole;
}

json to_json(const Whole& whole, const TagType& type) {
  if (whole.negative) {
    return static_cast<std::int64_t>(~whole.magnitude + 1);
  }
  const int unused = 64 - type.bits;
  const bool fills_sign =
      whole.coded && type.kind == ValueKind::Signed && whole.magnitude << unused >> unused == whole.magnitude;
  if (fills_sign) {
    return static_cast<std::int64_t>(whole.magnitude << unused) >> unused;
  }
  return whole.magnitude;
}

json bool_value(std::string_view text) {
  const auto plain = without_type(text);
  if (plain == "1" || (plain.size() == 4 && after_prefix(plain, "true"))) {
    return true;
  }
  if (plain == "0" || (plain.size() == 5 && after_prefix(plain, "false"))) {
    return false;
  }
  return std::string(text);
}

json real_value(const TagType& type, std::string_view text) {
  const auto plain = compact(without_type(text));
  std::string_view number = plain;
  if (number.starts_with('+')) {
    number.remove_prefix(1);
  }
  double value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc() && end == number.data() + number.size()) {
    // JSON has no number for what is not finite.
    return value - value == 0 ? json(value) : json(plain);
  }
  if (const auto whole = parse_whole(plain); whole && whole->coded) {
    return to_json(*whole, type);
  }
  return std::string(text);
}

// $-codes of a PLC's text: $$ $' $L $N $P $R $T, $XX of the code page, $XXXX in a wide text.
std::optional<std::u16string> unescaped(std::u16string_view text, bool wide) {
  std::u16string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\'') {
      return std::nullopt;
    }
    if (text[i] != u'$') {
      result += text[i];
      continue;
    }
    const auto code = [&](std::size_t count) -> std::optional<std::uint64_t> {
      const auto units = text.substr(std::min(i + 1, text.size()), count);
      return units.size() == count ? digits(utf8_from_utf16(units), 16) : std::nullopt;
    };
    if (const auto unit = wide ? code(4) : std::nullopt) {
      result += static_cast<char16_t>(*unit);
      i += 4;
    } else if (const auto byte = code(2)) {
      result += unit_from_byte(static_cast<std::uint8_t>(*byte));
      i += 2;
    } else {
      constexpr std::u16string_view kNames = u"$'\"LlNnPpRrTt";
      constexpr std::array<std::u16string_view, 13> kMeanings{
          u"$", u"'", u"\"", u"\n", u"\n", u"\r\n", u"\r\n", u"\f", u"\f", u"\r", u"\r", u"\t", u"\t"};
      const auto at = i + 1 < text.size() ? kNames.find(text[i + 1]) : std::u16string_view::npos;
      if (at == std::u16string_view::npos) {
        return std::nullopt;
      }
      result += kMeanings[at];
      ++i;
    }
  }
  return result;
}

json text_value(const TagType& type, std::string_view text) {
  auto quoted = trimmed(text);
  for (const std::string_view prefix : {"STRING#'", "WSTRING#'"}) {
    if (after_prefix(quoted, prefix)) {
      quoted.remove_prefix(prefix.size() - 1);
    }
  }
  if (quoted.size() >= 2 && quoted.starts_with('\'') && quoted.ends_with('\'')) {
    const auto units = utf16_from_utf8(quoted.substr(1, quoted.size() - 2));
    const auto plain = units ? unescaped(*units, type.kind == ValueKind::WideText) : std::nullopt;
    if (!plain) {
      throw UserError(fmt::format("{} is no text; write ' inside it as $' and $ as $$", quoted));
    }
    return utf8_from_utf16(*plain);
  }
  if (quoted.starts_with('"')) {
    auto value = json::parse(quoted, nullptr, false);
    if (value.is_string()) {
      return value;
    }
  }
  return std::string(text);
}

// 'K' is the number of that character in a type of eight bits, as the PLC's Char travels.
std::optional<json> character_value(const TagType& type, std::string_view text) {
  if (type.bits != 8 || text.size() < 3 || !text.starts_with('\'')) {
    return std::nullopt;
  }
  const auto plain = text_value(type, text).get<std::string>();
  const auto units = utf16_from_utf8(plain);
  const auto byte = units && units->size() == 1 ? byte_from_unit(units->front()) : std::nullopt;
  return byte ? std::optional<json>(to_json({*byte, false, true}, type)) : std::nullopt;
}

json single_value(const Tag& tag, std::string_view text, bool element) {
  const auto& type = *tag.type;
  if (type.is_text()) {
    return text_value(type, text);
  }
  text = trimmed(text);
  if (type.kind == ValueKind::Bool || type.kind == ValueKind::Bit) {
    return bool_value(text);
  }
  if (auto time = time_value(tag, text, element)) {
    return *std::move(time);
  }
  if (type.kind == ValueKind::Real) {
    return real_value(type, text);
  }
  if (auto character = character_value(type, text)) {
    return *std::move(character);
  }
  if (const auto whole = parse_whole(compact(without_type(text)))) {
    return to_json(*whole, type);
  }
  // A number that is not whole is refused as the number that it is, without quotes.
  const bool numeric = !text.empty() && std::string_view("-0123456789").find(text.front()) != text.npos;
  auto number = numeric ? json::parse(text, nullptr, false) : json();
  return number.is_number() ? number : json(text);
}

// The parts of "[a, b, c]"; a comma in quotes does not part.
std::vector<std::string_view> split_list(std::string_view text) {
  const auto inner = trimmed(text.substr(1, text.size() - 2));
  std::vector<std::string_view> parts;
  if (inner.empty()) {
    return parts;
  }
  char quote = '\0';
  std::size_t start = 0;
  for (std::size_t i = 0; i < inner.size(); ++i) {
    const char c = inner[i];
    if (quote != '\0') {
      const bool escape = (quote == '\'' && c == '$') || (quote == '"' && c == '\\');
      i += escape ? 1 : 0;
      quote = c == quote ? '\0' : quote;
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == '[') {
      throw UserError("a list in a list is no value of a tag; give all elements in one list");
    } else if (c == ',') {
      parts.push_back(trimmed(inner.substr(start, i - start)));
      start = i + 1;
    }
  }
  parts.push_back(trimmed(inner.substr(start)));
  return parts;
}

}  // namespace

json parse_value(const Selection& selection, std::string_view text) {
  const auto& tag = selection.tag;
  if (selection.bit) {
    return bool_value(trimmed(text));
  }
  const auto list = trimmed(text);
  const bool takes_list = tag.is_array() || (tag.type->is_text() ? tag.elements : tag.count) > 1;
  if (!takes_list || list.size() < 2 || !list.starts_with('[') || !list.ends_with(']')) {
    return single_value(tag, text, false);
  }
  json values = json::array();
  for (const auto part : split_list(list)) {
    values.push_back(single_value(tag, part, true));
  }
  return values;
}

}  // namespace ostravel::host
