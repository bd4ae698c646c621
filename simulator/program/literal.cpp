// SPDX-License-Identifier: MIT
// Numbers and texts among the literals, and the way of any literal into an element.
#include "simulator/program/literal.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

#include "simulator/program/data_type.h"
#include "simulator/program/position.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

// Removes what only makes a number readable: blanks after the sign and underscores between digits.
std::string compact(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c != ' ' && c != '\t' && c != '_') result.push_back(c);
  }
  return result;
}

std::optional<std::uint64_t> digits(std::string_view text, int base) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// "(1, 2)": bytes, the most significant first.
std::optional<IntegerLiteral> parse_bytes(std::string_view text) {
  if (!text.starts_with('(') || !text.ends_with(')')) return std::nullopt;
  text = text.substr(1, text.size() - 2);
  if (text.find('(') != std::string_view::npos) return std::nullopt;  // a list in a list, perhaps without end
  IntegerLiteral number;
  number.coded = true;
  unsigned count = 0;
  for (;;) {
    const std::size_t comma = text.find(',');
    const std::optional<IntegerLiteral> byte = parse_integer(text.substr(0, comma));
    if (!byte || byte->negative || byte->magnitude > 0xFF || ++count > 8) return std::nullopt;
    number.magnitude = number.magnitude << 8U | byte->magnitude;
    if (comma == std::string_view::npos) return number;
    text.remove_prefix(comma + 1);
  }
}

std::optional<char32_t> short_escape(char c) {
  switch (c) {
    case '$':
    case '\'':
    case '"':
      return static_cast<char32_t>(c);
    case 'L':
    case 'l':
      return U'\n';
    case 'P':
    case 'p':
      return U'\f';
    case 'R':
    case 'r':
      return U'\r';
    case 'T':
    case 't':
      return U'\t';
    default:
      return std::nullopt;
  }
}

// Takes what follows a '$' off the text's front.
bool take_escape(std::string_view& text, bool wide, std::vector<char32_t>& characters) {
  if (text.empty()) return false;
  const auto hexadecimal = [&text](std::size_t count) {
    return text.size() < count ? std::nullopt : digits(text.substr(0, count), 16);
  };
  const std::optional<std::uint64_t> unit = wide ? hexadecimal(4) : std::nullopt;
  const std::optional<std::uint64_t> code = hexadecimal(2);
  if (unit) {
    characters.push_back(static_cast<char32_t>(*unit));
    text.remove_prefix(4);
  } else if (code) {
    characters.push_back(wide ? static_cast<char32_t>(*code)
                              : from_code_page(static_cast<std::uint8_t>(*code)));
    text.remove_prefix(2);
  } else if (text.front() == 'N' || text.front() == 'n') {
    characters.insert(characters.end(), {U'\r', U'\n'});
    text.remove_prefix(1);
  } else if (const auto escape = short_escape(text.front())) {
    characters.push_back(*escape);
    text.remove_prefix(1);
  } else {
    return false;
  }
  return true;
}

// Two $-codes may be the halves of one character; a half alone is none.
std::optional<std::string> join_halves(const std::vector<char32_t>& characters) {
  std::string text;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    char32_t character = characters[i];
    if (character >= 0xD800 && character <= 0xDFFF) {
      const char32_t low = i + 1 < characters.size() ? characters[i + 1] : 0;
      if (character >= 0xDC00 || low < 0xDC00 || low > 0xDFFF) return std::nullopt;
      character = 0x10000 + ((character - 0xD800) << 10U) + (low - 0xDC00);
      ++i;
    }
    append_utf8(text, character);
  }
  return text;
}

std::string does_not_fit(std::string_view literal, DataType type) {
  return fmt::format("{} is no value of the type {}", quoted_piece(literal), type_row(type).name);
}

std::optional<std::string> bool_from_literal(std::string_view literal, MutableBytes element) {
  const std::string_view word = after_prefix(literal, {"BOOL#"}).value_or(literal);
  const bool on = equal_names(word, "TRUE") || word == "1";
  if (!on && !equal_names(word, "FALSE") && word != "0") return does_not_fit(literal, DataType::Bool);
  element[0] = on ? 1 : 0;
  return std::nullopt;
}

std::optional<std::string> number_from_literal(DataType type, std::string_view literal,
                                               MutableBytes element) {
  const bool is_signed = type_row(type).family == TypeFamily::Signed;
  if (after_prefix(literal, {"C#"}) && element.size() == 2) {
    return time_from_literal(DataType::Counter, literal, element);
  }
  if (after_prefix(literal, {"S5T#", "S5TIME#"}) && element.size() == 2) {
    return time_from_literal(DataType::S5Time, literal, element);
  }
  const std::optional<IntegerLiteral> number = parse_integer(literal);
  if (!number) return does_not_fit(literal, type);
  // A bit string may be given as a negative number: what counts is its bits.
  const bool bits = type_row(type).family == TypeFamily::BitString && number->negative;
  if (!store_integer(*number, is_signed || bits, element)) {
    return fmt::format("{} is out of the range of the type {}", quoted_piece(literal), type_row(type).name);
  }
  return std::nullopt;
}

std::optional<std::string> real_from_literal(DataType type, std::string_view literal, MutableBytes element) {
  const std::optional<double> number = parse_real(literal);
  if (!number) return does_not_fit(literal, type);
  const bool fits = type == DataType::LReal ? std::isfinite(*number)
                                            : std::abs(*number) <= double{std::numeric_limits<float>::max()};
  if (!fits)
    return fmt::format("{} is out of the range of the type {}", quoted_piece(literal), type_row(type).name);
  if (type == DataType::LReal) {
    store_lreal(element, *number);
  } else {
    store_real(element, static_cast<float>(*number));
  }
  return std::nullopt;
}

std::optional<std::string> text_from_literal(const Symbol& symbol, std::string_view literal,
                                             MutableBytes element) {
  const bool wide = symbol.type == DataType::WChar || symbol.type == DataType::WString;
  const bool single = symbol.type == DataType::Char || symbol.type == DataType::WChar;
  const std::optional<std::string> text = parse_text(literal, wide);
  if (!text && single) {
    const std::optional<IntegerLiteral> code = parse_integer(literal);
    if (code && store_integer(*code, false, element)) return std::nullopt;
  }
  if (!text) return does_not_fit(literal, symbol.type);
  if (symbol.type == DataType::String && store_string(element, *text)) return std::nullopt;
  if (symbol.type == DataType::WString && store_wstring(element, *text)) return std::nullopt;
  if (single) {
    std::string_view rest = *text;
    const std::optional<char32_t> character = take_character(rest);
    const std::optional<std::uint8_t> code = character ? to_code_page(*character) : std::nullopt;
    if (character && rest.empty() && (wide ? *character < 0x10000 : code.has_value())) {
      store_number(element, wide ? *character : std::uint64_t{*code});
      return std::nullopt;
    }
    return does_not_fit(literal, symbol.type);
  }
  return fmt::format("{} has more than {} characters, or characters that the type {} does not have",
                     quoted_piece(literal), symbol.string_length, type_row(symbol.type).name);
}

}  // namespace

std::optional<std::string_view> after_prefix(std::string_view literal,
                                             std::initializer_list<std::string_view> prefixes) {
  for (const std::string_view prefix : prefixes) {
    if (literal.size() >= prefix.size() && equal_names(literal.substr(0, prefix.size()), prefix)) {
      return literal.substr(prefix.size());
    }
  }
  return std::nullopt;
}

std::optional<IntegerLiteral> parse_integer(std::string_view literal) {
  literal = trimmed(literal);
  if (const auto typed =
          after_prefix(literal, {"BYTE#", "WORD#", "DWORD#", "LWORD#", "SINT#", "INT#", "DINT#", "LINT#",
                                 "USINT#", "UINT#", "UDINT#", "ULINT#", "B#", "W#", "DW#", "LW#", "L#"})) {
    literal = trimmed(*typed);
    if (literal.starts_with('(')) return parse_bytes(literal);
  }
  const std::string text = compact(literal);
  std::string_view rest = text;
  IntegerLiteral number;
  number.negative = rest.starts_with('-');
  if (number.negative || rest.starts_with('+')) rest.remove_prefix(1);
  int base = 10;
  if (const std::size_t mark = rest.find('#'); mark != std::string_view::npos) {
    const std::string_view written = rest.substr(0, mark);
    if (written != "2" && written != "8" && written != "16") return std::nullopt;
    base = written == "2" ? 2 : written == "8" ? 8 : 16;
    number.coded = true;
    rest.remove_prefix(mark + 1);
  }
  const std::optional<std::uint64_t> magnitude = digits(rest, base);
  if (!magnitude) return std::nullopt;
  number.magnitude = *magnitude;
  return number;
}

std::optional<std::int64_t> integer_from_literal(std::string_view literal) {
  const std::optional<IntegerLiteral> number = parse_integer(literal);
  if (!number || number->magnitude > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
    return std::nullopt;
  const auto magnitude = static_cast<std::int64_t>(number->magnitude);
  return number->negative ? -magnitude : magnitude;
}

bool store_integer(const IntegerLiteral& number, bool is_signed, MutableBytes element) {
  const unsigned bits = static_cast<unsigned>(std::min<std::size_t>(element.size(), 8)) * 8;
  if (bits == 0) return false;
  const std::uint64_t all = bits == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
  const std::uint64_t sign = std::uint64_t{1} << (bits - 1);
  std::uint64_t limit = is_signed && !number.coded ? sign - 1 : all;
  if (number.negative) limit = is_signed ? sign : 0;
  if (number.magnitude > limit) return false;
  store_number(element, number.negative ? ~number.magnitude + 1 : number.magnitude);
  return true;
}

std::optional<double> parse_real(std::string_view literal) {
  literal = trimmed(literal);
  literal = after_prefix(literal, {"REAL#", "LREAL#"}).value_or(literal);
  const std::string text = compact(literal);
  std::string_view rest = text;
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);
  // from_chars also knows "inf" and "nan", which the PLC's languages do not.
  if (rest.empty() || rest.front() < '0' || rest.front() > '9') return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  if (end == rest.data() + rest.size()) {
    // Out of range is too large or too small for 64 bits: the sign of the exponent tells.
    if (error == std::errc::result_out_of_range) {
      value = rest.find("e-") != std::string_view::npos || rest.find("E-") != std::string_view::npos
                  ? 0.0
                  : std::numeric_limits<double>::infinity();
    } else if (error != std::errc{}) {
      return std::nullopt;
    }
    return negative ? -value : value;
  }
  const std::optional<IntegerLiteral> number = parse_integer(literal);
  if (!number) return std::nullopt;
  const auto magnitude = static_cast<double>(number->magnitude);
  return number->negative ? -magnitude : magnitude;
}

std::optional<std::string> parse_text(std::string_view literal, bool wide) {
  literal = trimmed(literal);
  literal = after_prefix(literal, {"STRING#", "WSTRING#", "CHAR#", "WCHAR#"}).value_or(literal);
  if (literal.size() < 2 || literal.front() != '\'' || literal.back() != '\'') return std::nullopt;
  std::string_view rest = literal.substr(1, literal.size() - 2);
  std::vector<char32_t> characters;
  while (!rest.empty()) {
    const std::optional<char32_t> character = take_character(rest);
    if (!character || *character == '\'') return std::nullopt;
    if (*character != '$') {
      characters.push_back(*character);
    } else if (!take_escape(rest, wide, characters)) {
      return std::nullopt;
    }
  }
  return join_halves(characters);
}

std::optional<std::string> element_from_literal(const Symbol& symbol, std::string_view literal,
                                                MutableBytes element) {
  literal = trimmed(literal);
  if (element.size() < symbol.element_size || symbol.element_size == 0) {
    return fmt::format("the type {} takes no literal", type_row(symbol.type).name);
  }
  element = element.first(symbol.element_size);
  switch (type_row(symbol.type).family) {
    case TypeFamily::Bool:
      return bool_from_literal(literal, element);
    case TypeFamily::BitString:
    case TypeFamily::Signed:
    case TypeFamily::Unsigned:
      return number_from_literal(symbol.type, literal, element);
    case TypeFamily::Real:
      return real_from_literal(symbol.type, literal, element);
    case TypeFamily::Text:
      return text_from_literal(symbol, literal, element);
    case TypeFamily::Time:
    case TypeFamily::Date:
    case TypeFamily::Bcd:
      return time_from_literal(symbol.type, literal, element);
    case TypeFamily::Other:
      break;
  }
  return fmt::format("the type {} takes no literal", type_row(symbol.type).name);
}

}  // namespace ostravel::plc
