// SPDX-License-Identifier: MIT
#include "host/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace ostravel::host {
namespace {

// Code page 1252 from 0x80 to 0x9F; everywhere else it is the same as Unicode.
constexpr std::array<char16_t, 32> kPage1252{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                             0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool is_high_surrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool is_low_surrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append_utf8(std::string& text, char32_t point) {
  const auto tail = [&text](char32_t bits) { text += static_cast<char>(0x80 | (bits & 0x3F)); };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += static_cast<char>(0xC0 | point >> 6);
    tail(point);
  } else if (point < 0x10000) {
    text += static_cast<char>(0xE0 | point >> 12);
    tail(point >> 6);
    tail(point);
  } else {
    text += static_cast<char>(0xF0 | point >> 18);
    tail(point >> 12);
    tail(point >> 6);
    tail(point);
  }
}

// Takes one character from the front; nothing when there is no valid one, overlong forms included.
std::optional<char32_t> take_point(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  text.remove_prefix(1);
  if (lead < 0x80) {
    return lead;
  }
  const int tails = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < static_cast<std::size_t>(tails)) {
    return std::nullopt;
  }
  char32_t point = lead & (0x3F >> tails);
  for (int i = 0; i < tails; ++i) {
    const auto tail = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if ((tail & 0xC0) != 0x80) {
      return std::nullopt;
    }
    point = point << 6 | (tail & 0x3F);
  }
  constexpr std::array<char32_t, 4> kLowest{0, 0x80, 0x800, 0x10000};
  const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
  if (point < kLowest[static_cast<std::size_t>(tails)] || point > 0x10FFFF || surrogate) {
    return std::nullopt;
  }
  return point;
}

bool is_harmless(char32_t point) {
  const bool control = point < 0x20 || (point >= 0x7F && point < 0xA0);
  const bool turns_direction = point == 0x200E || point == 0x200F || (point >= 0x202A && point <= 0x202E) ||
                               (point >= 0x2066 && point <= 0x2069);
  return !control && !turns_direction;
}

}  // namespace

std::optional<std::u16string> utf16_from_utf8(std::string_view text) {
  std::u16string units;
  while (!text.empty()) {
    const auto point = take_point(text);
    if (!point) {
      return std::nullopt;
    }
    if (*point < 0x10000) {
      units += static_cast<char16_t>(*point);
    } else {
      units += static_cast<char16_t>(0xD800 + ((*point - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((*point - 0x10000) & 0x3FF));
    }
  }
  return units;
}

std::string utf8_from_utf16(std::u16string_view units) {
  std::string text;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char32_t unit = units[i];
    if (is_high_surrogate(unit) && i + 1 < units.size() && is_low_surrogate(units[i + 1])) {
      append_utf8(text, 0x10000 + ((unit - 0xD800) << 10) + (units[i + 1] - 0xDC00U));
      ++i;
    } else {
      append_utf8(text, is_high_surrogate(unit) || is_low_surrogate(unit) ? 0xFFFD : unit);
    }
  }
  return text;
}

char16_t unit_from_byte(std::uint8_t byte) {
  return byte >= 0x80 && byte < 0xA0 ? kPage1252[byte - 0x80U] : byte;
}

std::optional<std::uint8_t> byte_from_unit(char16_t unit) {
  const auto* found = std::find(kPage1252.begin(), kPage1252.end(), unit);
  if (found != kPage1252.end()) {
    return static_cast<std::uint8_t>(0x80 + (found - kPage1252.begin()));
  }
  if (unit > 0xFF || (unit >= 0x80 && unit < 0xA0)) {
    return std::nullopt;
  }
  return static_cast<std::uint8_t>(unit);
}

std::string visible(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    auto rest = text;
    const auto point = take_point(rest);
    if (!point) {
      shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(text.front()));
      text.remove_prefix(1);
      continue;
    }
    if (is_harmless(*point)) {
      shown += text.substr(0, text.size() - rest.size());
    } else {
      shown += fmt::format("\\u{:04x}", static_cast<std::uint32_t>(*point));
    }
    text = rest;
  }
  return shown;
}

}  // namespace ostravel::host
