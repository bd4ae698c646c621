// SPDX-License-Identifier: MIT
// Console commands with times, so that a PLC misbehaves as planned:
//
//   # a comment, on a line of its own or behind a command
//   at 10s freeze            so long after the start
//   +2s thaw                 so long after the line before
//   delay 500ms              at the time of the line before (the start, if there is none)
//   every 5s write Plant.Count 0     again and again, the first time so long after the line before
//   +1min quit
//
// Times are written as in timespan.h. A line that repeats does not move the time of the lines behind it.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/plc/plc.h"
#include "simulator/program/program.h"
#include "simulator/program/source.h"

namespace ostravel::plc {

// A line that cannot be right. what() is one line: "file:line:column: what is wrong", counted from 1.
struct ScriptError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct ScriptLine {
  std::chrono::milliseconds at{0};     // since the start, the first time
  std::chrono::milliseconds every{0};  // 0: once
  std::string command;
  std::string indent;  // what stands before the command in its line
  unsigned number = 0;
};

struct Script {
  std::string name;  // for messages
  std::vector<ScriptLine> lines;
};

// Throws ScriptError for times that are none. Commands are not looked at.
Script parse_script(std::string_view text, std::string_view name);

// Tries all commands in the order of their times, each once, on a PLC without clients that runs this program.
// Throws ScriptError for the first that cannot be carried out whatever the moment, and GeneratorError for the
// options' rules.
void rehearse(const Script& script, Program program, const PlcOptions& options = {},
              const LoadOptions& load = {});

// Says what is due. It has no clock: whoever runs it says how much time has passed since the start.
class ScriptRunner {
 public:
  explicit ScriptRunner(const Script& script);

  // When the next command is due; nothing when the script is over.
  std::optional<std::chrono::milliseconds> next() const;

  // Hands out the commands that are due by now, in the order of their times and then of their lines. After a
  // time in which nobody asked, a repeated command is handed out once. Stops when run returns false, and
  // returns false then.
  bool run_due(std::chrono::milliseconds now, const std::function<bool(const ScriptLine&)>& run);

 private:
  std::vector<ScriptLine> pending_;  // at: the next time
};

}  // namespace ostravel::plc
