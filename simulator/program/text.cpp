// SPDX-License-Identifier: MIT
#include "simulator/program/text.h"

#include <algorithm>
#include <array>

namespace ostravel::plc {
namespace {

constexpr std::array<char16_t, 32> codes_from_80{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct Lead {
  std::size_t length;
  char32_t bits;
  char32_t smallest;
};

std::optional<Lead> lead_of(unsigned char byte) {
  if (byte < 0x80) return Lead{1, byte, 0};
  if (byte >= 0xC2 && byte <= 0xDF) return Lead{2, static_cast<char32_t>(byte & 0x1F), 0x80};
  if (byte >= 0xE0 && byte <= 0xEF) return Lead{3, static_cast<char32_t>(byte & 0x0F), 0x800};
  if (byte >= 0xF0 && byte <= 0xF4) return Lead{4, static_cast<char32_t>(byte & 0x07), 0x10000};
  return std::nullopt;
}

bool is_ascii_letter(char32_t c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

std::optional<char32_t> take_character(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const std::optional<Lead> lead = lead_of(static_cast<unsigned char>(text.front()));
  if (!lead || text.size() < lead->length) return std::nullopt;
  char32_t character = lead->bits;
  for (std::size_t i = 1; i < lead->length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80U) return std::nullopt;
    character = (character << 6U) | (byte & 0x3FU);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < lead->smallest || surrogate || character > 0x10FFFF) return std::nullopt;
  text.remove_prefix(lead->length);
  return character;
}

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    if (!take_character(text)) return false;
  }
  return true;
}

void append_utf8(std::string& text, char32_t character) {
  const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | (character >> 6U));
    put(0x80 | (character & 0x3FU));
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12U));
    put(0x80 | ((character >> 6U) & 0x3FU));
    put(0x80 | (character & 0x3FU));
  } else {
    put(0xF0 | (character >> 18U));
    put(0x80 | ((character >> 12U) & 0x3FU));
    put(0x80 | ((character >> 6U) & 0x3FU));
    put(0x80 | (character & 0x3FU));
  }
}

char32_t from_code_page(std::uint8_t code) {
  return code >= 0x80 && code < 0xA0 ? codes_from_80.at(code - 0x80U) : code;
}

std::optional<std::uint8_t> to_code_page(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
    return static_cast<std::uint8_t>(character);
  const auto* const found = std::find(codes_from_80.begin(), codes_from_80.end(), character);
  if (found == codes_from_80.end()) return std::nullopt;
  return static_cast<std::uint8_t>(0x80 + (found - codes_from_80.begin()));
}

std::string utf8_from_code_page(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) append_utf8(text, from_code_page(static_cast<std::uint8_t>(byte)));
  return text;
}

char32_t fold_case(char32_t c) {
  if (c >= 'A' && c <= 'Z') return c + 0x20;
  if (c < 0xC0) return c;
  if (c <= 0xDE && c != 0xD7) return c + 0x20;                     // Latin-1
  if (c == 0x178) return 0xFF;                                     // Y with two dots
  if (c == 0x130 || c == 0x131) return c;                          // dotted and dotless I
  if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) {  // odd: capital
    return (c & 1U) != 0 ? c + 1 : c;
  }
  if (c >= 0x100 && c <= 0x177 && c != 0x138) return c | 1U;    // even: capital
  if (c >= 0x391 && c <= 0x3A9 && c != 0x3A2) return c + 0x20;  // Greek
  if (c >= 0x410 && c <= 0x42F) return c + 0x20;                // Cyrillic
  if (c >= 0x400 && c <= 0x40F) return c + 0x50;
  return c;
}

std::string folded(std::string_view name) {
  std::string result;
  result.reserve(name.size());
  while (!name.empty()) {
    if (const std::optional<char32_t> character = take_character(name)) {
      append_utf8(result, fold_case(*character));
    } else {  // not UTF-8: compared byte by byte
      result.push_back(name.front());
      name.remove_prefix(1);
    }
  }
  return result;
}

bool equal_names(std::string_view a, std::string_view b) {
  const auto fold_ascii = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; };
  // Nearly all names are plain ASCII and differ early: no copies are made for them.
  for (std::size_t i = 0;; ++i) {
    if (i == a.size() || i == b.size()) return a.size() == b.size();
    if (static_cast<unsigned char>(a[i] | b[i]) >= 0x80) return folded(a.substr(i)) == folded(b.substr(i));
    if (fold_ascii(a[i]) != fold_ascii(b[i])) return false;
  }
}

// Everything beyond ASCII counts as a letter, but for the blank of typesetters, which looks like a blank.
bool starts_identifier(char32_t c) {
  return is_ascii_letter(c) || c == '_' || (c >= 0x80 && c != 0xA0);
}

bool continues_identifier(char32_t c) {
  return starts_identifier(c) || (c >= '0' && c <= '9');
}

bool is_plain_identifier(std::string_view name) {
  std::optional<char32_t> character = take_character(name);
  if (!character || !starts_identifier(*character)) return false;
  while (!name.empty()) {
    character = take_character(name);
    if (!character || !continues_identifier(*character)) return false;
  }
  return true;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n\f\v";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace ostravel::plc
