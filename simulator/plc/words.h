// SPDX-License-Identifier: MIT
// The words of the console. What each of them does stands in one of three files, its line of help beside it.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string_view>

#include "simulator/plc/arguments.h"
#include "simulator/plc/core.h"

namespace ostravel::plc {

struct Word {
  std::string_view name;
  std::string_view arguments;  // as help shows them
  std::string_view does;       // one line
  // Throws CommandError; then nothing has changed.
  nlohmann::json (*run)(Core& core, Arguments& arguments);
};

std::span<const Word> variable_words();  // what the program's variables hold and how they move
std::span<const Word> fault_words();     // what goes wrong
std::span<const Word> plc_words();       // the PLC as a whole

// What a path leads to. The path has been taken from the arguments last.
Target find_target(const Core& core, const Arguments& arguments, std::string_view path);

}  // namespace ostravel::plc
