// SPDX-License-Identifier: MIT
// The PLC's console: one command a line, one JSON object a line as its answer ({"error": TEXT} when it
// failed, and then nothing has changed). The words and what they do: words_*.cpp; `help` gives them too.
//
//   read PATH            {"path", "cycle", "value"}; an array's value is a JSON array, row-major
//   write PATH VALUE     {"path", "cycle"}
//   list                 {"variables": [{"path", "type", "elements"}, ...]}
//   generate PATH RULE   {"path", "generator", "cycle"}; so does constant PATH
//   cycle                {"cycle"}; so do hold, run, step
//   cut                  {"cut": number of connections}
//   freeze, thaw         {"frozen"}
//   delay TIME           {"delay": ms}
//   late                 {"late"}
//   fail, heal           {"failing": path}, {"healed": path}
//   download FILE...     {"downloaded": [files], "fingerprint", "cycle", "warnings", "generators_left_out"}
//   password [TEXT]      {"protected"}
//   restart [PAUSE]      {"restarted", "pause": ms, "cut", "cycle"}
//   stats                {"accepted", "open", "most_open", "waiting", "reads", "writes", "others", "cycle"}
//   help [WORD]          {"help": [{"word", "arguments", "does"}, ...]}
//
// Faults and generators last over a restart. A download takes away failing variables and such generators as
// do not fit the new program.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "simulator/plc/arguments.h"
#include "simulator/plc/core.h"

namespace ostravel::plc {

// The answer as one line.
std::string run_command(Core& core, std::string_view line);

// The answer as an object. Throws CommandError.
nlohmann::json execute(Core& core, std::string_view line);

// Any object as one line of valid UTF-8, whatever its texts hold.
std::string to_line(const nlohmann::json& object);

// The same words as `help` gives, as a table for people.
std::string help_text();

// The word that ends the program; it is whoever reads the lines that has to heed it.
bool is_quit(std::string_view line);

}  // namespace ostravel::plc
