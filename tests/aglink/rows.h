// SPDX-License-Identifier: MIT
// Every forwarding function as something that a test can call in a loop: with more arguments than there are
// registers, and with its result as text.
#ifndef OSTRAVEL_TESTS_AGLINK_ROWS_H_
#define OSTRAVEL_TESTS_AGLINK_ROWS_H_

#include <string>
#include <vector>

#include "tests/aglink/fakes/fakelog.h"

struct Row {
  std::string name;
  std::string resultType;
  bool resolved;
  bool reporting;
  int integers;  // how many of the arguments reach the function
  int reals;
  std::string (*call)(const FakeArguments& arguments);
  std::string fakeResult;  // what the fake library's function returns, as `call` writes it
};

// The 576 forwarding functions in the order of functions.def.
const std::vector<Row>& rows();

// Integers in decimal, floats as their bits, pointers as their address, "nothing" for no result.
std::string asText(std::int64_t value);
std::string asText(float value);
std::string asText(const void* value);

// Arguments that no other row has; those of a reporting row fit its 32-bit parameters.
FakeArguments argumentsFor(const Row& row);

// One line of a log of calls.
std::string logLine(const std::string& name, const FakeArguments& arguments, int integers, int reals);
inline std::string logLine(const Row& row, const FakeArguments& arguments) {
  return logLine(row.name, arguments, row.integers, row.reals);
}

#endif  // OSTRAVEL_TESTS_AGLINK_ROWS_H_
