// SPDX-License-Identifier: MIT
// The calls of a run in which nothing failed: what the n-th call was, and for which variable.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/failures/injection.h"
#include "tests/fake/fakelibrary.h"

struct LibraryCall {
  std::string function;
  std::string path;    // of the variable that it is about; empty for none
  int occurrence = 0;  // from 1, of this function for this path
};

// The path that a handle or a text among the arguments names.
inline std::string path_in(const FakeLibrary::Call& call) {
  for (const std::string& argument : call.arguments) {
    for (const char* kind : {"access:", "node:"}) {
      if (argument.starts_with(kind)) return argument.substr(std::string(kind).size());
    }
    if (argument.size() > 2 && argument.front() == '"') return argument.substr(1, argument.size() - 2);
  }
  return {};
}

// Every call since the log was cleared. The guards must have seen the same ones: none goes past them.
inline std::vector<LibraryCall> calls_of(const FakeLibrary& library) {
  std::vector<LibraryCall> calls;
  std::map<std::pair<std::string, std::string>, int> occurrences;
  std::vector<std::string> functions;
  for (const FakeLibrary::Call& call : library.calls()) {
    const std::string path = path_in(call);
    calls.push_back({call.function, path, ++occurrences[{call.function, path}]});
    functions.push_back(call.function);
  }
  EXPECT_EQ(functions, injection::asked());
  return calls;
}
