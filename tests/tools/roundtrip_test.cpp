// SPDX-License-Identifier: MIT
// Lists in all the dialects that are read, made at random: each says what it was made to say, and comes back
// out of a project file byte for byte. OSTRAVEL_SEED repeats a run, or makes another one.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iostream>
#include <random>

#include "host/tagscsv.h"

namespace ostravel::tags {
namespace {

using namespace host;

class RandomList {
 public:
  explicit RandomList(unsigned seed) : random_(seed) {
    separator_ = one_of({",", ";", "\t"}).front();
    line_end_ = one_of({"\n", "\r\n", "\r"});
    mixed_ends_ = chance(10);
    padded_ = chance(30);
    columns_ = {"name", "type", "count", "device", "id"};
    for (const auto* column : {"first", "elements", "note", "", "more, and; more"}) {
      if (chance(50)) {
        columns_.emplace_back(column);
      }
    }
    std::shuffle(columns_.begin(), columns_.end(), random_);
    if (chance(30)) {
      text_ = "\xEF\xBB\xBF";
    }
    if (chance(20)) {
      line(std::string("sep=") + separator_);
    }
    write_head();
    const int tags = number(0, 8);
    for (int i = 0; i < tags; ++i) {
      fillers();
      write_tag();
    }
    fillers();
    if (chance(50)) {
      while (!text_.empty() && (text_.back() == '\n' || text_.back() == '\r')) {
        text_.pop_back();
      }
    }
  }

  const std::string& text() const { return text_; }
  const Project& project() const { return project_; }

 private:
  int number(int lowest, int highest) { return std::uniform_int_distribution(lowest, highest)(random_); }
  bool chance(int percent) { return number(1, 100) <= percent; }
  std::string one_of(const std::vector<std::string>& texts) {
    return texts[static_cast<std::size_t>(number(0, static_cast<int>(texts.size()) - 1))];
  }

  void line(const std::string& content) {
    text_ += content;
    text_ += mixed_ends_ ? one_of({"\n", "\r\n"}) : line_end_;
  }

  // What a spreadsheet appends to a line of one field.
  std::string padding() { return padded_ ? std::string(columns_.size() - 1, separator_) : std::string(); }

  void fillers() {
    while (chance(15)) {
      line(chance(50) ? padding() : "#" + one_of({"", " note", "\"quoted\"", "A,INT,1,1,1", " a;b\tc"}));
    }
  }

  std::string written(const std::string& value) {
    const bool needed = csv_field(value, separator_) != value;
    return needed || chance(20) ? '"' + doubled(value) + '"' : value;
  }

  static std::string doubled(const std::string& value) {
    std::string text;
    for (const char c : value) {
      text += c;
      if (c == '"') text += c;
    }
    return text;
  }

  std::string any_case(std::string text) {
    for (char& c : text) {
      if (chance(20)) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return text;
  }

  void write_head() {
    fillers();
    if (chance(30)) {
      project_.password = one_of({"secret", "", "a b", "x\"y", "p,q;r\ts"});
      const auto setting = "# password: " + *project_.password;
      line(chance(30) ? '"' + doubled(setting) + '"' + padding() : setting + padding());
    }
    fillers();
    if (chance(30)) {
      project_.char_paired = chance(50);
      line(std::string("#strings:  ") + (project_.char_paired ? "char-paired" : "word-aligned") + padding());
    }
    fillers();
    std::string header;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      header += (i == 0 ? "" : std::string(1, separator_)) + written(any_case(columns_[i]));
    }
    line(header);
  }

  bool has(const char* column) const {
    return std::find(columns_.begin(), columns_.end(), column) != columns_.end();
  }

  Tag random_tag() {
    Tag tag;
    tag.name =
        one_of({"A", "Plant.Motors[2].Speed", "\"Tank.1\".Level", "M[1,2]", " edge ", "\xC3\x84;b", "#x",
                "say \"so\"", "tab\there", "two\nlines", "two\r\nlines", "old\rline", "F\xFCll", "sep=;"});
    tag.type = find_tag_type(one_of({"INT", "REAL", "BitArray", "STRING", "WSTRING", "LREAL"}));
    tag.count = static_cast<std::uint16_t>(number(1, 254));
    if (has("first") && chance(50)) {
      tag.first = number(-100, 1000);
    }
    if (has("elements") && tag.first && tag.type->is_text()) {
      tag.elements = static_cast<std::uint16_t>(number(1, 50));
    }
    tag.device = static_cast<std::uint8_t>(number(0, 255));
    tag.id = static_cast<std::uint32_t>(number(0, 1'000'000'000));
    return tag;
  }

  std::string cell(const Tag& tag, const std::string& column) {
    for (std::size_t i = 0; i < kTagFields; ++i) {
      if (column != kTagFieldNames[i]) {
        continue;
      }
      const auto field = static_cast<TagField>(i);
      const auto text = field_text(tag, field);
      if (field == TagField::Elements && tag.elements == 1 && chance(50)) return written("");
      if (field == TagField::Count && chance(10)) return "0" + text;
      if (field == TagField::Type) return written(any_case(text));
      return field != TagField::Name && chance(10) ? " " + text + " " : written(text);
    }
    return written(one_of({"", "note", "a,b", "x;y", "\"", "line\nline"}));
  }

  void write_tag() {
    const auto tag = random_tag();
    std::string row;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      row += (i == 0 ? "" : std::string(1, separator_)) + cell(tag, columns_[i]);
    }
    line(row);
    project_.tags.push_back(tag);
  }

  std::mt19937 random_;
  char separator_ = ',';
  std::string line_end_;
  bool mixed_ends_ = false;
  bool padded_ = false;
  std::vector<std::string> columns_;
  std::string text_;
  Project project_;
};

unsigned seed_of_this_run() {
  const char* given = std::getenv("OSTRAVEL_SEED");
  return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : 20260301U;
}

TEST(RoundTrip, ListsOfEveryDialectSayWhatTheyWereMadeOfAndComeBackByteForByte) {
  const auto seed = seed_of_this_run();
  std::cout << "OSTRAVEL_SEED=" << seed << "\n";
  for (unsigned i = 0; i < 3000; ++i) {
    const RandomList list(seed + i);
    SCOPED_TRACE("OSTRAVEL_SEED=" + std::to_string(seed + i) + "\n" + list.text());
    const auto project = project_from_csv(list.text(), "t.csv");
    ASSERT_EQ(project, list.project());
    const auto file = decode_project(encode_with_list(project, {list.text(), std::nullopt}), "p");
    ASSERT_EQ(file.project, project);
    const auto own = list_of(file);
    ASSERT_EQ(own.list.text, list.text());
    ASSERT_FALSE(own.outdated);
    ASSERT_EQ(project_from_csv(project_to_csv(project), "normal form"), project);
  }
}

TEST(RoundTrip, SettingsGivenBesidesAreInTheListThatComesBack) {
  const auto seed = seed_of_this_run();
  for (unsigned i = 0; i < 500; ++i) {
    const RandomList list(seed + i);
    SCOPED_TRACE("OSTRAVEL_SEED=" + std::to_string(seed + i) + "\n" + list.text());
    auto project = list.project();
    project.password = "given";
    project.char_paired = true;
    const auto changed = with_settings({list.text(), std::nullopt}, project);
    ASSERT_EQ(project_from_csv(changed.text, "t.csv"), project);
  }
}

}  // namespace
}  // namespace ostravel::tags
