// SPDX-License-Identifier: MIT
#include "simulator/plc/arguments.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "simulator/plc/timespan.h"

namespace ostravel::plc {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// Not trimmed() of the program's texts: a view into the line is needed even when nothing is left.
std::string_view without_blanks(std::string_view text) {
  const auto end = text.find_last_not_of(kBlanks);
  text = text.substr(0, end == std::string_view::npos ? 0 : end + 1);
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

std::optional<std::uint64_t> whole_number(std::string_view text) {
  std::uint64_t value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (error != std::errc() || end != last) return std::nullopt;
  return value;
}

}  // namespace

Arguments::Arguments(std::string_view line) : line_(line), rest_(without_blanks(line)) {
  word_ = take(std::min(rest_.find_first_of(kBlanks), rest_.size()));
}

std::string_view Arguments::take(std::size_t length) {
  const auto taken = rest_.substr(0, length);
  last_ = position();
  rest_ = without_blanks(rest_.substr(length));
  return taken;
}

std::string_view Arguments::path() {
  bool quoted = false;
  bool bracket = false;
  std::size_t end = 0;
  for (; end < rest_.size() && (quoted || bracket || kBlanks.find(rest_[end]) == std::string_view::npos);
       ++end) {
    if (rest_[end] == '"') quoted = !quoted;
    if (!quoted && rest_[end] == '[') bracket = true;
    if (!quoted && rest_[end] == ']') bracket = false;
  }
  return take(end);
}

std::string_view Arguments::rest() {
  return take(rest_.size());
}

std::vector<std::string> Arguments::files() {
  std::vector<std::string> names;
  while (!rest_.empty()) {
    const bool quoted = rest_.front() == '"';
    const auto end = quoted ? rest_.find('"', 1) : std::min(rest_.find_first_of(kBlanks), rest_.size());
    if (end == std::string_view::npos) throw CommandError("the quote is not closed", position());
    const auto name = take(quoted ? end + 1 : end);
    names.emplace_back(quoted ? name.substr(1, name.size() - 2) : name);
  }
  if (names.empty()) throw CommandError("name of a file expected", position());
  return names;
}

std::chrono::milliseconds Arguments::duration(std::chrono::milliseconds longest) {
  const auto text = take(std::min(rest_.find_first_of(kBlanks), rest_.size()));
  std::optional<std::chrono::milliseconds> span = parse_time_span(text);
  if (const auto bare = whole_number(text); bare && *bare <= 1'000'000'000) {
    span = std::chrono::milliseconds(*bare);
  }
  if (!span)
    complain(fmt::format("milliseconds or a time such as 500ms or 2s expected instead of '{}'", text));
  if (*span > longest) complain(fmt::format("at most {} milliseconds", longest.count()));
  return *span;
}

std::uint64_t Arguments::cycle() {
  const auto text = rest();
  if (!text.starts_with('@')) complain(fmt::format("@CYCLE expected instead of '{}'", text));
  const auto number = whole_number(text.substr(1));
  if (!number) complain(fmt::format("number of a cycle expected instead of '{}'", text.substr(1)));
  return *number;
}

void Arguments::expect_end() const {
  if (!rest_.empty()) throw CommandError(fmt::format("nothing more expected: '{}'", rest_), position());
}

void Arguments::complain(const std::string& what) const {
  throw CommandError(what, last_);
}

}  // namespace ostravel::plc
