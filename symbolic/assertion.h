// SPDX-License-Identifier: MIT
// Assertions that hold in every build, and whose message names a fixed place: what a diagnosis on a panel is
// compared with must not move with the code.
#pragma once

// glibc's own: prints "program: file:line: function: Assertion `expression' failed." and aborts.
extern "C" [[noreturn]] void __assert_fail(const char* expression, const char* file, unsigned line,
                                           const char* function) noexcept;

struct AssertionPlace {
  const char* file;
  unsigned line;
  const char* function;
};

[[noreturn]] inline void fail_assertion(const char* expression, const AssertionPlace& place) {
  __assert_fail(expression, place.file, place.line, place.function);
}
