// SPDX-License-Identifier: MIT
// What a target demands of the code under test. What does not hold is a finding: the fuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

#define FUZZ_DEMAND(condition)                                                            \
  do {                                                                                    \
    if (!(condition)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (false)
