// SPDX-License-Identifier: MIT
// Characters: UTF-8, the PLC's 8-bit code page and 16-bit units, and names that compare without case.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostravel::plc {

// The next character of a UTF-8 text, removed from its front. Nothing when the text is empty or does not
// start with a valid sequence (too long forms, surrogates and codes above 10FFFF are not valid); then nothing
// is removed.
std::optional<char32_t> take_character(std::string_view& text);
bool is_utf8(std::string_view text);
void append_utf8(std::string& text, char32_t character);

// Code page 1252, whose five free codes stand for the control characters of the same number.
char32_t from_code_page(std::uint8_t code);
std::optional<std::uint8_t> to_code_page(char32_t character);
std::string utf8_from_code_page(std::string_view bytes);

// Small letter of a letter of the Latin, Greek and Cyrillic alphabets; everything else unchanged.
char32_t fold_case(char32_t character);
// A name in the form in which names are compared.
std::string folded(std::string_view name);
bool equal_names(std::string_view a, std::string_view b);

// What may stand in a name without quotes.
bool starts_identifier(char32_t character);
bool continues_identifier(char32_t character);
bool is_plain_identifier(std::string_view name);

// Blanks at both ends removed.
std::string_view trimmed(std::string_view text);

}  // namespace ostravel::plc
