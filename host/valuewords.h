// SPDX-License-Identifier: MIT
// Values and the 16-bit host words in which they travel.
//
//   BOOL, BitArray         a word: 0 is false, anything else true
//   BYTE, USINT, SINT      the low byte of a word (SINT: sign-extended)
//   16, 32, 64 bits        one, two, four words, low word first
//   text, word-aligned     a character a word (bytes from 0x80 on arrive sign-extended); ends at a zero word
//   text, char-paired      two characters a word, low byte first; ends at a zero byte
//   wide text              one UTF-16 unit a word, in either layout
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/tagtype.h"

namespace ostravel::host {

using Words = std::vector<std::uint16_t>;

// One element that is no text: true or false, a number; "inf", "-inf" and "nan" for reals that JSON lacks.
// Words that are missing count as 0.
nlohmann::json element_from_words(const TagType& type, std::span<const std::uint16_t> words);

// The words of one element, as many as the type has. Takes true and false also as 1 and 0, numbers also as
// text ("-5", "16#FF", "1e3"). Throws UserError for what the type cannot hold.
Words element_to_words(const TagType& type, const nlohmann::json& value);

// How the words of a text are to be read and written.
enum class TextLayout : std::uint8_t {
  WordAligned,
  CharPaired,
  WideUnits,  // a UTF-16 unit a word
  WideBytes,  // a byte of a UTF-16 unit a word: what the driver makes of a wide text it does not recognise
};

// Word-aligned words are read as UTF-16 where they cannot be sign-extended bytes, so that a wide text is
// shown as what it is even if the tag does not say that it is wide.
std::string text_from_words(TextLayout layout, std::span<const std::uint16_t> words);

// At most limit characters, else UserError. A text with characters beyond code page 1252 becomes UTF-16.
Words text_to_words(TextLayout layout, std::string_view text, std::size_t limit);

}  // namespace ostravel::host
