// SPDX-License-Identifier: MIT
#include "tools/pathcheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "host/text.h"

namespace ostravel::tags {
namespace {

using host::Severity;

// What the engineering tool lets a name and an array be.
constexpr std::size_t kLongestName = 128;
constexpr int kMostDimensions = 6;
constexpr std::string_view kPlaceholderEnd = "INDEX]";
constexpr std::string_view kBlanks = " \t";

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool in_name(char c) {
  return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool is_plain_name(std::string_view name) {
  return !name.empty() && !is_digit(name.front()) && std::all_of(name.begin(), name.end(), in_name);
}

class PathChecker {
 public:
  explicit PathChecker(std::string_view path) : path_(path) {}

  std::vector<PathFault> check() {
    check_bytes();
    find_placeholder();
    for (;;) {
      skip_blanks();
      if (!read_name()) {
        break;
      }
      skip_blanks();
      read_index();
      skip_blanks();
      if (at_end() || !read_dot()) {
        break;
      }
    }
    std::stable_sort(faults_.begin(), faults_.end(),
                     [](const PathFault& a, const PathFault& b) { return a.position < b.position; });
    return std::move(faults_);
  }

 private:
  bool at_end() const { return position_ >= path_.size(); }
  bool at(char c) const { return !at_end() && path_[position_] == c; }

  void fault(std::size_t position, std::string text) {
    faults_.push_back({Severity::Error, position, std::move(text)});
  }
  void warning(std::size_t position, std::string text) {
    faults_.push_back({Severity::Warning, position, std::move(text)});
  }

  void check_bytes() {
    if (!host::utf16_from_utf8(path_)) {
      warning(0, "the name is not valid UTF-8; save the list as UTF-8");
    }
    const auto* control = std::find_if(
        path_.begin(), path_.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    if (control != path_.end() && *control != '\t') {
      warning(static_cast<std::size_t>(control - path_.begin()),
              fmt::format("the name holds the control character {:02X}; remove it",
                          static_cast<unsigned char>(*control)));
    }
  }

  // The driver looks for it in the text, without regard to quotes.
  void find_placeholder() {
    const auto end = path_.find(kPlaceholderEnd);
    if (end == std::string_view::npos) {
      return;
    }
    placeholder_ = path_.rfind('[', end);
    if (placeholder_ == std::string_view::npos) {
      fault(end, "INDEX] without a [ before it ends the runtime; write [INDEX]");
      return;
    }
    placeholder_end_ = end + kPlaceholderEnd.size();
    const auto content = path_.substr(placeholder_ + 1, end - placeholder_ - 1);
    if (!std::all_of(content.begin(), content.end(), in_name)) {
      fault(placeholder_, "the driver replaces all from here to INDEX]; write [INDEX]");
    } else if (std::count(path_.begin(), path_.begin() + static_cast<std::ptrdiff_t>(placeholder_), '"') %
                   2 !=
               0) {
      warning(placeholder_, "the driver replaces [INDEX] in a name in quotes, too");
    }
  }

  void skip_blanks() {
    const auto end = std::min(path_.find_first_not_of(kBlanks, position_), path_.size());
    if (end > position_ && !told_of_blanks_) {
      warning(position_, "a blank outside quotes; remove it");
      told_of_blanks_ = true;
    }
    position_ = end;
  }

  // False when the rest cannot be made sense of.
  bool read_name() {
    if (at('"')) {
      return read_quoted();
    }
    if (at_end() || at('.')) {
      fault(position_, path_.empty() ? "the name is empty" : "a part of the path is empty; remove a dot");
      return true;
    }
    if (at('[')) {
      fault(position_, "an index without a name before it");
      return true;
    }
    const auto begin = position_;
    position_ = std::min(path_.find_first_of(".[]\"", position_), path_.size());
    while (position_ > begin && kBlanks.find(path_[position_ - 1]) != std::string_view::npos) {
      --position_;
    }
    const auto name = path_.substr(begin, position_ - begin);
    check_length(begin, name);
    if (name.starts_with('%')) {
      fault(begin, "addresses and bits are no part of a path; give the variable's name");
    } else if (!name.empty() && is_digit(name.front())) {
      fault(begin, fmt::format("a name that begins with a digit goes in quotes: \"{}\"", name));
    } else if (const auto* bad = std::find_if_not(name.begin(), name.end(), in_name); bad != name.end()) {
      fault(begin + static_cast<std::size_t>(bad - name.begin()),
            fmt::format("a name with '{}' in it goes in quotes: \"{}\"", *bad, name));
    }
    return true;
  }

  bool read_quoted() {
    const auto begin = position_ + 1;
    const auto end = path_.find('"', begin);
    if (end == std::string_view::npos) {
      fault(position_, "the quote is never closed");
      return false;
    }
    if (end == begin) {
      fault(position_, "the name in quotes is empty");
    }
    check_length(position_, path_.substr(begin, end - begin));
    position_ = end + 1;
    return true;
  }

  void check_length(std::size_t position, std::string_view name) {
    if (const auto length = characters(name); length > kLongestName) {
      fault(position, fmt::format("a name of {} characters; the longest has {}", length, kLongestName));
    }
  }

  void read_index() {
    if (!at('[')) {
      return;
    }
    const auto begin = position_;
    if (begin == placeholder_ && placeholder_end_ != 0) {
      position_ = placeholder_end_;
    } else {
      const auto end = path_.find(']', begin);
      if (end == std::string_view::npos) {
        fault(begin, "the bracket is never closed");
        position_ = path_.size();
        return;
      }
      check_numbers(begin + 1, end);
      position_ = end + 1;
    }
    if (at('[')) {
      fault(position_, "one index behind another; write [1,2]");
      position_ = std::min(path_.find_first_of(".\"", position_), path_.size());
    }
  }

  void check_numbers(std::size_t begin, std::size_t end) {
    int dimensions = 0;
    for (auto at = begin; at <= end; ++dimensions) {
      const auto comma = std::min(path_.find(',', at), end);
      check_number(at, path_.substr(at, comma - at));
      at = comma + 1;
    }
    if (dimensions > kMostDimensions) {
      fault(begin,
            fmt::format("{} indexes; an array has at most {} dimensions", dimensions, kMostDimensions));
    }
  }

  void check_number(std::size_t position, std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
      fault(position, "an index is missing between the brackets");
      return;
    }
    const auto number = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
    if (number.size() != text.size() && !told_of_blanks_) {
      warning(position, "a blank between brackets; remove it");
      told_of_blanks_ = true;
    }
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (number == "INDEX") {
      fault(position, "the driver replaces only the first [INDEX]; write a number");
    } else if (error != std::errc() || end != number.data() + number.size()) {
      fault(position, fmt::format("index '{}' is no whole number of 32 bits", number));
    }
  }

  bool read_dot() {
    if (at('.')) {
      ++position_;
      return true;
    }
    if (at(']')) {
      fault(position_, "a closing bracket without an opening one");
    } else {
      fault(position_, "a dot or the end belongs here");
    }
    return false;
  }

  std::string_view path_;
  std::size_t position_ = 0;
  std::size_t placeholder_ = std::string_view::npos;
  std::size_t placeholder_end_ = 0;  // 0: there is none that can be replaced
  bool told_of_blanks_ = false;
  std::vector<PathFault> faults_;
};

// ASCII, and the letters of Latin-1 in UTF-8, of which the second byte follows lead.
char small(char c, char lead) {
  const auto byte = static_cast<unsigned char>(c);
  const bool latin = lead == '\xC3' && byte >= 0x80 && byte <= 0x9E && byte != 0x97;
  const bool ascii = c >= 'A' && c <= 'Z';
  return latin || ascii ? static_cast<char>(byte + 0x20) : c;
}

}  // namespace

std::vector<PathFault> path_faults(std::string_view name) {
  return PathChecker(name).check();
}

std::string path_key(std::string_view name) {
  std::string key;
  key.reserve(name.size());
  for (std::size_t i = 0; i < name.size(); ++i) {
    const auto close = name[i] == '"' ? name.find('"', i + 1) : std::string_view::npos;
    const auto part = close == std::string_view::npos ? name.substr(i, 1) : name.substr(i, close - i + 1);
    const bool needless = part.size() > 1 && is_plain_name(part.substr(1, part.size() - 2));
    for (const char c : needless ? part.substr(1, part.size() - 2) : part) {
      key += small(c, key.empty() ? '\0' : key.back());
    }
    i += part.size() - 1;
  }
  return key;
}

std::size_t characters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace ostravel::tags
