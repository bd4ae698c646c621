// SPDX-License-Identifier: MIT
// Runs code under test that may answer by an exception or a failed assertion, and tells which it was. A
// target that links this has calls of __assert_fail sent here (see CMakeLists.txt).
#pragma once

#include <functional>
#include <string>

namespace fuzz {

enum class Ending { Returned, OutOfRange, BadAlloc, Asserted };

struct Assertion {
  std::string expression;
  std::string file;
  unsigned line = 0;
};

// Any other exception leaves it, and so is a finding. A failed assertion ends the code where it stands: its
// local objects are not destroyed.
Ending run(const std::function<void()>& code);

// The same for code of which no memory survives: what it held when an assertion failed is freed.
Ending run_apart(const std::function<void()>& code);

// Of the last run that ended in one.
const Assertion& last_assertion();

}  // namespace fuzz
