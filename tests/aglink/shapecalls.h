// SPDX-License-Identifier: MIT
// One call for each way in which arguments and results travel, through a forwarding function that knows none
// of them, into the fake library of the shapes.
#ifndef OSTRAVEL_TESTS_AGLINK_SHAPECALLS_H_
#define OSTRAVEL_TESTS_AGLINK_SHAPECALLS_H_

#include <iosfwd>
#include <vector>

struct ShapeCall {
  const char* name;
  void (*make)();  // calls, and expects the result; may run in several threads at once
};

void PrintTo(const ShapeCall& shape, std::ostream* out);

const std::vector<ShapeCall>& shapeCalls();

#endif  // OSTRAVEL_TESTS_AGLINK_SHAPECALLS_H_
