// SPDX-License-Identifier: MIT
#include "simulator/plc/script.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "simulator/plc/console.h"
#include "simulator/plc/timespan.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

using std::chrono::milliseconds;

// Columns count characters.
std::size_t column_of(std::string_view before) {
  const auto tails = std::count_if(before.begin(), before.end(),
                                   [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
  return before.size() - static_cast<std::size_t>(tails) + 1;
}

[[noreturn]] void refuse(std::string_view name, unsigned line, std::string_view before,
                         std::string_view what) {
  throw ScriptError(fmt::format("{}:{}:{}: {}", name, line, column_of(before), what));
}

// A comment starts the line or follows a blank; a number such as 16#FF and texts in quotes are none.
std::string_view without_comment(std::string_view line) {
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quote != 0) {
      if (c == (quote == '"' ? '\\' : '$')) {
        ++i;  // an escaped character, which may be a quote
      } else if (c == quote) {
        quote = 0;
      }
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '#' && (i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t')) {
      return line.substr(0, i);
    }
  }
  return line;
}

class ScriptParser {
 public:
  explicit ScriptParser(std::string_view name) { script_.name = name; }

  void take(std::string_view line) {
    ++number_;
    line_ = line;
    const auto content = trimmed(without_comment(line));
    if (content.empty()) return;
    ScriptLine parsed;
    parsed.number = number_;
    auto rest = content;
    const auto word = next_word(rest);
    if (word.starts_with('+')) {
      now_ += time_of(word.substr(1));
    } else if (word == "at") {
      now_ = time_of(next_word(rest));
    } else if (word == "every") {
      parsed.every = time_of(next_word(rest));
      if (parsed.every < milliseconds(1)) refuse_at(rest, "repeat it after 1ms or more");
    } else {
      rest = content;
    }
    parsed.at = now_ + parsed.every;
    if (rest.empty()) refuse_at(rest, "command expected behind the time");
    parsed.command = rest;
    parsed.indent = before(rest);
    script_.lines.push_back(std::move(parsed));
  }

  Script take_script() { return std::move(script_); }

 private:
  // Views into the line, so that their place tells the column.
  static std::string_view next_word(std::string_view& rest) {
    const auto end = std::min(rest.find_first_of(" \t"), rest.size());
    const auto word = rest.substr(0, end);
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t", end), rest.size()));
    return word;
  }

  milliseconds time_of(std::string_view text) const {
    const auto time = parse_time_span(text);
    if (!time) refuse_at(text, fmt::format("time such as 500ms, 2s or 1min expected instead of '{}'", text));
    return *time;
  }

  std::string_view before(std::string_view piece) const {
    return line_.substr(0, static_cast<std::size_t>(piece.data() - line_.data()));
  }
  [[noreturn]] void refuse_at(std::string_view piece, std::string_view what) const {
    refuse(script_.name, number_, before(piece), what);
  }

  Script script_;
  milliseconds now_{0};
  unsigned number_ = 0;
  std::string_view line_;
};

}  // namespace

Script parse_script(std::string_view text, std::string_view name) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  ScriptParser parser(name);
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    parser.take(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parser.take_script();
}

void rehearse(const Script& script, Program program, const PlcOptions& options, const LoadOptions& load) {
  Core core(std::move(program), options);
  core.load = load;
  auto lines = script.lines;
  std::stable_sort(lines.begin(), lines.end(),
                   [](const ScriptLine& a, const ScriptLine& b) { return a.at < b.at; });
  for (const auto& line : lines) {
    if (is_quit(line.command)) continue;
    try {
      execute(core, line.command);
    } catch (const NotNow&) {  // it may be possible when its time comes
    } catch (const CommandError& error) {
      refuse(script.name, line.number, line.indent + line.command.substr(0, error.at), error.what());
    }
  }
}

ScriptRunner::ScriptRunner(const Script& script) : pending_(script.lines) {}

std::optional<milliseconds> ScriptRunner::next() const {
  const auto first = std::min_element(pending_.begin(), pending_.end(),
                                      [](const ScriptLine& a, const ScriptLine& b) { return a.at < b.at; });
  if (first == pending_.end()) return std::nullopt;
  return first->at;
}

bool ScriptRunner::run_due(milliseconds now, const std::function<bool(const ScriptLine&)>& run) {
  std::vector<ScriptLine> due;
  std::copy_if(pending_.begin(), pending_.end(), std::back_inserter(due),
               [now](const ScriptLine& line) { return line.at <= now; });
  std::stable_sort(due.begin(), due.end(),
                   [](const ScriptLine& a, const ScriptLine& b) { return a.at < b.at; });
  std::erase_if(pending_,
                [now](const ScriptLine& line) { return line.at <= now && line.every.count() == 0; });
  for (auto& line : pending_) {
    if (line.at <= now) line.at += line.every * ((now - line.at) / line.every + 1);
  }
  return std::all_of(due.begin(), due.end(), run);
}

}  // namespace ostravel::plc
