// SPDX-License-Identifier: MIT
#include "simulator/plc/console.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <vector>

#include "simulator/plc/words.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;

json help(Core& core, Arguments& arguments);

constexpr std::array kOwnWords{
    Word{"help", "[WORD]", "what the words mean", help},
    Word{"quit", "", "ends the PLC", nullptr},
};

std::vector<Word> all_words() {
  std::vector<Word> words;
  for (const auto& some : {variable_words(), fault_words(), plc_words(), std::span<const Word>(kOwnWords)}) {
    words.insert(words.end(), some.begin(), some.end());
  }
  return words;
}

const Word& find_word(const std::vector<Word>& words, const Arguments& arguments, std::string_view name) {
  const auto found =
      std::find_if(words.begin(), words.end(), [name](const Word& word) { return word.name == name; });
  if (found != words.end()) return *found;
  std::vector<std::string_view> names;
  std::transform(words.begin(), words.end(), std::back_inserter(names),
                 [](const Word& word) { return word.name; });
  arguments.complain(fmt::format("unknown command '{}'; known are {}", name, fmt::join(names, ", ")));
}

json help(Core&, Arguments& arguments) {
  const auto words = all_words();
  json lines = json::array();
  const auto add = [&lines](const Word& word) {
    lines.push_back({{"word", word.name}, {"arguments", word.arguments}, {"does", word.does}});
  };
  if (arguments.empty()) {
    std::for_each(words.begin(), words.end(), add);
  } else {
    add(find_word(words, arguments, arguments.rest()));
  }
  return {{"help", std::move(lines)}};
}

}  // namespace

json execute(Core& core, std::string_view line) {
  Arguments arguments(line);
  const auto words = all_words();
  const auto& word = find_word(words, arguments, arguments.word());
  if (word.run == nullptr)
    arguments.complain(fmt::format("'{}' ends the program and takes nothing behind it", word.name));
  return word.run(core, arguments);
}

std::string to_line(const json& object) {
  // A path or a text may hold anything.
  return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string run_command(Core& core, std::string_view line) {
  try {
    return to_line(execute(core, line));
  } catch (const CommandError& error) {
    return to_line({{"error", error.what()}});
  }
}

std::string help_text() {
  const auto words = all_words();
  std::string text;
  for (const auto& word : words) {
    text += fmt::format("  {:<22}{}\n", fmt::format("{} {}", word.name, word.arguments), word.does);
  }
  return text;
}

bool is_quit(std::string_view line) {
  const Arguments arguments(line);
  return arguments.word() == "quit" && arguments.empty();
}

}  // namespace ostravel::plc
