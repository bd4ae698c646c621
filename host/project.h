// SPDX-License-Identifier: MIT
// The project file of this host: what a runtime knows about its tags, and in the middle of it the tag table
// that the driver reads by itself (driver/tagtable.h has its grammar).
//
//   file     = magic:"OSTRAVEL" format:u32 table_position:u32 settings_position:u32
//   table    = mark:"TAGLIST" tag-table-section        at table_position; the driver skips the 7 bytes
//   settings = setting{number of tags}                 at settings_position
//   setting  = type:u8 wide:u8 count:u16 first:i32 elements:u16      first = -2^31: no array
//
// All numbers are little-endian.
#pragma once

#include <cstdint>
#include <filesystem>
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
};

struct Project {
  std::vector<Tag> tags;
  bool char_paired = false;             // texts travel two characters a host word
  std::optional<std::string> password;  // of the PLC
};

// Words that the tag's value, or one text of it, takes in a record of the runtime.
std::uint32_t words_of(const Tag& tag, bool char_paired);

// What keeps a tag from being used ("count 3000 needs 6000 words ..."); empty when nothing does.
std::string tag_fault(const Tag& tag, bool char_paired);

std::string encode_project(const Project& project);

struct ProjectFile {
  Project project;
  std::uint32_t table_position = 0;  // as KORVALE_DRV_StartDeviceEx wants it
};

// Both throw UserError; source names the file in its text.
ProjectFile decode_project(std::string_view bytes, const std::string& source);
ProjectFile load_project(const std::filesystem::path& path);

}  // namespace ostravel::host
