// SPDX-License-Identifier: MIT
// What a program's exit code means, for all programs here.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace ostravel {

enum ExitCode : int {
#define OSTRAVEL_EXIT_CODE(name, code, programs, meaning) name = code,
#include "common/exitcodes.def"
#undef OSTRAVEL_EXIT_CODE
};

// Programs, as bits.
enum Programs : std::uint8_t {
  kHost = 1,
  kTags = 2,
  kPlc = 4,
  kHostAndTags = kHost | kTags,
  kEveryProgram = kHost | kTags | kPlc,
};

struct ExitCodeMeaning {
  int code;
  Programs programs;
  std::string_view meaning;
};

// Ascending by code.
std::span<const ExitCodeMeaning> exit_codes();

}  // namespace ostravel
