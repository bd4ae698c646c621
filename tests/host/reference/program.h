// SPDX-License-Identifier: MIT
// A program as a user has it: arguments in, text and exit code out.
#pragma once

#include <string>
#include <vector>

#include "host/process.h"
#include "tests/host/scratch.h"

struct ProgramResult {
  int code = 0;
  std::string out;
  std::string error;
};

inline ProgramResult run_program(const std::string& program, const std::vector<std::string>& arguments) {
  const Scratch scratch;
  std::vector<std::string> words{"-c", "exec \"$0\" \"$@\" 2>" + scratch.path("stderr"), program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  ostravel::host::Process process("/bin/sh", words);
  process.close_input();
  ProgramResult result;
  result.out = process.read_all();
  result.code = process.wait();
  result.error = scratch.read("stderr");
  return result;
}
