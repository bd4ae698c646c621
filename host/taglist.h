// SPDX-License-Identifier: MIT
// A list of tags as comma-separated values, read row by row. The header line names the columns, in any order
// and letter case:  name,type,count,device,id  and, if wanted,  first,elements.  Other columns mean nothing.
//   A comma, semicolon or tab separates; which one, the header line shows, or "sep=;" as the first line.
//   Lines that begin with '#' are comments; those before the header may carry settings:
//     "# password: TEXT"  and  "# strings: char-paired".  In quotes, the text is taken as it stands.
//   Rows without any text are blank lines.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/csv.h"
#include "host/project.h"

namespace ostravel::host {

enum class Severity : std::uint8_t { Warning, Error };

struct Finding {
  Severity severity = Severity::Error;
  Place place;
  std::string text;
};

// One tag of a list. Fields that could not be understood have been reported and are as they were made.
struct TagRow {
  Tag tag;
  std::array<Place, kTagFields> places;  // of each field; of one that the list does not have, the row's
  bool quoted_name = false;              // in the list, which is no part of it
  bool whole = false;                    // every field was understood

  Place place(TagField field) const { return places[static_cast<std::size_t>(field)]; }
};

class TagListReader {
 public:
  using Report = std::function<void(const Finding&)>;

  // Reads up to the header line. What is wrong goes to report, which may throw; the source is named in
  // nothing but a PlacedError of a text that cannot be read at all. The text must outlive the reader. A
  // separator that is not given is found out.
  TagListReader(std::string_view text, const std::string& source, std::optional<char> separator,
                Report report);

  // False at the end, and at once when the header line cannot be used. A tag comes with name and places even
  // when it is not whole.
  bool next(TagRow& row);

  // The settings of the list; has no tags.
  const Project& settings() const { return settings_; }
  // Where the header line begins in the text.
  std::size_t header_position() const { return header_position_; }
  char separator() const { return separator_; }

 private:
  struct Comment {
    std::string text;
    Place place;
    bool quoted = false;
  };

  void report(Severity severity, Place place, std::string text) const;
  void fail(const CsvField& field, std::string text) const;
  bool next_row();
  void skip_separator_line(std::optional<char> wanted);
  void read_comments();
  bool read_header();
  void read_column(std::size_t column);
  void read_setting(const Comment& comment);
  const CsvField* field(TagField which) const;
  void read_name(TagRow& row);
  void read_type(TagRow& row);
  template <typename Number>
  void read_number(TagRow& row, TagField which, Number& number, std::int64_t lowest, std::int64_t highest);

  CsvReader csv_;
  Report report_;
  char separator_ = ',';
  CsvRow fields_;
  std::vector<Comment> comments_;
  Project settings_;
  std::size_t header_position_ = 0;
  std::array<std::size_t, kTagFields> columns_{};  // of each field; the row's width: the list lacks it
  std::vector<std::size_t> foreign_;               // columns that are for no field
  std::size_t width_ = 0;                          // 0: the header line cannot be used
};

// The separator in words; nothing for a text that names none. "comma", "semicolon" and "tab" or itself.
std::optional<char> separator_from(std::string_view text);

// Lines of settings as a list has them before its header, none for settings as they are without.
std::string setting_lines(const Project& settings, std::string_view line_end);

}  // namespace ostravel::host
