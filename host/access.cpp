// SPDX-License-Identifier: MIT
#include "host/access.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

constexpr std::string_view kBitMark = ".%X";

TextLayout text_layout(const Tag& tag, bool char_paired) {
  if (tag.type->kind == ValueKind::WideText) {
    return char_paired || tag.count == kWideDeclaredLength ? TextLayout::WideUnits : TextLayout::WideBytes;
  }
  return char_paired ? TextLayout::CharPaired : TextLayout::WordAligned;
}

// The index as it stands in a request: bounds below 0 travel as the 16-bit number that they are.
std::uint16_t request_index(const Tag& tag, int offset) {
  return tag.first ? static_cast<std::uint16_t>(*tag.first + offset) : kNoArrayIndex;
}

std::optional<int> parse_int(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return value;
}

// NAME[INDEX] of an array tag NAME; nothing when there is no such tag.
std::optional<Selection> select_element(const Project& project, const TagRows& rows, std::string_view text) {
  const auto bracket = text.rfind('[');
  if (bracket == std::string_view::npos || !text.ends_with(']')) {
    return std::nullopt;
  }
  const auto index = parse_int(text.substr(bracket + 1, text.size() - bracket - 2));
  const auto row = rows.find(text.substr(0, bracket));
  if (!index || !row || !project.tags[*row].is_array()) {
    return std::nullopt;
  }
  auto selection = select_row(project, *row);
  auto& tag = selection.tag;
  const int size = tag.type->is_text() ? tag.elements : tag.count;
  if (*index < *tag.first || *index >= *tag.first + size) {
    throw UserError(fmt::format("{}: the index must be {} to {}", text, *tag.first, *tag.first + size - 1));
  }
  tag.first = index;
  (tag.type->is_text() ? tag.elements : tag.count) = 1;
  return selection;
}

void use_bit(Selection& selection, std::string_view text) {
  const auto number = parse_int(text);
  const auto& type = *selection.tag.type;
  const bool has_bits =
      type.kind == ValueKind::Signed || type.kind == ValueKind::Unsigned || type.kind == ValueKind::Real;
  const int highest = std::min(type.bits, 32) - 1;
  if (!has_bits || !number || *number < 0 || *number > highest) {
    throw UserError(has_bits
                        ? fmt::format("{}: bits of {} are 0 to {}", selection.tag.name, type.name, highest)
                        : fmt::format("{}: {} has no bits to address", selection.tag.name, type.name));
  }
  selection.bit = static_cast<std::uint8_t>(*number);
}

// Whether the value stands alone, not in an array.
bool is_single(const Tag& tag) {
  return tag.type->is_text() ? tag.elements == 1 : tag.count == 1;
}

Access access_of(const Selection& selection, bool char_paired, int offset) {
  const auto& tag = selection.tag;
  Access access;
  access.row = selection.row;
  access.type = tag.type->code;
  access.array_index = request_index(tag, offset);
  access.words = static_cast<std::uint16_t>(words_of(tag, char_paired));
  access.elements = tag.type->is_text() ? access.words : tag.count;
  if (selection.bit) {
    access.bit_selector = static_cast<BYTE>(*selection.bit + 1);
    access.elements = 1;
    access.words = 1;
  }
  return access;
}

// Zero bytes end up nowhere on the way to a wide text, so that its characters shift.
void check_wide(const Words& words) {
  const auto half_empty = [](std::uint16_t word) { return (word & 0xFF) == 0 || word >> 8 == 0; };
  if (std::any_of(words.begin(), words.end(), half_empty)) {
    throw UserError("the driver cannot write this wide text: it drops the zero bytes of its characters");
  }
}

WriteAccess write_text(const Selection& selection, bool char_paired, bool offline, int offset,
                       const json& value) {
  const auto& tag = selection.tag;
  if (!value.is_string()) {
    throw UserError(fmt::format("{} is no text", value.dump(-1, ' ', false, json::error_handler_t::replace)));
  }
  const auto& text = value.get_ref<const std::string&>();
  WriteAccess write{access_of(selection, char_paired, offset), {}, false};
  if (tag.type->kind == ValueKind::WideText && !offline) {
    check_wide(text_to_words(TextLayout::WideUnits, text, tag.count));
  }
  write.words = text_to_words(text_layout(tag, char_paired), text, tag.count);
  const bool became_wide =
      tag.type->kind == ValueKind::Text &&
      std::any_of(write.words.begin(), write.words.end(), [](auto w) { return w > 0xFF; }) && !char_paired;
  if (became_wide && !offline) {
    check_wide(write.words);
  }
  write.words.resize(std::max<std::size_t>(write.words.size(), write.access.words));
  return write;
}

// The values of an array, one for each element.
const json& checked_array(const Selection& selection, const json& value) {
  const auto& tag = selection.tag;
  const std::size_t size = tag.type->is_text() ? tag.elements : tag.count;
  if (!value.is_array() || value.size() != size) {
    const auto given = value.is_array() ? fmt::format("{} are given", value.size()) : "one is given";
    throw UserError(fmt::format("takes an array of {} values, and {}", size, given));
  }
  return value;
}

WriteAccess write_element(const Selection& selection, int offset, const json& value) {
  const auto& tag = selection.tag;
  WriteAccess write;
  write.access.row = selection.row;
  write.access.type = tag.type->code;
  write.access.array_index = request_index(tag, offset);
  write.access.words = static_cast<std::uint16_t>(tag.type->words);
  auto words = element_to_words(*tag.type, value);
  if (tag.type->kind == ValueKind::Bool || tag.type->kind == ValueKind::Bit) {
    write.bit = words.front() != 0;
  } else {
    write.words = std::move(words);
  }
  return write;
}

// The driver takes a date and time in the bytes of its parts, two a word whatever the tag's type. In offline
// simulation there is none, and each element holds what it was given.
WriteAccess write_bytes(const Selection& selection, bool char_paired, bool offline,
                        const json::binary_t& bytes) {
  const auto& tag = selection.tag;
  const auto width = static_cast<std::size_t>(tag.type->bits) / 8;
  if (tag.type->is_text() || width * tag.count != bytes.size()) {
    throw UserError(fmt::format("{} bytes do not fit {} of {}", bytes.size(), tag.count, tag.type->name));
  }
  WriteAccess write{access_of(selection, char_paired, 0), {}, false};
  const std::size_t step = offline && width == 1 ? 1 : 2;
  for (std::size_t i = 0; i < bytes.size(); i += step) {
    const unsigned high = step == 2 && i + 1 < bytes.size() ? bytes[i + 1] : 0U;
    write.words.push_back(static_cast<std::uint16_t>(bytes[i] | high << 8));
  }
  return write;
}

bool element_by_element(const Tag& tag) {
  const auto& type = *tag.type;
  const bool is_bit = type.kind == ValueKind::Bool || type.kind == ValueKind::Bit;
  const bool swaps_first = type.kind == ValueKind::Unsigned && type.bits == 16;
  return is_bit || (tag.is_array() && (*tag.first != 0 || swaps_first));
}

}  // namespace

Selection select_row(const Project& project, std::uint32_t row) {
  const auto& tag = project.tags.at(row);
  return {tag.name, row, tag, std::nullopt};
}

TagRows::TagRows(const Project& project) {
  rows_.reserve(project.tags.size());
  // Of several tags of one name the first counts.
  for (std::uint32_t row = 0; row < project.tags.size(); ++row) {
    rows_.emplace(project.tags[row].name, row);
  }
}

std::optional<std::uint32_t> TagRows::find(std::string_view name) const {
  const auto found = rows_.find(name);
  return found == rows_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Selection> find_tag(const Project& project, const TagRows& rows, std::string_view text) {
  if (const auto row = rows.find(text)) {
    return select_row(project, *row);
  }
  const auto mark = text.rfind(kBitMark);
  auto name = text.substr(0, mark);
  std::optional<Selection> selection;
  if (const auto row = rows.find(name)) {
    selection = select_row(project, *row);
  } else {
    selection = select_element(project, rows, name);
  }
  if (!selection) {
    return std::nullopt;
  }
  if (mark != std::string_view::npos) {
    if (!is_single(selection->tag)) {
      throw UserError(fmt::format("{}: name one element of the array, as in {}[{}].%X0", text, name,
                                  selection->tag.first.value_or(0)));
    }
    use_bit(*selection, text.substr(mark + kBitMark.size()));
  }
  selection->text = text;
  return selection;
}

Selection select(const Project& project, std::string_view text) {
  auto selection = find_tag(project, TagRows(project), text);
  if (!selection) {
    throw UserError(
        fmt::format("{}: the project has no tag of that name; see: ostravel-tags dump PROJECT", text));
  }
  return *std::move(selection);
}

std::vector<Access> read_accesses(const Selection& selection, bool char_paired) {
  const int records = selection.tag.type->is_text() ? selection.tag.elements : 1;
  std::vector<Access> accesses;
  accesses.reserve(static_cast<std::size_t>(records));
  for (int i = 0; i < records; ++i) {
    accesses.push_back(access_of(selection, char_paired, i));
  }
  return accesses;
}

json read_value(const Selection& selection, bool char_paired, std::span<const Words> records) {
  const auto& tag = selection.tag;
  if (selection.bit) {
    return !records.front().empty() && records.front().front() != 0;
  }
  json values = json::array();
  if (tag.type->is_text()) {
    for (const auto& words : records) {
      values.push_back(text_from_words(text_layout(tag, char_paired), words));
    }
  } else {
    const std::span<const std::uint16_t> words = records.front();
    const auto width = static_cast<std::size_t>(tag.type->words);
    for (std::size_t i = 0; i < tag.count; ++i) {
      values.push_back(element_from_words(*tag.type, words.subspan(std::min(i * width, words.size()))));
    }
  }
  const bool element = selection.text != tag.name;
  return is_single(tag) && (element || !tag.is_array()) ? values.front() : values;
}

std::vector<WriteAccess> write_accesses(const Selection& selection, bool char_paired, bool offline,
                                        const json& value) {
  const auto& tag = selection.tag;
  if (selection.bit) {
    if (!offline) {
      throw UserError(
          fmt::format("{}: the driver writes single bits only of BOOL and BitArray", selection.text));
    }
    WriteAccess write{access_of(selection, char_paired, 0), {}, false};
    write.bit = element_to_words(*find_tag_type("BOOL"), value).front() != 0;
    return {write};
  }
  if (value.is_binary()) {
    return {write_bytes(selection, char_paired, offline, value.get_binary())};
  }
  const bool single = is_single(tag) && !(tag.is_array() && value.is_array());
  const json values = single ? json::array({value}) : checked_array(selection, value);
  std::vector<WriteAccess> writes;
  const bool alone = tag.type->is_text() || element_by_element(tag);
  WriteAccess whole{access_of(selection, char_paired, 0), {}, false};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int offset = static_cast<int>(i);
    try {
      if (tag.type->is_text()) {
        writes.push_back(write_text(selection, char_paired, offline, offset, values[i]));
      } else if (alone) {
        writes.push_back(write_element(selection, offset, values[i]));
      } else {
        const auto words = element_to_words(*tag.type, values[i]);
        whole.words.insert(whole.words.end(), words.begin(), words.end());
      }
    } catch (const UserError& error) {
      throw single ? error
                   : UserError(fmt::format("element {}: {}", tag.first.value_or(0) + offset, error.what()));
    }
  }
  return alone ? writes : std::vector<WriteAccess>{std::move(whole)};
}

}  // namespace ostravel::host
