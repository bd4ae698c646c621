// SPDX-License-Identifier: MIT
#include "host/project.h"

#include <fmt/format.h>

#include <limits>

#include "host/files.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

constexpr std::string_view kMagic = "OSTRAVEL";
constexpr std::string_view kMark = "TAGLIST";
constexpr std::uint32_t kFormat = 1;
constexpr std::uint32_t kCharPaired = 1;
constexpr std::uint32_t kDescriptor = 2;
constexpr std::int32_t kNoFirst = std::numeric_limits<std::int32_t>::min();

void put(std::string& out, std::uint32_t number, int width) {
  for (int i = 0; i < width; ++i) {
    out += static_cast<char>(number >> (8 * i) & 0xFF);
  }
}

void put_text(std::string& out, std::string_view text) {
  put(out, static_cast<std::uint32_t>(text.size()), 2);
  out += text;
}

// Takes numbers and texts from the front of bytes; whatever is asked for beyond the end is a broken file.
class Reader {
 public:
  Reader(std::string_view bytes, std::size_t position, const std::string& source)
      : bytes_(bytes), position_(position), source_(source) {}

  std::uint32_t number(int width) {
    const auto part = text(static_cast<std::size_t>(width));
    std::uint32_t value = 0;
    for (int i = width; i-- > 0;) {
      value = value << 8 | static_cast<unsigned char>(part[static_cast<std::size_t>(i)]);
    }
    return value;
  }

  std::string_view text(std::size_t size) {
    if (position_ > bytes_.size() || bytes_.size() - position_ < size) {
      throw UserError(fmt::format("{}:byte {}: the project file ends early; pack it again with ostravel-tags",
                                  source_, bytes_.size()));
    }
    const auto part = bytes_.substr(position_, size);
    position_ += size;
    return part;
  }

  std::size_t position() const { return position_; }

 private:
  std::string_view bytes_;
  std::size_t position_;
  const std::string& source_;
};

void read_table(Reader reader, Project& project) {
  reader.text(kMark.size());
  const auto version = reader.number(4);
  const auto count = reader.number(4);
  for (std::uint32_t i = 0; i < count; ++i) {
    Tag tag;
    tag.name = reader.text(reader.number(2));
    tag.device = static_cast<std::uint8_t>(reader.number(1));
    tag.id = reader.number(4);
    reader.number(4);
    project.tags.push_back(std::move(tag));
  }
  project.char_paired = (version & kCharPaired) != 0;
  if ((version & kDescriptor) != 0) {
    reader.number(2);
    const bool enabled = reader.number(1) != 0;
    const auto password = reader.text(reader.number(2));
    if (enabled) {
      project.password = password;
    }
  }
}

void read_settings(Reader reader, Project& project, const std::string& source) {
  for (auto& tag : project.tags) {
    const auto position = reader.position();
    const auto code = static_cast<BYTE>(reader.number(1));
    const bool wide = reader.number(1) != 0;
    tag.type = find_tag_type(code, wide);
    if (tag.type == nullptr) {
      throw UserError(fmt::format("{}:byte {}: type code {} of tag {} is not known; pack the file again",
                                  source, position, code, tag.name));
    }
    tag.count = static_cast<std::uint16_t>(reader.number(2));
    const auto first = static_cast<std::int32_t>(reader.number(4));
    if (first != kNoFirst) {
      tag.first = first;
    }
    tag.elements = static_cast<std::uint16_t>(reader.number(2));
    if (const auto fault = tag_fault(tag, project.char_paired); !fault.empty()) {
      throw UserError(
          fmt::format("{}:byte {}: tag {}: {}; pack the file again", source, position, tag.name, fault));
    }
  }
}

}  // namespace

std::uint32_t words_of(const Tag& tag, bool char_paired) {
  const auto count = static_cast<std::uint32_t>(tag.count);
  if (tag.type->kind == ValueKind::Text && char_paired) {
    return (count + 1) / 2;
  }
  if (tag.type->kind == ValueKind::WideText && !char_paired && tag.count != kWideDeclaredLength) {
    return 2 * count;  // the driver does not see that it is wide and gives each byte a word of its own
  }
  return count * static_cast<std::uint32_t>(tag.type->words);
}

std::string tag_fault(const Tag& tag, bool char_paired) {
  if (tag.count == 0) {
    return "count must be at least 1";
  }
  if (const auto words = words_of(tag, char_paired); words > kRecordWords) {
    return fmt::format("{} x {} needs {} words, and a record holds {}; split the tag", tag.count,
                       tag.type->name, words, kRecordWords);
  }
  if (tag.elements == 0) {
    return "elements must be at least 1";
  }
  if (tag.elements > 1 && !(tag.type->is_text() && tag.is_array())) {
    return "elements belongs to arrays of texts; leave it 1, or give first";
  }
  if (tag.type->kind == ValueKind::Bool && (tag.count > 1 || tag.is_array())) {
    return "an array of Bool has the type BitArray; change the type";
  }
  if (!tag.first) {
    return {};
  }
  if (*tag.first < kFirstLowest || *tag.first > kFirstHighest) {
    return fmt::format("first must be {} to {}", kFirstLowest, kFirstHighest);
  }
  const int last = *tag.first + (tag.type->is_text() ? tag.elements : tag.count) - 1;
  if (last > kFirstHighest) {
    return fmt::format("the last index is {}, and the highest is {}", last, kFirstHighest);
  }
  return {};
}

std::string encode_project(const Project& project) {
  constexpr std::uint32_t kHead = 20;
  std::string table(kMark);
  put(table, (project.char_paired ? kCharPaired : 0) | (project.password ? kDescriptor : 0), 4);
  put(table, static_cast<std::uint32_t>(project.tags.size()), 4);
  std::string settings;
  for (const auto& tag : project.tags) {
    put_text(table, tag.name);
    put(table, tag.device, 1);
    put(table, tag.id, 4);
    put(table, 0, 4);
    put(settings, tag.type->code, 1);
    put(settings, tag.type->kind == ValueKind::WideText ? 1 : 0, 1);
    put(settings, tag.count, 2);
    put(settings, static_cast<std::uint32_t>(tag.first.value_or(kNoFirst)), 4);
    put(settings, tag.elements, 2);
  }
  if (project.password) {
    put(table, 0, 2);
    put(table, 1, 1);
    put_text(table, *project.password);
  }
  std::string file(kMagic);
  put(file, kFormat, 4);
  put(file, kHead, 4);
  put(file, kHead + static_cast<std::uint32_t>(table.size()), 4);
  return file + table + settings;
}

ProjectFile decode_project(std::string_view bytes, const std::string& source) {
  if (!bytes.starts_with(kMagic)) {
    throw UserError(
        fmt::format("{}: is no project file of this host; make one with: ostravel-tags pack TAGS.csv {}",
                    source, source));
  }
  Reader head(bytes, kMagic.size(), source);
  if (const auto format = head.number(4); format != kFormat) {
    throw UserError(
        fmt::format("{}: has format {}, and this host reads {}; pack it again", source, format, kFormat));
  }
  ProjectFile file;
  file.table_position = head.number(4);
  const auto settings_position = head.number(4);
  read_table(Reader(bytes, file.table_position, source), file.project);
  read_settings(Reader(bytes, settings_position, source), file.project, source);
  return file;
}

ProjectFile load_project(const std::filesystem::path& path) {
  return decode_project(read_file(path), path.string());
}

}  // namespace ostravel::host
