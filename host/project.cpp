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
constexpr std::string_view kListMark = "CSVTEXT";
// Length of the head without and with the position of a list.
constexpr std::uint32_t kShortHead = 20;
constexpr std::uint32_t kLongHead = 24;
// Positions have 32 bits, and the driver adds 7 to one; what a list says of itself fits into the rest.
constexpr std::size_t kLargestFile = 0xFFFFFF00;
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

void read_settings(Reader reader, Project& project, const std::string& source, TagFaults faults) {
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
    if (faults == TagFaults::Keep) {
      continue;
    }
    if (const auto fault = tag_fault(tag, project.char_paired); !fault.empty()) {
      throw UserError(
          fmt::format("{}:byte {}: tag {}: {}; pack the file again", source, position, tag.name, fault));
    }
  }
}

ListText read_list(Reader reader, const std::string& source) {
  const auto position = reader.position();
  if (reader.text(kListMark.size()) != kListMark) {
    throw UserError(
        fmt::format("{}:byte {}: no list of tags stands here; pack the file again", source, position));
  }
  ListText list;
  if (const auto separator = static_cast<char>(reader.number(1)); separator != '\0') {
    list.separator = separator;
  }
  list.text = reader.text(reader.number(4));
  return list;
}

}  // namespace

std::string encode_project(const Project& project, const std::optional<ListText>& list) {
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
  const auto head = list ? kLongHead : kShortHead;
  const auto settings_position = head + table.size();
  const auto list_position = settings_position + settings.size();
  if (list_position + (list ? list->text.size() : 0) > kLargestFile) {
    throw UserError("the project file would be larger than 4 GiB; make one for each device");
  }
  std::string file(kMagic);
  put(file, kFormat, 4);
  put(file, head, 4);
  put(file, static_cast<std::uint32_t>(settings_position), 4);
  if (list) {
    put(file, static_cast<std::uint32_t>(list_position), 4);
  }
  file += table;
  file += settings;
  if (list) {
    file += kListMark;
    file += list->separator.value_or('\0');
    put(file, static_cast<std::uint32_t>(list->text.size()), 4);
    file += list->text;
  }
  return file;
}

bool is_project(std::string_view bytes) {
  return bytes.starts_with(kMagic);
}

ProjectFile decode_project(std::string_view bytes, const std::string& source, TagFaults faults) {
  if (!is_project(bytes)) {
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
  read_settings(Reader(bytes, settings_position, source), file.project, source, faults);
  if (file.table_position >= kLongHead) {
    file.list = read_list(Reader(bytes, head.number(4), source), source);
  }
  return file;
}

ProjectFile load_project(const std::filesystem::path& path) {
  return decode_project(read_file(path), path.string());
}

}  // namespace ostravel::host
