// SPDX-License-Identifier: MIT
// Text between this host, which has UTF-8, and the PLC, which has code page 1252 in a STRING and UTF-16 in a
// WSTRING.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::host {

// Nothing when the text is not valid UTF-8.
std::optional<std::u16string> utf16_from_utf8(std::string_view text);

// A surrogate without its partner becomes U+FFFD.
std::string utf8_from_utf16(std::u16string_view units);

// The character of a byte of code page 1252. The five bytes that the page leaves free stand for the control
// characters of the same number, so that every byte has one.
char16_t unit_from_byte(std::uint8_t byte);

// The opposite; nothing when the page does not have the character.
std::optional<std::uint8_t> byte_from_unit(char16_t unit);

// For lines that people read. Names and texts come from files and PLCs: a control character, which could
// steer the terminal or break the line, and a sign that turns the direction of writing are shown as \u001b, a
// byte that is no UTF-8 as \xff. Anything else stays as it is.
std::string visible(std::string_view text);

}  // namespace ostravel::host
