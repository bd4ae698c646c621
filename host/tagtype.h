// SPDX-License-Identifier: MIT
// The types that a tag can have, by the names of the driver's device table: code of the tag data block and
// host words of one element. WSTRING is a name of this host only: to the driver it is a STRING.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "driver/hostrecords.h"

namespace ostravel::host {

// How the words of one element become a value.
enum class ValueKind : std::uint8_t { Bool, Bit, Signed, Unsigned, Real, Text, WideText };

struct TagType {
  std::string_view name;
  DATA_TYPE code;
  int words;  // host words of one element; of a text: of one character
  int bits;   // of the value that those words carry
  ValueKind kind;

  bool is_text() const { return kind == ValueKind::Text || kind == ValueKind::WideText; }
};

std::span<const TagType> tag_types();

// By name, any letter case; null when there is none.
const TagType* find_tag_type(std::string_view name);

// By code and whether a text is wide; null when there is none.
const TagType* find_tag_type(BYTE code, bool wide);

// "BOOL, BitArray, ...", for messages.
std::string tag_type_names();

}  // namespace ostravel::host
