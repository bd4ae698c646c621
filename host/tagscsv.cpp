// SPDX-License-Identifier: MIT
#include "host/tagscsv.h"

#include <fmt/format.h>
#include <strings.h>

#include <array>
#include <charconv>
#include <limits>

#include "host/csv.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

enum Column : std::size_t { kName, kType, kCount, kFirst, kElements, kDevice, kId, kColumns };
constexpr std::array<std::string_view, kColumns> kColumnNames{"name",     "type",   "count", "first",
                                                              "elements", "device", "id"};
constexpr std::string_view kPasswordSetting = "password:";
constexpr std::string_view kStringsSetting = "strings:";

std::string_view trimmed(std::string_view text) {
  const auto begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

class TagsReader {
 public:
  TagsReader(std::string_view text, const std::string& source)
      : source_(source), table_(parse_csv(text, source)) {}

  Project read() {
    for (const auto& comment : table_.comments) {
      read_setting(trimmed(comment));
    }
    if (table_.rows.empty()) {
      throw UserError(fmt::format(
          "{}: has no header line; begin it with: name,type,count,first,elements,device,id", source_));
    }
    read_header(table_.rows.front());
    for (std::size_t i = 1; i < table_.rows.size(); ++i) {
      project_.tags.push_back(read_tag(table_.rows[i]));
    }
    return std::move(project_);
  }

 private:
  [[noreturn]] void fail(const CsvField& field, const std::string& what) const {
    throw UserError(fmt::format("{}:{}:{}: {}", source_, field.line, field.column, what));
  }

  // Any other comment is one.
  void read_setting(std::string_view comment) {
    if (comment.starts_with(kPasswordSetting)) {
      project_.password = trimmed(comment.substr(kPasswordSetting.size()));
    } else if (comment.starts_with(kStringsSetting)) {
      const auto value = trimmed(comment.substr(kStringsSetting.size()));
      if (value != "char-paired" && value != "word-aligned") {
        throw UserError(
            fmt::format("{}: strings '{}' is not known; write char-paired or word-aligned", source_, value));
      }
      project_.char_paired = value == "char-paired";
    }
  }

  void read_header(const CsvRow& header) {
    position_.fill(header.size());
    for (std::size_t i = 0; i < header.size(); ++i) {
      const auto name = trimmed(header[i].text);
      std::size_t column = 0;
      while (column < kColumns && !same(name, kColumnNames[column])) {
        ++column;
      }
      if (column == kColumns) {
        fail(header[i],
             fmt::format("column '{}' is not known; use name, type, count, first, elements, device, id",
                         name));
      }
      if (position_[column] != header.size()) {
        fail(header[i], fmt::format("column '{}' stands there twice; remove one", name));
      }
      position_[column] = i;
    }
    for (const Column needed : {kName, kType, kCount, kDevice, kId}) {
      if (position_[needed] == header.size()) {
        fail(header.front(),
             fmt::format("column '{}' is missing from the header line; add it", kColumnNames[needed]));
      }
    }
    width_ = header.size();
  }

  static bool same(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
  }

  Tag read_tag(const CsvRow& row) const {
    if (row.size() != width_) {
      fail(row.back(), fmt::format("{} fields, and the header line has {}; put names with commas in quotes",
                                   row.size(), width_));
    }
    Tag tag;
    tag.name = row[position_[kName]].text;
    if (tag.name.empty() || tag.name.size() > std::numeric_limits<std::uint16_t>::max()) {
      fail(row[position_[kName]], "the name must have 1 to 65535 bytes");
    }
    if (tag.name.find('\0') != std::string::npos) {
      fail(row[position_[kName]], "the name holds a NUL, which would end it for the driver; remove it");
    }
    const auto& type = row[position_[kType]];
    tag.type = find_tag_type(trimmed(type.text));
    if (tag.type == nullptr) {
      fail(type, fmt::format("type '{}' is not known; use one of {}", type.text, tag_type_names()));
    }
    tag.count = static_cast<std::uint16_t>(number(row, kCount, 1, 65535));
    if (position_[kFirst] != width_ && !trimmed(row[position_[kFirst]].text).empty()) {
      tag.first = static_cast<std::int32_t>(number(row, kFirst, kFirstLowest, kFirstHighest));
    }
    if (position_[kElements] != width_ && !trimmed(row[position_[kElements]].text).empty()) {
      tag.elements = static_cast<std::uint16_t>(number(row, kElements, 1, 65535));
    }
    tag.device = static_cast<std::uint8_t>(number(row, kDevice, 0, 255));
    tag.id = static_cast<std::uint32_t>(number(row, kId, 0, std::numeric_limits<std::uint32_t>::max()));
    if (const auto fault = tag_fault(tag, project_.char_paired); !fault.empty()) {
      fail(row[position_[kCount]], fault);
    }
    return tag;
  }

  std::int64_t number(const CsvRow& row, Column column, std::int64_t lowest, std::int64_t highest) const {
    const auto& field = row[position_[column]];
    const auto text = trimmed(field.text);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < lowest || value > highest) {
      fail(field, fmt::format("{} '{}' is no whole number from {} to {}", kColumnNames[column], field.text,
                              lowest, highest));
    }
    return value;
  }

  const std::string& source_;
  CsvTable table_;
  Project project_;
  std::array<std::size_t, kColumns> position_{};
  std::size_t width_ = 0;
};

}  // namespace

Project project_from_csv(std::string_view text, const std::string& source) {
  return TagsReader(text, source).read();
}

std::string project_to_csv(const Project& project) {
  std::string text;
  if (project.password) {
    text += fmt::format("# password: {}\n", *project.password);
  }
  if (project.char_paired) {
    text += "# strings: char-paired\n";
  }
  text += "name,type,count,first,elements,device,id\n";
  for (const auto& tag : project.tags) {
    text += fmt::format("{},{},{},{},{},{},{}\n", csv_field(tag.name), tag.type->name, tag.count,
                        tag.first ? std::to_string(*tag.first) : "", tag.elements, tag.device, tag.id);
  }
  return text;
}

}  // namespace ostravel::host
