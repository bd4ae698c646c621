// SPDX-License-Identifier: MIT
// The project file of this host: what a runtime knows about its tags, and in the middle of it the tag table
// that the driver reads by itself (driver/tagtable.h has its grammar).
//
//   file     = magic:"OSTRAVEL" format:u32 table_position:u32 settings_position:u32 [list_position:u32]
//   table    = mark:"TAGLIST" tag-table-section        at table_position; the driver skips the 7 bytes
//   settings = setting{number of tags}                 at settings_position
//   setting  = type:u8 wide:u8 count:u16 first:i32 elements:u16      first = -2^31: no array
//   list     = mark:"CSVTEXT" separator:u8 size:u32 byte{size}       at list_position, up to the file's end
//
// All numbers are little-endian. A file has a list_position, which is to say that the table begins behind it,
// when the list that it was made of is not in the normal form; what is in that form is not stored twice.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/tag.h"

namespace ostravel::host {

// Bytes; the driver's table has a 16-bit number for them.
inline constexpr std::size_t kLongestPassword = 65535;

struct Project {
  std::vector<Tag> tags;
  bool char_paired = false;             // texts travel two characters a host word
  std::optional<std::string> password;  // of the PLC
  bool operator==(const Project&) const = default;
};

// The list of tags that a project was made of, byte for byte.
struct ListText {
  std::string text;
  std::optional<char> separator;  // that the text is to be read with; none: it shows by itself
  bool operator==(const ListText&) const = default;
};

// Throws UserError when the file would be larger than its numbers can say.
std::string encode_project(const Project& project, const std::optional<ListText>& list = std::nullopt);

struct ProjectFile {
  Project project;
  std::uint32_t table_position = 0;  // as KORVALE_DRV_StartDeviceEx wants it
  std::optional<ListText> list;
};

// Whether a tag that cannot be used (tag_faults) makes the file one that cannot be used either.
enum class TagFaults : std::uint8_t { Refuse, Keep };

// True for bytes that begin as a project file does.
bool is_project(std::string_view bytes);

// Both throw UserError; source names the file in its text.
ProjectFile decode_project(std::string_view bytes, const std::string& source,
                           TagFaults faults = TagFaults::Refuse);
ProjectFile load_project(const std::filesystem::path& path);

}  // namespace ostravel::host
