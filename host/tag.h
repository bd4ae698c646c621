// SPDX-License-Identifier: MIT
// A tag as this host knows it: what the driver's tag table says of it, and what a runtime must know to ask
// for its value.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/tagtype.h"

namespace ostravel::host {

// Bounds of a tag's numbers, both included. A lower bound below 0 can be declared in a PLC, and travels as
// the 16-bit number that it is.
inline constexpr std::int32_t kFirstLowest = -32768;
inline constexpr std::int32_t kFirstHighest = 65534;

// The declared length with which the driver recognises a wide text.
inline constexpr std::uint16_t kWideDeclaredLength = 254;

struct Tag {
  std::string name;  // symbolic path in the PLC
  const TagType* type = nullptr;
  std::uint16_t count = 1;            // elements; of a text the declared characters
  std::optional<std::int32_t> first;  // index of the first element; none: no array index applies
  std::uint16_t elements = 1;         // texts of an array of texts
  std::uint8_t device = 1;
  std::uint32_t id = 0;

  bool is_array() const { return first.has_value(); }
  // Index of the last element of an array.
  int last() const { return first.value_or(0) + (type->is_text() ? elements : count) - 1; }
  bool operator==(const Tag&) const = default;
};

// What a tag consists of, in the order of the columns of a list of tags.
enum class TagField : std::uint8_t { Name, Type, Count, First, Elements, Device, Id };
inline constexpr std::size_t kTagFields = 7;
inline constexpr std::array<std::string_view, kTagFields> kTagFieldNames{
    "name", "type", "count", "first", "elements", "device", "id"};

constexpr std::string_view field_name(TagField field) {
  return kTagFieldNames[static_cast<std::size_t>(field)];
}

// The field as a list of tags has it; empty for the first index of a tag that is no array.
std::string field_text(const Tag& tag, TagField field);

// Words that the tag's value, or one text of it, takes in a record of the runtime.
std::uint32_t words_of(const Tag& tag, bool char_paired);

struct TagFault {
  TagField field;  // to be changed
  std::string text;
};

// All that keeps a tag from being used ("3000 x DINT needs 6000 words ...").
std::vector<TagFault> tag_faults(const Tag& tag, bool char_paired);

// The first of them; empty when there is none.
std::string tag_fault(const Tag& tag, bool char_paired);

}  // namespace ostravel::host
