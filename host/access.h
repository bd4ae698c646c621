// SPDX-License-Identifier: MIT
// What a value of a tag means in requests of the runtime: which records to read and how they become one
// value, and which records write one.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/project.h"
#include "host/valuewords.h"

namespace ostravel::host {

// One record's worth of addressing: the content of a tag data block.
struct Access {
  std::uint32_t row = 0;
  BYTE type = 0;
  std::uint16_t array_index = kNoArrayIndex;
  std::uint16_t elements = 1;
  BYTE bit_selector = 0;
  std::uint16_t words = 1;  // that the runtime expects back
  bool operator==(const Access&) const = default;
};

// One write: words, or a bit when there are none.
struct WriteAccess {
  Access access;
  Words words;
  bool bit = false;
};

// A tag, one element of an array tag, or one bit of a tag.
struct Selection {
  std::string text;  // as the user wrote it
  std::uint32_t row = 0;
  Tag tag;                          // of an element: a tag of that element alone
  std::optional<std::uint8_t> bit;  // 0 to 31
};

// The rows of a project by name, for many look-ups. The project must outlive it and keep its tags.
class TagRows {
 public:
  explicit TagRows(const Project& project);
  std::optional<std::uint32_t> find(std::string_view name) const;

 private:
  std::unordered_map<std::string_view, std::uint32_t> rows_;
};

// By tag name, NAME[INDEX] for one element of an array tag, NAME.%X3 for bit 3. Throws UserError; find_tag
// gives nothing when the project has no tag of that name.
Selection select(const Project& project, std::string_view text);
std::optional<Selection> find_tag(const Project& project, const TagRows& rows, std::string_view text);
Selection select_row(const Project& project, std::uint32_t row);

// The records that read a selection: one, or one for each text of an array of texts.
std::vector<Access> read_accesses(const Selection& selection, bool char_paired);

// The value from the words of those records, in order.
nlohmann::json read_value(const Selection& selection, bool char_paired, std::span<const Words> records);

// The records that write a value. Throws UserError for a value that does not fit, and for one that the driver
// would not take over as it is. Binary JSON is the bytes of the whole tag, which must be as many.
//
// How an array is written follows from how the driver takes it: as a whole it starts at the array's first
// element whatever index is given, so an array with another lower bound than 0 is written element by element.
// So are unsigned 16-bit types, since a whole write of those leaves the first element with swapped bytes, and
// bits, of which a request carries one.
std::vector<WriteAccess> write_accesses(const Selection& selection, bool char_paired, bool offline,
                                        const nlohmann::json& value);

}  // namespace ostravel::host
