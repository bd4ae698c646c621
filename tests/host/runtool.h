// SPDX-License-Identifier: MIT
// Runs a program as a user does: arguments in, text and exit code out.
#pragma once

#include <string>
#include <vector>

#include "host/process.h"
#include "tests/host/scratch.h"

namespace ostravel::host {

struct ToolResult {
  int code = 0;
  std::string out;
  std::string error;
};

inline ToolResult run_tool(const std::string& program, const std::vector<std::string>& arguments) {
  const Scratch scratch;
  const auto error_file = scratch.path("stderr");
  std::vector<std::string> words{"-c", "exec \"$0\" \"$@\" 2>" + error_file, program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  Process process("/bin/sh", words);
  process.close_input();
  ToolResult result;
  result.out = process.read_all();
  result.code = process.wait();
  result.error = scratch.read("stderr");
  return result;
}

}  // namespace ostravel::host
