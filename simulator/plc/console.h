// SPDX-License-Identifier: MIT
// The PLC's console: one command a line, one JSON object a line as its answer ({"error": TEXT} when it
// failed).
//
//   read PATH            {"path", "cycle", "value"}; an array's value is a JSON array, row-major
//   read PATH @CYCLE     the same at the end of a past cycle (about the last 1,000 are kept)
//   write PATH VALUE     VALUE is JSON as read gives it
//   list                 {"variables": [{"path", "type", "elements"}, ...]}
//   cycle                {"cycle"}
//   hold, run, step      stops, resumes the cyclic program; runs it once
//   cut                  drops all connections
//   freeze, thaw         keeps connections but throws requests away; answers again
//   delay MS             sends every answer so much later
//   late                 sends the next answer after its client's time is up
//   fail PATH, heal PATH items that touch the variable fail; heal without a path heals all
//   stats                connections and jobs so far
#pragma once

#include <string>
#include <string_view>

#include "simulator/plc/core.h"

namespace ostravel::plc {

std::string run_command(Core& core, std::string_view line);

}  // namespace ostravel::plc
