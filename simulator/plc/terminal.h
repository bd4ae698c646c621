// SPDX-License-Identifier: MIT
// Runs the console and a script until one of them, a signal or the end of standard input ends the PLC.
#pragma once

#include "simulator/plc/script.h"
#include "simulator/plc/server.h"

namespace ostravel::plc {

struct TerminalOptions {
  bool read_input = true;  // false: standard input is not the console
  bool exit_with_stdin = false;
};

// Blocks the signals that end the program and returns a descriptor that becomes readable when one comes. To
// be called before any thread is started, since signals are to reach none of them.
int signal_descriptor();

// Answers go to standard output, a line each. Those to a script's commands begin with where they stand:
// {"script": "FILE:LINE", "command": TEXT, ...}.
void serve_terminal(Server& server, const Script& script, int signals, const TerminalOptions& options);

}  // namespace ostravel::plc
