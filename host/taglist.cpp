// SPDX-License-Identifier: MIT
#include "host/taglist.h"

#include <fmt/format.h>
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace ostravel::host {
namespace {

constexpr std::string_view kSeparators = ",;\t";
constexpr std::string_view kSeparatorLine = "sep=";
constexpr std::string_view kPasswordSetting = "password:";
constexpr std::string_view kStringsSetting = "strings:";
constexpr std::string_view kColumns = "name, type, count, first, elements, device, id";

std::string_view trimmed(std::string_view text) {
  const auto begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

bool same(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

// The field that a column is for; kTagFields for another column.
std::size_t field_of(std::string_view column) {
  const auto* found = std::find_if(kTagFieldNames.begin(), kTagFieldNames.end(),
                                   [column](std::string_view name) { return same(name, column); });
  return static_cast<std::size_t>(found - kTagFieldNames.begin());
}

// Whatever separates.
bool is_blank(std::string_view line) {
  return line.find_first_not_of(",;\t \"") == std::string_view::npos;
}

// The end of a field in quotes that text begins with.
std::size_t end_of_quoted(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && (text[end] != '"' || text.substr(end, 2) == "\"\"")) {
    end += text[end] == '"' ? 2 : 1;
  }
  return std::min(end, text.size());
}

// The header line: the first that is no comment, not blank and not "sep=".
std::string_view header_line(std::string_view text) {
  while (!text.empty()) {
    const bool quoted_comment = text.starts_with("\"#");
    const auto end =
        std::min(text.find_first_of("\r\n", quoted_comment ? end_of_quoted(text) : 0), text.size());
    const auto line = text.substr(0, end);
    const bool other = quoted_comment || line.starts_with('#') ||
                       same(line.substr(0, kSeparatorLine.size()), kSeparatorLine);
    if (!other && !is_blank(line)) {
      return line;
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return {};
}

std::size_t columns_named(std::string_view header, char separator) {
  std::size_t known = 0;
  for (std::size_t begin = 0; begin <= header.size();) {
    const auto end = std::min(header.find(separator, begin), header.size());
    auto column = trimmed(header.substr(begin, end - begin));
    if (column.size() > 1 && column.front() == '"' && column.back() == '"') {
      column = trimmed(column.substr(1, column.size() - 2));
    }
    known += field_of(column) < kTagFields ? 1 : 0;
    begin = end + 1;
  }
  return known;
}

// The one with which the header line names most columns; of several the one that stands in it most often.
char find_separator(std::string_view text) {
  const auto header = header_line(text);
  const auto rank = [header](char separator) {
    return std::pair(columns_named(header, separator), std::count(header.begin(), header.end(), separator));
  };
  return *std::max_element(kSeparators.begin(), kSeparators.end(),
                           [&rank](char a, char b) { return rank(a) < rank(b); });
}

bool is_blank(const CsvRow& row) {
  return std::all_of(row.begin(), row.end(), [](const CsvField& field) { return field.text.empty(); });
}

}  // namespace

TagListReader::TagListReader(std::string_view text, const std::string& source, std::optional<char> separator,
                             Report report)
    : csv_(text, source), report_(std::move(report)) {
  separator_ = separator.value_or(find_separator(csv_.rest()));
  skip_separator_line(separator);
  csv_.set_separator(separator_);
  read_comments();
  header_position_ = text.size() - csv_.rest().size();
  width_ = read_header() ? fields_.size() : 0;
}

void TagListReader::report(Severity severity, Place place, std::string text) const {
  report_({severity, place, std::move(text)});
}

void TagListReader::fail(const CsvField& field, std::string text) const {
  report(Severity::Error, field.place(), std::move(text));
}

// A separator that was asked for stands above the one of this line.
void TagListReader::skip_separator_line(std::optional<char> wanted) {
  if (!same(csv_.rest().substr(0, kSeparatorLine.size()), kSeparatorLine)) {
    return;
  }
  const auto named = csv_.next_line().substr(kSeparatorLine.size());
  if (wanted) {
    return;
  }
  if (const auto separator = separator_from(named)) {
    separator_ = *separator;
  } else {
    report(Severity::Error, {1, kSeparatorLine.size() + 1},
           fmt::format("separator '{}' is not known; use a comma, a semicolon or a tab", named));
  }
}

// Also leaves out blank lines, so that the header line is next.
void TagListReader::read_comments() {
  while (!csv_.rest().empty()) {
    const auto rest = csv_.rest();
    const auto place = csv_.place();
    if (rest.starts_with('#')) {
      comments_.push_back({std::string(csv_.next_line().substr(1)), place, false});
    } else if (rest.starts_with("\"#")) {
      if (next_row()) {
        comments_.push_back({fields_.front().text.substr(1), place, true});
      }
    } else if (is_blank(rest.substr(0, rest.find_first_of("\r\n")))) {
      csv_.next_line();
    } else {
      return;
    }
  }
}

// The next row that can be taken apart.
bool TagListReader::next_row() {
  for (;;) {
    try {
      return csv_.next(fields_);
    } catch (const PlacedError& error) {
      report(Severity::Error, error.place, error.fault);
    }
  }
}

bool TagListReader::read_header() {
  if (!next_row()) {
    report(Severity::Error, {},
           "has no header line; begin it with: name,type,count,first,elements,device,id");
    return false;
  }
  // A spreadsheet gives each line as many fields as the widest one.
  const std::string padding(fields_.size() - 1, separator_);
  for (auto& comment : comments_) {
    if (!comment.quoted && !padding.empty() && comment.text.ends_with(padding)) {
      comment.text.resize(comment.text.size() - padding.size());
    }
    read_setting(comment);
  }
  columns_.fill(fields_.size());
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    read_column(i);
  }
  // With all columns there, others are meant to be.
  if (std::count(columns_.begin(), columns_.end(), fields_.size()) != 0) {
    for (const auto column : foreign_) {
      report(Severity::Warning, fields_[column].place(),
             fmt::format("column '{}' means nothing here; columns are {}", trimmed(fields_[column].text),
                         kColumns));
    }
  }
  bool complete = true;
  for (const auto needed :
       {TagField::Name, TagField::Type, TagField::Count, TagField::Device, TagField::Id}) {
    if (columns_[static_cast<std::size_t>(needed)] == fields_.size()) {
      fail(fields_.front(),
           fmt::format("column '{}' is missing from the header line; add it", field_name(needed)));
      complete = false;
    }
  }
  return complete;
}

void TagListReader::read_column(std::size_t column) {
  const auto& field = fields_[column];
  const auto name = trimmed(field.text);
  const auto which = field_of(name);
  if (which == kTagFields) {
    if (!name.empty()) {
      foreign_.push_back(column);
    }
  } else if (columns_[which] != fields_.size()) {
    fail(field, fmt::format("column '{}' stands there twice; remove one", name));
  } else {
    columns_[which] = column;
  }
}

// Any other comment is one.
void TagListReader::read_setting(const Comment& comment) {
  const auto text = trimmed(comment.text);
  if (text.starts_with(kPasswordSetting)) {
    std::string_view value = comment.text;
    value.remove_prefix(value.find(kPasswordSetting) + kPasswordSetting.size());
    if (comment.quoted) {
      value.remove_prefix(value.starts_with(' ') ? 1 : 0);
    } else {
      value = trimmed(value);
    }
    if (value.size() > kLongestPassword || value.find('\0') != std::string_view::npos) {
      report(Severity::Error, comment.place,
             fmt::format("the password must have at most {} bytes, none of them NUL", kLongestPassword));
      return;
    }
    settings_.password = value;
  } else if (text.starts_with(kStringsSetting)) {
    const auto value = trimmed(text.substr(kStringsSetting.size()));
    if (value != "char-paired" && value != "word-aligned") {
      report(Severity::Error, comment.place,
             fmt::format("strings '{}' is not known; write char-paired or word-aligned", value));
      return;
    }
    settings_.char_paired = value == "char-paired";
  }
}

const CsvField* TagListReader::field(TagField which) const {
  const auto column = columns_[static_cast<std::size_t>(which)];
  return column < fields_.size() ? &fields_[column] : nullptr;
}

bool TagListReader::next(TagRow& row) {
  if (width_ == 0) {
    return false;
  }
  do {
    while (csv_.rest().starts_with('#')) {
      const auto place = csv_.place();
      const auto text = trimmed(csv_.next_line().substr(1));
      if (text.starts_with(kPasswordSetting) || text.starts_with(kStringsSetting)) {
        report(Severity::Warning, place, "a setting below the header line counts for nothing; move it above");
      }
    }
    if (!next_row()) {
      return false;
    }
  } while (is_blank(fields_));

  row.tag = Tag();
  row.whole = fields_.size() == width_;
  for (std::size_t i = 0; i < kTagFields; ++i) {
    const auto* cell = field(static_cast<TagField>(i));
    row.places[i] = (cell != nullptr ? *cell : fields_.front()).place();
  }
  read_name(row);
  if (fields_.size() != width_) {
    fail(fields_.back(), fmt::format("{} fields, and the header line has {}; put names with a separator in "
                                     "them in quotes",
                                     fields_.size(), width_));
    return true;
  }
  read_type(row);
  read_number(row, TagField::Count, row.tag.count, 1, 65535);
  std::int32_t first = 0;
  if (const auto* cell = field(TagField::First); cell != nullptr && !trimmed(cell->text).empty()) {
    read_number(row, TagField::First, first, kFirstLowest, kFirstHighest);
    row.tag.first = first;
  }
  if (const auto* cell = field(TagField::Elements); cell != nullptr && !trimmed(cell->text).empty()) {
    read_number(row, TagField::Elements, row.tag.elements, 1, 65535);
  }
  read_number(row, TagField::Device, row.tag.device, 0, 255);
  read_number(row, TagField::Id, row.tag.id, 0, std::numeric_limits<std::uint32_t>::max());
  return true;
}

void TagListReader::read_name(TagRow& row) {
  const auto* cell = field(TagField::Name);
  if (cell == nullptr) {
    return;
  }
  row.quoted_name = cell->quoted;
  row.tag.name = cell->text;
  if (cell->text.empty() || cell->text.size() > std::numeric_limits<std::uint16_t>::max()) {
    row.whole = false;
    fail(*cell, "the name must have 1 to 65535 bytes");
  } else if (cell->text.find('\0') != std::string::npos) {
    row.whole = false;
    fail(*cell, "the name holds a NUL, which would end it for the driver; remove it");
  }
}

void TagListReader::read_type(TagRow& row) {
  const auto& cell = *field(TagField::Type);
  row.tag.type = find_tag_type(trimmed(cell.text));
  if (row.tag.type == nullptr) {
    row.whole = false;
    fail(cell, fmt::format("type '{}' is not known; use one of {}", cell.text, tag_type_names()));
  }
}

template <typename Number>
void TagListReader::read_number(TagRow& row, TagField which, Number& number, std::int64_t lowest,
                                std::int64_t highest) {
  const auto& cell = *field(which);
  const auto text = trimmed(cell.text);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < lowest || value > highest) {
    row.whole = false;
    fail(cell, fmt::format("{} '{}' is no whole number from {} to {}", field_name(which), cell.text, lowest,
                           highest));
    return;
  }
  number = static_cast<Number>(value);
}

std::optional<char> separator_from(std::string_view text) {
  if (text.size() == 1 && kSeparators.find(text.front()) != std::string_view::npos) {
    return text.front();
  }
  if (same(text, "comma")) {
    return ',';
  }
  if (same(text, "semicolon")) {
    return ';';
  }
  if (same(text, "tab")) {
    return '\t';
  }
  return std::nullopt;
}

std::string setting_lines(const Project& settings, std::string_view line_end) {
  std::string lines;
  if (settings.password) {
    const auto& password = *settings.password;
    // In quotes it survives whatever it begins and ends with.
    const bool plain =
        password.find_first_of("\r\n,;\"") == std::string::npos && trimmed(password) == password;
    const auto setting = fmt::format("# {} {}", kPasswordSetting, password);
    lines += fmt::format("{}{}", plain ? setting : csv_field(setting), line_end);
  }
  if (settings.char_paired) {
    lines += fmt::format("# {} char-paired{}", kStringsSetting, line_end);
  }
  return lines;
}

}  // namespace ostravel::host
